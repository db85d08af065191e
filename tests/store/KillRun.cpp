#include "KillRun.h"

#include "NumberedCommits.h"
#include "Random.h"
#include "tests/support/ChildProcess.h"

#include <chrono>
#include <thread>

namespace zmr {
namespace {

/// Reads the library after a kill; `last` becomes the number of its last commit, which may be done
/// and not told.
std::string check(const std::string& name, LibraryAccess access, std::uint64_t acknowledged,
                  std::uint64_t& last)
{
    LibraryFile file(FileSystemDevice::Real(), NumberedCommits::kSmall);
    const LibraryOpenResult result = file.open(name, access, "check");
    if (result.status != LibraryOpenStatus::Ok)
        return acknowledged == 0 ? "" : "it does not open: " + result.text;
    last = NumberedCommits::Last(file);
    if (last < acknowledged || last > acknowledged + 1)
        return "commit " + std::to_string(acknowledged) + " was acknowledged, " +
               std::to_string(last) + " is there";
    return NumberedCommits::Check(file);
}

/// Runs one writer until it is killed; what it acknowledged is added up in `acknowledged` and
/// `figures`.
void kill_one(const std::string& name, Random& random, std::uint64_t& acknowledged,
              KillFigures& figures)
{
    ChildStart start;
    start.program = ZMR_STORE_CHILD;
    start.words = {"write", name};
    const auto writer = ChildProcess::Start(start, figures.failure);
    std::string line;
    if (writer == nullptr || !writer->read_line(line)) {
        figures.failure = "the writer is not started: " + figures.failure;
        return;
    }
    const auto acknowledge = [&] {
        if (line.empty() || line.find_first_not_of("0123456789") != std::string::npos) {
            figures.failure = line;
            return;
        }
        acknowledged = std::stoull(line);
        ++figures.commits;
    };
    // Every other one is let come to its first commit, however slow the machine is.
    if (figures.kills % 2 == 0 && writer->read_line(line))
        acknowledge();
    constexpr unsigned kLongest_us = 12'000;
    std::this_thread::sleep_for(std::chrono::microseconds(random() % kLongest_us));
    writer->kill();
    while (writer->read_line(line))
        acknowledge();
    ++figures.kills;
}

}  // namespace

KillFigures run_kills(const std::string& name, int kills, std::uint32_t seed)
{
    KillFigures figures;
    Random random(seed);
    std::uint64_t acknowledged = 0;
    while (figures.kills < kills && figures.failure.empty()) {
        kill_one(name, random, acknowledged, figures);
        std::uint64_t last = acknowledged;
        for (const LibraryAccess access : {LibraryAccess::Read, LibraryAccess::Write})
            if (figures.failure.empty())
                figures.failure = check(name, access, acknowledged, last);
        acknowledged = last;
    }
    return figures;
}

}  // namespace zmr
