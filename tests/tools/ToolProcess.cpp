#include "tests/tools/ToolProcess.h"

#include "tests/TemporaryFolder.h"

#include <chrono>
#include <fstream>
#include <iterator>
#include <thread>

namespace {

std::filesystem::path to_path(const std::string& name)
{
    return {std::u8string(name.begin(), name.end())};
}

// With the lines' ends as they are on POSIX systems.
std::string content_of(const std::string& file)
{
    std::ifstream in(to_path(file), std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    std::erase(content, '\r');
    return content;
}

// Unless the tool ends before the file is there.
void interrupt_when_there(ChildProcess& tool, const std::string& file)
{
    while (!std::filesystem::exists(to_path(file))) {
        if (!tool.runs())
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    tool.interrupt();
}

}  // namespace

ToolResult run_tool(const std::vector<std::string>& words, const ToolControl& control)
{
    const TemporaryFolder folder;
    ChildStart start;
    start.program = ZMR_ODB_TOOL;
    start.words = words;
    start.out_file = folder.file("out");
    start.err_file = folder.file("err");
    start.terminal = control.terminal;
    ToolResult result;
    std::string reason;
    const auto tool = ChildProcess::Start(start, reason);
    if (tool == nullptr) {
        result.err = "the tool was not started: " + reason;
        return result;
    }
    if (!control.interrupt_at_file.empty())
        interrupt_when_there(*tool, control.interrupt_at_file);
    const ChildEnd end = tool->wait();
    result.code = end.code;
    result.peak_bytes = end.peak_bytes;
    result.out = content_of(start.out_file);
    result.err = content_of(start.err_file);
    result.terminal = tool->terminal_text();
    return result;
}
