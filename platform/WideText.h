#pragma once

#include "platform/Export.h"

#include <string>
#include <string_view>

namespace zmr {

/// Converts UTF-8 to UTF-16 for a call of the system. False, with `wide` unchanged, when `text` is
/// not UTF-8 or holds a zero byte, which would cut the name short.
[[nodiscard]] ZMR_GV_API bool to_wide(std::string_view text, std::wstring& wide);

/// Converts the name of a file for the wide functions. A long one is made absolute and marked, so
/// that the system's limit of 260 characters does not hold for it. False when it is no name.
[[nodiscard]] ZMR_GV_API bool to_wide_path(std::string_view name, std::wstring& wide);

/// Converts UTF-16 from the system to UTF-8; a half pair becomes the replacement character.
[[nodiscard]] ZMR_GV_API std::string to_utf8(std::wstring_view wide);

}  // namespace zmr
