#pragma once

#include "scene_module/TriangleMesh.h"

#include <string>
#include <string_view>

namespace scene {

/// Reads a Wavefront OBJ text: v, vn and f with all forms of indices, negative ones too; polygons
/// are cut into fans. The name is that of the first "o". Groups, materials, texture coordinates,
/// curves and statements that are not known are passed over. Corners without a normal get one from
/// the surface. Throws GLibraryException, whose message names the line, for what can't be read, and
/// for a file without faces. Linear; memory in proportion to the text.
[[nodiscard]] TriangleMesh read_obj(std::string_view text);

/// The mesh as an OBJ text: numbers in the shortest form that reads back the same.
[[nodiscard]] std::string write_obj(const TriangleMesh& mesh);

/// True when the start of a file, `head`, holds nothing that an OBJ can't.
[[nodiscard]] bool looks_like_obj(std::string_view head);

/// True when `text` is of printable characters, blanks and line ends; bytes from 128 on are
/// letters.
[[nodiscard]] bool is_plain_text(std::string_view text);

/// Appends `value` in the shortest form that reads back the same, the same in every locale.
void append_number(std::string& text, float value);

}  // namespace scene
