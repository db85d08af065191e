#pragma once

#include "foundation/GString.h"

namespace zmr {

/// The text of string `id` in the string table of `module`. False, with `target` unchanged, when it
/// has none; always where modules have no string tables.
[[nodiscard]] bool load_string_resource(HINSTANCE module, unsigned id, GString& target);

}  // namespace zmr
