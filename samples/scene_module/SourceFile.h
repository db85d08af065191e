#pragma once

#include <cstdint>
#include <string>

namespace scene {

/// The start of a file, enough to tell its kind.
struct FileHead {
    static constexpr std::size_t kBytes = 4096;
    std::string bytes;  ///< Up to kBytes; empty when the file can't be read.
    std::uint64_t file_bytes = 0;
};

[[nodiscard]] FileHead read_file_head(const char* file);

/// The whole file. Throws GLibraryException that tells why it can't be read, also for one larger
/// than kMaxModelBytes.
[[nodiscard]] std::string read_whole_file(const char* file);
inline constexpr std::uint64_t kMaxModelBytes = std::uint64_t{4} << 30;

/// Writes the file in the place of any old one; false when it can't.
[[nodiscard]] bool write_whole_file(const char* file, const std::string& bytes);

/// True when the file's name ends in `extension`, told without its dot in lower case.
[[nodiscard]] bool has_extension(const char* file, const char* extension);

}  // namespace scene
