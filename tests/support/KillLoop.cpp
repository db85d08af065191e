#include "tests/support/KillLoop.h"

#include "tests/store/Random.h"

#include <chrono>
#include <thread>

namespace zmr {
namespace {

/// Runs one writer until it is killed; what it acknowledged is added up in `acknowledged` and
/// `figures`.
void kill_one(const KillLoop& loop, Random& random, std::uint64_t& acknowledged,
              KillFigures& figures)
{
    const auto writer = ChildProcess::Start(loop.writer, figures.failure);
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
    std::this_thread::sleep_for(std::chrono::microseconds(random() % loop.longest_us));
    writer->kill();
    while (writer->read_line(line))
        acknowledge();
    ++figures.kills;
}

}  // namespace

KillFigures KillLoop::run(int kills, std::uint32_t seed, std::uint64_t last) const
{
    KillFigures figures;
    Random random(seed);
    while (figures.kills < kills && figures.failure.empty()) {
        std::uint64_t acknowledged = last;
        kill_one(*this, random, acknowledged, figures);
        last = acknowledged;
        if (figures.failure.empty())
            figures.failure = look(acknowledged, last);
    }
    return figures;
}

std::string compare_commits(std::uint64_t acknowledged, std::uint64_t last)
{
    // One may be done and not told.
    if (last == acknowledged || last == acknowledged + 1)
        return {};
    return "commit " + std::to_string(acknowledged) + " was acknowledged, " + std::to_string(last) +
           " is there";
}

}  // namespace zmr
