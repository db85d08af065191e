#include "tests/TemporaryFolder.h"
#include "tests/tools/ToolProcess.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <thread>

namespace {

std::string content_of(const std::string& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

[[noreturn]] void become_tool(const std::vector<std::string>& words, const std::string& out,
                              const std::string& err, const ToolControl& control)
{
    const int out_file = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int err_file = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (out_file < 0 || err_file < 0 || dup2(out_file, STDOUT_FILENO) < 0 ||
        dup2(err_file, STDERR_FILENO) < 0)
        _exit(126);
    if (control.file_limit_bytes > 0) {
        const rlimit limit{control.file_limit_bytes, control.file_limit_bytes};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
            _exit(126);
    }
    std::vector<char*> arguments{const_cast<char*>(ZMR_ODB_TOOL)};
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    execv(ZMR_ODB_TOOL, arguments.data());
    _exit(127);
}

// Sends the signal when the file is there, unless the process ends before.
void interrupt_when_there(pid_t process, const std::string& file)
{
    siginfo_t info = {};
    while (!std::filesystem::exists(file)) {
        if (waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
            info.si_pid == process)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    kill(process, SIGINT);
}

}  // namespace

ToolResult run_tool(const std::vector<std::string>& words)
{
    return run_tool(words, ToolControl());
}

ToolResult run_tool(const std::vector<std::string>& words, const ToolControl& control)
{
    const TemporaryFolder folder;
    const std::string out = folder.file("out");
    const std::string err = folder.file("err");
    const pid_t process = fork();
    if (process == 0)
        become_tool(words, out, err, control);
    if (!control.interrupt_at_file.empty())
        interrupt_when_there(process, control.interrupt_at_file);
    int status = 0;
    rusage usage = {};
    ToolResult result;
    if (wait4(process, &status, 0, &usage) == process && WIFEXITED(status))
        result.code = WEXITSTATUS(status);
    result.out = content_of(out);
    result.err = content_of(err);
    result.peak_bytes = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
    return result;
}
