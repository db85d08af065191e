#include "platform/Windows.h"

#include <array>
#include <cstdio>
#include <cstdlib>

// A help engine that shows nothing and notes what it is asked for: a line with the command, the
// topic and the file for each request, in the file that ZMR_HELP_CALLS names. With ZMR_HELP_REFUSES
// it notes, and says that it can't.

extern "C" HWND WINAPI zmr_note_help(HWND, LPCSTR file, UINT command, DWORD_PTR topic)
{
    std::array<char, 1024> name{};
    ::GetEnvironmentVariableA("ZMR_HELP_CALLS", name.data(), static_cast<DWORD>(name.size()));
    if (std::FILE* const calls = std::fopen(name.data(), "ab")) {
        std::fprintf(calls, "%u %llx %s\n", command, static_cast<unsigned long long>(topic), file);
        std::fclose(calls);
    }
    std::array<char, 8> refuses{};
    const DWORD length = ::GetEnvironmentVariableA("ZMR_HELP_REFUSES", refuses.data(),
                                                   static_cast<DWORD>(refuses.size()));
    return length > 0 ? nullptr : ::GetDesktopWindow();
}
