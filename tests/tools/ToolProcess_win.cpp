#include "tests/tools/ToolProcess.h"

#include "platform/Handles.h"
#include "platform/WideText.h"
#include "tests/TemporaryFolder.h"

#include <fstream>
#include <iterator>
#include <string>

namespace {

// With the lines' ends as they are elsewhere.
std::string content_of(const std::string& file)
{
    std::ifstream in(std::filesystem::path(std::u8string(file.begin(), file.end())),
                     std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    std::erase(content, '\r');
    return content;
}

// One word as CommandLineToArgvW takes it apart again.
std::wstring quoted(const std::string& word)
{
    std::wstring wide;
    static_cast<void>(zmr::to_wide(word, wide));  // the tests' words are UTF-8
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : wide) {
        if (c == L'"')
            result.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        result += c;
    }
    result.append(backslashes, L'\\');
    return result + L"\"";
}

zmr::OwnedKernelHandle output_file(const std::string& name)
{
    SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
    std::wstring wide;
    static_cast<void>(zmr::to_wide(name, wide));
    const HANDLE file = ::CreateFileW(wide.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    return zmr::OwnedKernelHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

// A loaded machine under Wine now and then refuses to start a process; that says nothing of the
// tool.
bool start_process(std::wstring& line, STARTUPINFOW& start, PROCESS_INFORMATION& process)
{
    constexpr int kAttempts = 5;
    constexpr DWORD kPause_ms = 200;
    for (int attempt = 1;; ++attempt) {
        if (::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                             &start, &process))
            return true;
        if (attempt == kAttempts)
            return false;
        ::Sleep(kPause_ms);
    }
}

}  // namespace

ToolResult run_tool(const std::vector<std::string>& words)
{
    const TemporaryFolder folder;
    ToolResult result;
    {
        const zmr::OwnedKernelHandle out = output_file(folder.file("out"));
        const zmr::OwnedKernelHandle err = output_file(folder.file("err"));
        std::wstring line = quoted(ZMR_ODB_TOOL);
        for (const std::string& word : words)
            line += L" " + quoted(word);
        STARTUPINFOW start = {};
        start.cb = sizeof(start);
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdOutput = out.get();
        start.hStdError = err.get();
        PROCESS_INFORMATION process = {};
        if (!start_process(line, start, process)) {
            result.err = "the tool was not started: error " + std::to_string(::GetLastError());
            return result;
        }
        const zmr::OwnedKernelHandle thread(process.hThread);
        const zmr::OwnedKernelHandle handle(process.hProcess);
        DWORD code = 0;
        if (::WaitForSingleObject(handle.get(), INFINITE) != WAIT_OBJECT_0 ||
            !::GetExitCodeProcess(handle.get(), &code)) {
            result.err = "no exit code: error " + std::to_string(::GetLastError());
            return result;
        }
        result.code = static_cast<int>(code);
    }
    result.out = content_of(folder.file("out"));
    result.err = content_of(folder.file("err"));
    return result;
}
