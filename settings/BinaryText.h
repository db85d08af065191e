#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zmr {

/// Bytes as the letters A to P, two for each byte, the lower half first: 0x3C becomes "MD". So they
/// stand in a line of an initialisation file.
[[nodiscard]] ZMR_GV_API std::string binary_to_text(std::span<const unsigned char> bytes);
/// How many bytes the text stands for; nothing when its length is odd or it holds another letter.
[[nodiscard]] ZMR_GV_API std::optional<std::size_t> binary_size(std::string_view text);
/// Writes binary_size(text) bytes.
ZMR_GV_API void text_to_binary(std::string_view text, unsigned char* bytes);

}  // namespace zmr
