#pragma once

#include "foundation/GFile.h"

class GObjectPlace;

// The names of files that hold one object each, beside a library. Names are text, and only what is
// said to look at the disk does.
namespace zmr {

/// The file of a place that is a file of its own; empty for any other place.
[[nodiscard]] GFile filename_of_place(const GObjectPlace& place);
/// `file` as a full name: itself when it has a root, else a name beside `base`, or in `base` when
/// that is a directory (which looks at the disk).
[[nodiscard]] GFile resolve_filename(const GFile& base, const GFile& file);
/// True when an object can have this file: a valid name, no mask, and no directory on the disk.
[[nodiscard]] bool is_usable_file(const GFile& file);
/// The full name of a file that does not exist: `mask` itself when it is such a name, else with its
/// star, or its last name, made up, and then with `extension` unless that is null. A directory
/// gives a made-up name in it.
[[nodiscard]] GFile unique_file(const char* mask, const char* extension);

}  // namespace zmr
