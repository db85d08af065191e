#include "KillRun_posix.h"

#include "LibraryModel.h"
#include "Random.h"
#include "store/LibraryFile.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace zmr {
namespace {

constexpr std::uint64_t kNames = 40;
constexpr LibraryTuning kSmall{8000, 100'000, 100'000};

/// The content that commit `number` puts; long ones now and then.
std::string content_of(std::uint64_t number)
{
    const std::size_t size = number % 17 == 0 ? 120'000 : 100 + number * 37 % 5000;
    return noise_bytes(size, static_cast<unsigned>(number));
}

std::uint64_t last_number(const LibraryFile& file)
{
    std::string text;
    return file.get({}, "number", "t", text) ? std::stoull(text) : 0;
}

/// Commits for ever, and tells each acknowledged number through the pipe.
[[noreturn]] void write_for_ever(const std::string& name, int pipe)
{
    LibraryFile file(FileSystemDevice::Real(), kSmall);
    if (file.open(name, LibraryAccess::Write, "kill run").status != LibraryOpenStatus::Ok)
        ::_exit(2);
    for (std::uint64_t number = last_number(file) + 1;; ++number) {
        file.begin_scope();
        const std::string bytes = content_of(number);
        const std::string text = std::to_string(number);
        bool good = file.put({}, std::to_string(number % kNames), "t", ContentKind::Raw, "",
                             as_span(bytes));
        good = file.put({}, "number", "t", ContentKind::Streamable, "", as_span(text)) && good;
        good = file.commit() && good;
        file.end_scope();
        if (!good || file.error())
            ::_exit(3);
        if (::write(pipe, &number, sizeof number) != sizeof number)
            ::_exit(4);
        if (number % 50 == 0 && !file.pack())
            ::_exit(5);
    }
}

std::string check(const std::string& name, std::uint64_t acknowledged, LibraryAccess access)
{
    LibraryFile file(FileSystemDevice::Real(), kSmall);
    const LibraryOpenResult result = file.open(name, access, "check");
    if (result.status != LibraryOpenStatus::Ok)
        return acknowledged == 0 ? "" : "it does not open: " + result.text;
    const std::uint64_t last = last_number(file);
    if (last < acknowledged || last > acknowledged + 1)
        return "commit " + std::to_string(acknowledged) + " was acknowledged, " +
               std::to_string(last) + " is there";
    for (std::uint64_t number = last; number > 0 && number + kNames > last; --number) {
        std::string bytes;
        if (!file.get({}, std::to_string(number % kNames), "t", bytes) ||
            bytes != content_of(number))
            return "the content of commit " + std::to_string(number) + " is not there";
    }
    return file.verify({}) ? "" : "verify found damage";
}

}  // namespace

KillFigures run_kills(const std::string& name, int kills, std::uint32_t seed)
{
    KillFigures figures;
    Random random(seed);
    std::uint64_t acknowledged = 0;
    while (figures.kills < kills && figures.failure.empty()) {
        std::array<int, 2> pipe{};
        if (::pipe(pipe.data()) != 0) {
            figures.failure = "no pipe";
            break;
        }
        const pid_t child = ::fork();
        if (child == 0) {
            ::close(pipe[0]);
            write_for_ever(name, pipe[1]);
        }
        ::close(pipe[1]);
        // Every other one is let come to its first commit, however slow the machine is.
        std::uint64_t number = 0;
        if (figures.kills % 2 == 0 && ::read(pipe[0], &number, sizeof number) == sizeof number) {
            acknowledged = number;
            ++figures.commits;
        }
        ::usleep(random() % 12'000);
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        while (::read(pipe[0], &number, sizeof number) == sizeof number) {
            acknowledged = number;
            ++figures.commits;
        }
        ::close(pipe[0]);
        ++figures.kills;
        if (WIFEXITED(status))
            figures.failure = "the writer ended with " + std::to_string(WEXITSTATUS(status));
        if (figures.failure.empty())
            figures.failure = check(name, acknowledged, LibraryAccess::Read);
        if (figures.failure.empty())
            figures.failure = check(name, acknowledged, LibraryAccess::Write);
        // A commit may have been done and not told.
        LibraryFile file;
        if (file.open(name, LibraryAccess::Read).status == LibraryOpenStatus::Ok)
            acknowledged = last_number(file);
    }
    return figures;
}

}  // namespace zmr
