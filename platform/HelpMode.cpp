#include "platform/HelpMode.h"

#include "platform/PlatformIds.h"

namespace {

// The system's numbers, which the portable lanes have no header for.
constexpr UINT kKeyDown = 0x0100;
constexpr UINT kSystemKeyDown = 0x0104;
constexpr UINT kMouseFirst = 0x0200;
constexpr UINT kMouseMove = 0x0200;
constexpr UINT kLeftDown = 0x0201;
constexpr UINT kLeftDouble = 0x0203;
constexpr UINT kMouseLast = 0x020E;
constexpr UINT kAreaMouseFirst = 0x00A0;
constexpr UINT kAreaMouseMove = 0x00A0;
constexpr UINT kAreaLeftDown = 0x00A1;
constexpr UINT kAreaLeftDouble = 0x00A3;
constexpr UINT kAreaMouseLast = 0x00AD;
constexpr std::uintptr_t kEscape = 0x1B;
constexpr std::uintptr_t kF1 = 0x70;
constexpr int kNowhere = 0;
constexpr int kTransparent = -1;
constexpr int kError = -2;
constexpr int kClient = 1;
constexpr int kSystemMenu = 3;
constexpr int kMenu = 5;

}  // namespace

namespace zmr {

HelpModeStep help_mode_step(UINT message, std::uintptr_t key, bool shift)
{
    if (message == kKeyDown || message == kSystemKeyDown) {
        const bool same_again = key == kF1 && shift;
        return key == kEscape || same_again ? HelpModeStep::Leave : HelpModeStep::Pass;
    }
    if (message == kMouseMove || message == kAreaMouseMove)
        return HelpModeStep::Point;
    if (message == kLeftDown || message == kLeftDouble || message == kAreaLeftDown ||
        message == kAreaLeftDouble)
        return HelpModeStep::Ask;
    if ((message >= kMouseFirst && message <= kMouseLast) ||
        (message >= kAreaMouseFirst && message <= kAreaMouseLast))
        return HelpModeStep::Drop;
    return HelpModeStep::Pass;
}

bool asks_in_help_mode(UINT system_command)
{
    // The four low bits are the system's own.
    switch (system_command & 0xFFF0U) {
        case 0xF000:  // size
        case 0xF010:  // move
        case 0xF020:  // minimize
        case 0xF030:  // maximize
        case 0xF040:  // next window
        case 0xF050:  // previous window
        case 0xF060:  // close
        case 0xF120:  // restore
        case 0xF130:  // task list
            return true;
        default:
            return false;
    }
}

HelpArea help_area(int hit_code)
{
    if (hit_code == kMenu || hit_code == kSystemMenu)
        return {true, 0};
    const bool inside = hit_code == kClient || hit_code == kNowhere || hit_code == kTransparent ||
                        hit_code == kError;
    if (inside)
        return {false, 0};
    return {false, HID_BASE_NCAREAS + static_cast<std::uint32_t>(hit_code)};
}

}  // namespace zmr
