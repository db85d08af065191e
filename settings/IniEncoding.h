#pragma once

#include "platform/Export.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zmr {

/// How the letters of an initialisation file are written. A mark at the start tells UTF-16; all
/// other files are taken as they are.
enum class IniEncoding : std::uint8_t { Bytes, Utf16Little, Utf16Big };

[[nodiscard]] ZMR_GV_API IniEncoding ini_encoding(std::string_view bytes);
/// The file as text, in UTF-8 and without its mark where it is UTF-16. In `is_whole`, whether all
/// of it has a meaning: half pairs and a half letter at the end become the replacement character.
[[nodiscard]] ZMR_GV_API std::string decode_ini(std::string bytes, bool& is_whole);
/// The other way; nothing when the text is not UTF-8 and has to be.
[[nodiscard]] ZMR_GV_API std::optional<std::string> encode_ini(std::string_view text,
                                                               IniEncoding encoding);

}  // namespace zmr
