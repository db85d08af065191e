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
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), &mode);
}

void write_error(std::string_view text)
{
    // Not through the C runtime, which writes its unbuffered error output byte by byte.
    std::string lines;
    for (const char c : text)
        lines += c == '\n' ? std::string("\r\n") : std::string(1, c);
    const HANDLE error = ::GetStdHandle(STD_ERROR_HANDLE);
    std::wstring wide;
    DWORD written = 0;
    if (error_is_terminal() && zmr::to_wide(lines, wide))
        ::WriteConsoleW(error, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
    else
        ::WriteFile(error, lines.data(), static_cast<DWORD>(lines.size()), &written, nullptr);
}

void wipe_error_line()
{
    // Not by an escape sequence, which not every console obeys.
    const HANDLE error = ::GetStdHandle(STD_ERROR_HANDLE);
    CONSOLE_SCREEN_BUFFER_INFO screen = {};
    if (!::GetConsoleScreenBufferInfo(error, &screen))
        return;
    const COORD start{0, screen.dwCursorPosition.Y};
    const auto columns = static_cast<DWORD>(screen.dwSize.X);
    DWORD filled = 0;
    ::FillConsoleOutputCharacterW(error, L' ', columns, start, &filled);
    ::SetConsoleCursorPosition(error, start);
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
