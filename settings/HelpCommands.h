#pragma once

#include "platform/Export.h"

#include <cstdint>
#include <optional>

// What help is asked for: the decisions on the way from a window to a topic.
namespace zmr {

/// There is no such command in the other engine.
inline constexpr std::uint32_t kNoHelpCommand = 0xFFFFFFFF;

// Commands that the way of a request decides by.
inline constexpr std::uint32_t kHelpContext = 0x001;       ///< A topic in the help window,
inline constexpr std::uint32_t kHelpContextPopup = 0x008;  ///< or in a window of its own.

/// The HTML engine's command for one of the classic engine; kNoHelpCommand where it has none.
[[nodiscard]] ZMR_GV_API std::uint32_t html_help_command(std::uint32_t command);

/// The command to go on with: help on a single control, a topic in 0x50000 to 0x5FFFF, opens in a
/// window of its own. `data` is a topic's number, or an address, and is compared at full width.
[[nodiscard]] constexpr std::uint32_t help_command_for(std::uintptr_t data, std::uint32_t command)
{
    const bool control = data >= 0x50000 && data <= 0x5FFFF;
    return command == kHelpContext && control ? kHelpContextPopup : command;
}

/// The number that a module's version resource holds as text: decimal, octal or hexadecimal, with
/// blanks before it and a sign, as C writes numbers. None for a text that does not end with the
/// number, that is beyond 32 bits, or that is 0xFFFFFFFF.
[[nodiscard]] ZMR_GV_API std::optional<std::uint32_t> parse_special_build(const char* text);

/// The topic of a module: its own id with the module's number, where it has one, in the bits from
/// 20 on. What goes beyond 32 bits is lost.
[[nodiscard]] constexpr std::uint32_t module_help_id(std::uint32_t id,
                                                     std::optional<std::uint32_t> build)
{
    return build.has_value() ? id | (*build << 20) : id;
}

}  // namespace zmr
