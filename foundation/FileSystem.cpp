#include "foundation/FileSystem.h"

#include "foundation/DirectoryAccess.h"
#include "foundation/GStaticText.h"
#include "foundation/PathSyntax.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr char kDigits[] = "0123456789abcdefghijklmnopqrstuvwxyz";
constexpr std::uint64_t kDigitCount = 36;
constexpr std::uint64_t kMostTries = 36 * 36 * 36 * 36;  // four place-holders are tried out wholly

constinit const zmr::StaticText kParentText("..");

/// A number that other processes and threads don't get at the same time, most likely.
std::uint64_t next_start()
{
    static std::atomic<std::uint64_t> state = std::uint64_t{std::random_device()()} << 32;
    // The finishing steps of SplitMix64 (Steele, Lea, Flood 2014).
    std::uint64_t number = state.fetch_add(0x9E3779B97F4A7C15u) + 0x9E3779B97F4A7C15u;
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9u;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EBu;
    return number ^ (number >> 31);
}

GString parent_name()
{
    GString name;
    GStaticString::put(name, kParentText);
    return name;
}

}  // namespace

const GString& FileSystem::GetParentDirectoryName()
{
    static const GString name = parent_name();
    return name;
}

bool FileSystem::CreateDirectoryA(GFile directory)
{
    const std::string path(directory.view());
    // Asked afterwards: another process may make it meanwhile.
    return zmr::make_directory(path) || zmr::path_kind(path) == zmr::PathKind::Directory;
}

bool FileSystem::UniqueName(GFile& file, char place_holder)
{
    std::string path(file.view());
    std::vector<std::size_t> places;
    for (std::size_t place = zmr::name_start(path); place < path.size(); ++place)
        if (path[place] == place_holder)
            places.push_back(place);
    if (places.empty())
        return false;

    std::uint64_t names = 1;
    for (std::size_t place = 0; place < places.size() && names < kMostTries; ++place)
        names *= kDigitCount;
    const std::uint64_t start = next_start() >> 1;  // so that the walk never wraps
    for (std::uint64_t step = 0; step < std::min(names, kMostTries); ++step) {
        std::uint64_t number = start + step;
        for (const std::size_t place : places) {
            path[place] = kDigits[number % kDigitCount];
            number /= kDigitCount;
        }
        if (zmr::path_kind(path) == zmr::PathKind::Missing) {
            file = GString(path);
            return true;
        }
    }
    return false;
}
