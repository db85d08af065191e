#include "KillRun.h"

#include "NumberedCommits.h"

namespace zmr {
namespace {

/// Reads the library after a kill.
std::string check(const std::string& name, LibraryAccess access, std::uint64_t acknowledged,
                  std::uint64_t& last)
{
    LibraryFile file(FileSystemDevice::Real(), NumberedCommits::kSmall);
    const LibraryOpenResult result = file.open(name, access, "check");
    if (result.status != LibraryOpenStatus::Ok)
        return acknowledged == 0 ? "" : "it does not open: " + result.text;
    last = NumberedCommits::Last(file);
    const std::string lost = compare_commits(acknowledged, last);
    return lost.empty() ? NumberedCommits::Check(file) : lost;
}

}  // namespace

KillFigures run_kills(const std::string& name, int kills, std::uint32_t seed)
{
    constexpr unsigned kLongest_us = 12'000;
    KillLoop loop;
    loop.writer.program = ZMR_STORE_CHILD;
    loop.writer.words = {"write", name};
    loop.longest_us = kLongest_us;
    loop.look = [&](std::uint64_t acknowledged, std::uint64_t& last) {
        const std::string failure = check(name, LibraryAccess::Read, acknowledged, last);
        return failure.empty() ? check(name, LibraryAccess::Write, acknowledged, last) : failure;
    };
    return loop.run(kills, seed);
}

}  // namespace zmr
