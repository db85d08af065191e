#pragma once

#include "scene_module/TriangleMesh.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace scene {

enum class StlKind : std::uint8_t { None, Binary, Text };

/// Tells from the start of a file, 84 bytes or more unless the file is shorter, what kind of STL it
/// is. A binary one has just the size that its count of triangles asks for; it may begin with
/// "solid" like a text.
[[nodiscard]] StlKind recognise_stl(std::string_view head, std::uint64_t file_bytes);

/// Reads an STL of either kind; equal corners become one vertex, and normals are made anew from the
/// surface, as those in files are often wrong. Throws GLibraryException, whose message names the
/// line or the byte, for what can't be read. Linear; memory in proportion to the data.
[[nodiscard]] TriangleMesh read_stl(std::string_view data);

/// The mesh as a binary STL.
[[nodiscard]] std::string write_stl(const TriangleMesh& mesh);

}  // namespace scene
