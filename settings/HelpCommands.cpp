#include "settings/HelpCommands.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

struct HelpCommand {
    std::uint32_t classic;
    std::uint32_t html;
};

// The first row of a command wins.
constexpr std::array kHelpCommands = {
    HelpCommand{0x001, 0x0F},                 // HELP_CONTEXT: HH_HELP_CONTEXT
    HelpCommand{0x002, 0x12},                 // HELP_QUIT: HH_CLOSE_ALL
    HelpCommand{0x003, 0x02},                 // HELP_INDEX: HH_DISPLAY_INDEX
    HelpCommand{0x003, 0x01},                 // HELP_INDEX: HH_DISPLAY_TOC, hidden by the row above
    HelpCommand{0x004, zmr::kNoHelpCommand},  // HELP_HELPONHELP
    HelpCommand{0x005, zmr::kNoHelpCommand},  // HELP_SETINDEX, HELP_SETCONTENTS
    HelpCommand{0x008, 0x0F},                 // HELP_CONTEXTPOPUP: HH_HELP_CONTEXT
    HelpCommand{0x009, zmr::kNoHelpCommand},  // HELP_FORCEFILE
    HelpCommand{0x101, zmr::kNoHelpCommand},  // HELP_KEY
    HelpCommand{0x102, zmr::kNoHelpCommand},  // HELP_COMMAND
    HelpCommand{0x105, zmr::kNoHelpCommand},  // HELP_PARTIALKEY
    HelpCommand{0x201, zmr::kNoHelpCommand},  // HELP_MULTIKEY
    HelpCommand{0x203, zmr::kNoHelpCommand},  // HELP_SETWINPOS
    HelpCommand{0x00A, 0x10},                 // HELP_CONTEXTMENU: HH_TP_HELP_CONTEXTMENU
    HelpCommand{0x00B, 0x00},                 // HELP_FINDER: HH_DISPLAY_TOPIC
    HelpCommand{0x00C, 0x11},                 // HELP_WM_HELP: HH_TP_HELP_WM_HELP
    HelpCommand{0x00D, zmr::kNoHelpCommand},  // HELP_SETPOPUP_POS
};

}  // namespace

namespace zmr {

std::uint32_t html_help_command(std::uint32_t command)
{
    for (const HelpCommand& row : kHelpCommands)
        if (row.classic == command)
            return row.html;
    return kNoHelpCommand;
}

std::optional<std::uint32_t> parse_special_build(const char* text)
{
    if (text == nullptr)
        return std::nullopt;
    char* end = nullptr;
    unsigned long long number = std::strtoull(text, &end, 0);
    if (*end != '\0')
        return std::nullopt;
    // 64 bits in both lanes, so that the bound of 32 is the same; behind a minus sign they wrapped.
    const bool negative = std::strchr(text, '-') != nullptr;
    const unsigned long long magnitude = negative ? 0 - number : number;
    if (magnitude > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    const auto build = static_cast<std::uint32_t>(number);
    if (build == std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    return build;
}

}  // namespace zmr
