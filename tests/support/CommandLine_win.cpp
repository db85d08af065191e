#include "tests/support/CommandLine_win.h"

namespace {

std::wstring quoted(const std::wstring& word)
{
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : word) {
        if (c == L'"')
            result.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        result += c;
    }
    result.append(backslashes, L'\\');
    return result + L"\"";
}

}  // namespace

std::wstring command_line_of(const std::vector<std::wstring>& words)
{
    std::wstring line;
    for (const std::wstring& word : words)
        line += (line.empty() ? L"" : L" ") + quoted(word);
    return line;
}

bool start_process(std::wstring line, DWORD flags, STARTUPINFOW& start,
                   PROCESS_INFORMATION& process)
{
    constexpr int kAttempts = 5;
    constexpr DWORD kPause_ms = 200;
    for (int attempt = 1;; ++attempt) {
        if (::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr,
                             &start, &process))
            return true;
        if (attempt == kAttempts)
            return false;
        ::Sleep(kPause_ms);
    }
}
