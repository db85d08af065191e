#pragma once

#include "platform/Windows.h"

/// The last call of the help engine, which only notes.
struct HelpCall {
    HWND window;
    char file[260];
    UINT command;
    DWORD_PTR data;
    int calls;
};

/// Known as "zmr_last_help_call".
using LastHelpCall = const HelpCall*(WINAPI*)();
