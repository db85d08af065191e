#include "tests/support/ChildProcess.h"

#include "tests/support/TerminalText.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>
#include <thread>
#include <utility>

namespace {

class OwnedDescriptor {
public:
    OwnedDescriptor() = default;
    explicit OwnedDescriptor(int number) : number_(number) {}
    ~OwnedDescriptor() { reset(); }
    OwnedDescriptor(OwnedDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept
    {
        reset();
        number_ = std::exchange(other.number_, -1);
        return *this;
    }
    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;

    [[nodiscard]] int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }
    void reset()
    {
        if (number_ >= 0)
            ::close(number_);
        number_ = -1;
    }

private:
    int number_ = -1;
};

// The child's standard streams, -1 for the one that it shares with the test, and its terminal.
struct Streams {
    int in = -1;
    int out = -1;
    int err = -1;
    const char* terminal = nullptr;
};

// Between fork and exec: only calls that are safe there.
[[noreturn]] void become(const char* program, char* const* words, const Streams& streams)
{
    int terminal = -1;
    if (streams.terminal != nullptr) {
        // The first terminal that the leader of a session opens becomes the session's.
        ::setsid();
        terminal = ::open(streams.terminal, O_RDWR);
        if (terminal < 0)
            ::_exit(126);
    }
    const int err = streams.err >= 0 ? streams.err : terminal;
    if (::dup2(streams.in, STDIN_FILENO) < 0 || ::dup2(streams.out, STDOUT_FILENO) < 0 ||
        (err >= 0 && ::dup2(err, STDERR_FILENO) < 0))
        ::_exit(126);
    ::execv(program, words);
    ::_exit(127);
}

OwnedDescriptor output_file(const std::string& name)
{
    return OwnedDescriptor(
        ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR));
}

// The side of a new terminal on which a person sits.
OwnedDescriptor open_terminal(std::string& name)
{
    OwnedDescriptor person(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    std::array<char, 128> text{};
    if (!person || ::grantpt(person.get()) != 0 || ::unlockpt(person.get()) != 0 ||
        ::ptsname_r(person.get(), text.data(), text.size()) != 0)
        return {};
    name = text.data();
    return person;
}

void gather(int terminal, TerminalText& text)
{
    std::array<char, 4096> bytes{};
    for (;;) {
        const ssize_t count = ::read(terminal, bytes.data(), bytes.size());
        if (count > 0)
            text.append({bytes.data(), static_cast<std::size_t>(count)});
        else if (count == 0 || errno != EINTR)
            return;  // nobody has the other side any more
    }
}

}  // namespace

struct ChildProcess::System {
    pid_t process = -1;
    bool ended = false;
    ChildEnd end;
    OwnedDescriptor in;   // a socket, because a write to one can be kept from raising a signal
    OwnedDescriptor out;  // not open when it prints to a file
    OwnedDescriptor terminal;
    TerminalText text;
    std::thread gatherer;
};

ChildProcess::ChildProcess(std::unique_ptr<System> system) : system_(std::move(system)) {}

ChildProcess::~ChildProcess()
{
    kill();
}

std::unique_ptr<ChildProcess> ChildProcess::Start(const ChildStart& start, std::string& reason)
{
    const auto refuse = [&reason] {
        reason = std::system_category().message(errno);
        return nullptr;
    };
    auto system = std::make_unique<System>();
    std::array<int, 2> in{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, in.data()) != 0)
        return refuse();
    system->in = OwnedDescriptor(in[0]);
    const OwnedDescriptor child_in(in[1]);

    OwnedDescriptor child_out;
    if (start.out_file.empty()) {
        std::array<int, 2> out{};
        if (::pipe2(out.data(), O_CLOEXEC) != 0)
            return refuse();
        system->out = OwnedDescriptor(out[0]);
        child_out = OwnedDescriptor(out[1]);
    } else {
        child_out = output_file(start.out_file);
    }
    const bool err_is_file = !start.err_file.empty() && start.terminal != ChildTerminal::ForErrors;
    const OwnedDescriptor child_err = err_is_file ? output_file(start.err_file) : OwnedDescriptor();
    std::string terminal;
    if (start.terminal != ChildTerminal::None)
        system->terminal = open_terminal(terminal);
    if (!child_out || (err_is_file && !child_err) ||
        (start.terminal != ChildTerminal::None && !system->terminal))
        return refuse();

    Streams streams{child_in.get(), child_out.get(), child_err.get(), nullptr};
    if (start.terminal != ChildTerminal::None) {
        streams.terminal = terminal.c_str();
        if (start.terminal == ChildTerminal::Aside && !err_is_file)
            streams.err = STDERR_FILENO;
    }
    std::vector<char*> words{const_cast<char*>(start.program.c_str())};
    for (const std::string& word : start.words)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);

    system->process = ::fork();
    if (system->process == 0)
        become(start.program.c_str(), words.data(), streams);
    if (system->process < 0)
        return refuse();
    if (system->terminal) {
        System& whole = *system;
        system->gatherer = std::thread([&whole] { gather(whole.terminal.get(), whole.text); });
    }
    return std::unique_ptr<ChildProcess>(new ChildProcess(std::move(system)));
}

bool ChildProcess::write_line(std::string_view line)
{
    std::string bytes(line);
    bytes += '\n';
    return ::send(system_->in.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(bytes.size());
}

std::size_t ChildProcess::read_out(char* bytes, std::size_t size)
{
    ssize_t count = 0;
    do
        count = ::read(system_->out.get(), bytes, size);
    while (count < 0 && errno == EINTR);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool ChildProcess::runs()
{
    siginfo_t info = {};
    return !system_->ended &&
           ::waitid(P_PID, static_cast<id_t>(system_->process), &info,
                    WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid != system_->process;
}

void ChildProcess::kill()
{
    if (!system_->ended)
        ::kill(system_->process, SIGKILL);
    wait();
}

void ChildProcess::interrupt()
{
    const char control_c = '\x03';
    static_cast<void>(!::write(system_->terminal.get(), &control_c, 1));
}

ChildEnd ChildProcess::wait()
{
    if (system_->ended)
        return system_->end;
    int status = 0;
    rusage usage = {};
    pid_t waited = -1;
    do
        waited = ::wait4(system_->process, &status, 0, &usage);
    while (waited < 0 && errno == EINTR);
    system_->ended = true;
    if (waited == system_->process && WIFEXITED(status))
        system_->end.code = WEXITSTATUS(status);
    system_->end.peak_bytes = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
    if (system_->gatherer.joinable())
        system_->gatherer.join();
    return system_->end;
}

std::string ChildProcess::terminal_text() const
{
    return system_->text.get();
}
