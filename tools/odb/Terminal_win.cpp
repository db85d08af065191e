#include "tools/odb/Terminal.h"

#include "platform/WideText.h"
#include "platform/Windows.h"

#include <shellapi.h>
#include <atomic>

namespace terminal {

namespace {

std::atomic<bool> g_interrupted{false};

struct FreeWords {
    wchar_t** words = nullptr;
    ~FreeWords() { ::LocalFree(words); }
};

BOOL WINAPI note_interrupt(DWORD event)
{
    const bool again = g_interrupted.exchange(true);
    if (event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT)
        return again ? FALSE : TRUE;
    // The window is being closed: the process ends when this returns.
    ::Sleep(4000);
    return TRUE;
}

}  // namespace

std::vector<std::string> arguments(int, char**)
{
    // Not the C runtime's words, which are in its code page and have their masks expanded.
    int count = 0;
    const FreeWords parsed{::CommandLineToArgvW(::GetCommandLineW(), &count)};
    std::vector<std::string> result;
    for (int i = 0; i < count; ++i)
        result.push_back(zmr::to_utf8(parsed.words[i]));
    return result;
}

bool error_is_terminal()
{
    // One that obeys escape sequences, by which a line is wiped.
    const HANDLE error = ::GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    return ::GetConsoleMode(error, &mode) &&
           ::SetConsoleMode(error, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

void catch_interrupts()
{
    ::SetConsoleOutputCP(CP_UTF8);
    ::SetConsoleCtrlHandler(note_interrupt, TRUE);
}

bool interrupted()
{
    return g_interrupted.load();
}

}  // namespace terminal
