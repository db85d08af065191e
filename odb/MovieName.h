#pragma once

#include "foundation/GFile.h"
#include "store/GResourceFullName.h"

#include <cstdint>

namespace zmr {

// The name by which the multimedia layer opens a movie that lies in a library: the library's file,
// "+", and then the resource, each piece between a byte of its kind and the byte 4: 1 a level of
// the path, root first, 2 the name, 3 the type. The layer chooses who opens it by the extension in
// front of the "+", so that a library whose own path holds a "+" can't be named.

[[nodiscard]] GString build_movie_name(const GFile& file, const GResourceFullName& name);
/// False, with both results unchanged, for a text that is no such name.
[[nodiscard]] bool parse_movie_name(const char* text, GFile& file, GResourceFullName& name);

/// The code under which the multimedia layer knows an extension: its first four bytes, ASCII
/// letters as capitals, filled up with blanks, the first one lowest.
[[nodiscard]] std::uint32_t movie_extension_code(const char* extension);

}  // namespace zmr
