#include "tests/settings/help_module/engine.h"

namespace {

HelpCall last{};

}  // namespace

// The engine's entry, number 14 of the exports. It "shows" every file but one.
extern "C" HWND WINAPI zmr_note_help(HWND window, LPCSTR file, UINT command, DWORD_PTR data)
{
    last.window = window;
    last.command = command;
    last.data = data;
    ++last.calls;
    ::lstrcpynA(last.file, file != nullptr ? file : "(none)", sizeof last.file);
    return ::lstrcmpA(last.file, "refused.chm") == 0 ? nullptr : ::GetDesktopWindow();
}

extern "C" const HelpCall* WINAPI zmr_last_help_call()
{
    return &last;
}
