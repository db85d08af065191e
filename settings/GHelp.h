#pragma once

#include "platform/Export.h"
#include "platform/Windows.h"

/// The help engine in use, and the window that help was last asked in. docs/messages-and-help.md
/// tells how a request gets here. All of it is static; user-interface thread.
class ZMR_GV_API GHelp {
public:
    GHelp() = delete;

    /// True for the HTML engine, false for the classic one.
    static bool gUseHTML;
    [[nodiscard]] static bool UseHTML() { return gUseHTML; }
    static void UseHTML(bool html) { gUseHTML = html; }

    /// The window that asked for help last, and whose module's help file is to be shown; null when
    /// none did. A window calls it with its own handle as it handles WM_COMMANDHELP or
    /// WM_HELPHITTEST; the application clears it behind each request.
    [[nodiscard]] static HWND PointedWindow();
    static void PointedWindow(HWND window);

    /// The HTML engine's command for one of the classic engine, 0xFFFFFFFF where it has none.
    [[nodiscard]] static unsigned int TranslateWinHelpCmdToHTMLHelpCmd(unsigned int command);

    /// Shows help in the engine in use. `command` is one of that engine's own; `data` is a topic's
    /// number or an address, as the command says. False when the engine is missing or refuses. The
    /// HTML engine is loaded at its first use and stays to the end of the process.
    [[nodiscard]] static bool CallHelp(HWND window, const char* file, unsigned int command,
                                       DWORD_PTR data);

    /// Called at the application's begin and end. Nothing is done: all work is at the first use.
    static void Initialize() {}
    static void Terminate() {}
};
