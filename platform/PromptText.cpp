#include "platform/PromptText.h"

#include "platform/PlatformIds.h"

namespace zmr {
namespace {

constexpr UINT kPopupItem = 0x0010;  // as the system's flags of menu items
constexpr UINT kSeparatorItem = 0x0800;
constexpr UINT kClosed = 0xFFFF;

constexpr UINT kFirstSystemCommand = 0xF000;
constexpr UINT kLastSystemCommand = 0xF1EF;
constexpr UINT kSystemCommandStep = 0x10;  // its lowest four bits are the system's own

}  // namespace

std::string_view prompt_of(std::string_view text)
{
    return text.substr(0, text.find('\n'));
}

std::string_view tip_of(std::string_view text)
{
    const std::size_t line_feed = text.find('\n');
    if (line_feed == std::string_view::npos)
        return {};
    return prompt_of(text.substr(line_feed + 1));
}

UINT prompt_id_of_choice(UINT item, UINT flags)
{
    if ((flags & (kPopupItem | kSeparatorItem)) != 0)
        return 0;
    if (item >= kFirstSystemCommand && item <= kLastSystemCommand)
        return AFX_IDS_SCFIRST + (item - kFirstSystemCommand) / kSystemCommandStep;
    return item;
}

bool menu_was_closed(UINT flags, bool has_menu)
{
    return (flags & kClosed) == kClosed && !has_menu;
}

}  // namespace zmr
