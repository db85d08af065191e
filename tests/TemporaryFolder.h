#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

/// A new empty folder for one test, removed with all that is in it at the end of the scope.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        static std::atomic<unsigned> counter{0};
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        for (int attempt = 0; attempt < 100; ++attempt) {
            path_ = std::filesystem::temp_directory_path() /
                    ("zmr-" + std::to_string(now) + "-" + std::to_string(++counter));
            if (std::filesystem::create_directory(path_))
                return;
        }
        throw std::runtime_error("no temporary folder could be made");
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;  // a test that left a file open has failed for that already
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    /// The full UTF-8 name of an entry; `name` is UTF-8 with slashes.
    [[nodiscard]] std::string file(const std::string& name) const
    {
        const std::u8string text(name.begin(), name.end());
        const std::u8string full = (path_ / std::filesystem::path(text)).generic_u8string();
        return {full.begin(), full.end()};
    }

private:
    std::filesystem::path path_;
};
