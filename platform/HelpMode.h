#pragma once

#include "platform/Export.h"
#include "platform/PlatformTypes.h"

#include <cstdint>

namespace zmr {

/// What help mode does about a message that was taken from the thread's queue.
enum class HelpModeStep {
    Pass,   ///< It goes its usual way.
    Drop,   ///< It does nothing: a press of another button, for instance.
    Point,  ///< The mouse moved: the cursor asks its question where it is now.
    Ask,    ///< A click: help about what lies there.
    Leave,  ///< The mode ends without help.
};

/// `key` is the message's first word, which is a key's virtual code; `shift`: that key is down.
[[nodiscard]] ZMR_GV_API HelpModeStep help_mode_step(UINT message, std::uintptr_t key, bool shift);

/// True for the commands of a window's own menu, which ask about themselves in help mode; false for
/// those by which the system opens menus.
[[nodiscard]] ZMR_GV_API bool asks_in_help_mode(UINT system_command);

/// A click on a title, an edge or another part around a window's client area, by its hit-test code.
struct HelpArea {
    bool opens_menu;        ///< The click opens a menu, whose choice asks for help by itself.
    std::uint32_t context;  ///< The part's topic; 0 in the client area, where the window is asked.
};
[[nodiscard]] ZMR_GV_API HelpArea help_area(int hit_code);

}  // namespace zmr
