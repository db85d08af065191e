// console_relay aside|errors PROGRAM WORD...: runs a program on the console that this one was
// started on, and ends with its code. With "errors" the program's standard error is the console.
// Each line on the standard input presses Ctrl-C there; when that input ends the program is ended.
#include "platform/Handles.h"
#include "tests/support/CommandLine_win.h"

#include <shellapi.h>
#include <string_view>
#include <thread>

namespace {

constexpr int kNotStarted = 127;

BOOL WINAPI stay(DWORD)
{
    return TRUE;
}

HANDLE open_screen()
{
    SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
    return ::CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE,
                         FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr);
}

void obey(HANDLE program)
{
    char byte = 0;
    DWORD count = 0;
    while (::ReadFile(::GetStdHandle(STD_INPUT_HANDLE), &byte, 1, &count, nullptr) && count == 1)
        if (byte == '\n')
            ::GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    ::TerminateProcess(program, kNotStarted);
}

}  // namespace

int main()
{
    int count = 0;
    wchar_t** const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    if (words == nullptr || count < 3)
        return kNotStarted;
    const bool errors = std::wstring_view(words[1]) == L"errors";
    STARTUPINFOW start = {};
    start.cb = sizeof(start);
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = ::GetStdHandle(STD_OUTPUT_HANDLE);
    start.hStdError = errors ? open_screen() : ::GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process = {};
    if (start.hStdError == INVALID_HANDLE_VALUE ||
        !start_process(command_line_of({words + 2, words + count}), 0, start, process))
        return kNotStarted;
    ::SetConsoleCtrlHandler(stay, TRUE);
    std::thread(obey, process.hProcess).detach();
    DWORD code = kNotStarted;
    if (::WaitForSingleObject(process.hProcess, INFINITE) != WAIT_OBJECT_0 ||
        !::GetExitCodeProcess(process.hProcess, &code))
        return kNotStarted;
    return static_cast<int>(code);
}
