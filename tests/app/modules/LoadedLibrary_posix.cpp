#include "tests/app/modules/LoadedLibrary.h"

#include <dlfcn.h>
#include <malloc.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// What the sanitizers' allocator tells, where the program has it; the plain one knows nothing then.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace {

std::size_t allocated_bytes()
{
    if (__sanitizer_get_current_allocated_bytes != nullptr)
        return __sanitizer_get_current_allocated_bytes();
    return ::mallinfo2().uordblks;
}

std::ptrdiff_t open_files()
{
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}

/// Areas of memory that show files. Those without belong to the allocators, whose bytes are
/// counted.
std::ptrdiff_t mapped_areas()
{
    std::ifstream maps("/proc/self/maps");
    std::ptrdiff_t count = 0;
    for (std::string line; std::getline(maps, line);)
        count += line.find('/') != std::string::npos ? 1 : 0;
    return count;
}

template <class Number>
void tell_growth(std::string& text, const char* name, Number before, Number after, Number allowed)
{
    if (after > before + allowed)
        text += std::string(name) + ": " + std::to_string(before) + " to " + std::to_string(after) +
                "\n";
}

}  // namespace

LoadedLibrary::LoadedLibrary(const char* file) : handle_(::dlopen(file, RTLD_NOW | RTLD_LOCAL))
{
    EXPECT_NE(handle_, nullptr) << ::dlerror();
}

LoadedLibrary::~LoadedLibrary()
{
    if (handle_ != nullptr)
        ::dlclose(handle_);
}

bool LoadedLibrary::IsLoaded(const char* file)
{
    // The loader forgets a library that it cannot take out of memory; the system does not.
    const std::string path = std::filesystem::canonical(file).string();
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.ends_with(path))
            return true;
    return false;
}

void LoadedLibrary::HoldWhatItNeeds(const char*) {}

void* LoadedLibrary::find_symbol(const char* name) const
{
    return ::dlsym(handle_, name);
}

std::string what_grows(const std::function<void()>& action, int turns, int bytes_per_turn)
{
    constexpr int kFirstTurns = 20;
    // The sanitizers note each static object of a library once more, and never forget it.
    if (__sanitizer_get_current_allocated_bytes != nullptr)
        bytes_per_turn += 4096;
    for (int turn = 0; turn < kFirstTurns; ++turn)
        action();
    const auto files = open_files();
    const auto areas = mapped_areas();
    const std::size_t bytes = allocated_bytes();
    for (int turn = 0; turn < turns; ++turn)
        action();
    const std::size_t bytes_after = allocated_bytes();
    std::string grown;
    tell_growth(grown, "open files", files, open_files(), std::ptrdiff_t{0});
    tell_growth(grown, "mapped areas", areas, mapped_areas(), std::ptrdiff_t{0});
    tell_growth(grown, "bytes", bytes, bytes_after,
                static_cast<std::size_t>(turns) * static_cast<std::size_t>(bytes_per_turn));
    return grown;
}
