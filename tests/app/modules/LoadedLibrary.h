#pragma once

#include <functional>
#include <string>

/// A dynamic library, loaded by the system's own call; a failure fails the test. Each lane has its
/// own source.
class LoadedLibrary {
public:
    explicit LoadedLibrary(const char* file);
    ~LoadedLibrary();
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    /// Whether that file is in the memory of this process.
    [[nodiscard]] static bool IsLoaded(const char* file);
    /// Loads what the library of that file needs of the system, for good: some of the system's
    /// libraries keep something each time that they come and go.
    static void HoldWhatItNeeds(const char* file);
    /// The address of an exported function, or null.
    [[nodiscard]] void* find_symbol(const char* name) const;

private:
    void* handle_;
};

/// Runs `action` some times, counts handles and memory, runs it `turns` times more and counts
/// again. Says what grew, and nothing when nothing did; up to `bytes_per_turn` of memory count as
/// nothing.
[[nodiscard]] std::string what_grows(const std::function<void()>& action, int turns,
                                     int bytes_per_turn = 8);
