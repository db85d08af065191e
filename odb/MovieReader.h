#pragma once

#include "store/ResourceFile.h"
#include "store/ResourceFileServer.h"

#include <cstdint>
#include <memory>

namespace zmr {

/// Reads a movie where it lies in a library: no file is written and the movie is never read whole.
/// A client of the library's file of its own. What it reads is the movie as it was when it was
/// opened, whatever happens to the library meanwhile. One thread at a time, any number of readers.
class MovieReader {
public:
    /// Opens the movie of that name (see MovieName.h) for reading; null when there is no such
    /// library or no such resource, or its content takes 4 GiB or more.
    [[nodiscard]] static std::unique_ptr<MovieReader> Open(const char* movie_name);
    ~MovieReader();
    MovieReader(const MovieReader&) = delete;
    MovieReader& operator=(const MovieReader&) = delete;

    [[nodiscard]] std::uint32_t length() const { return length_; }
    /// Reads up to `count` bytes at `position`: gives their number, which is less than `count` only
    /// at the movie's end and 0 behind it, or -1 when they are damaged or can't be read.
    [[nodiscard]] std::int64_t read(std::uint32_t position, void* buffer, std::int64_t count);
    /// Where a seek leads, from 0 to length(), or -1. `origin` 1 counts from `position`, 2 back
    /// from the end by a positive `offset`, any other value from the start.
    [[nodiscard]] std::int64_t seek(std::uint32_t position, std::int64_t offset, int origin) const;

private:
    MovieReader(const GFile& file, const GResourceFullName& name);

    [[nodiscard]] std::int64_t read_in_place(std::uint32_t position, void* buffer, long count);
    [[nodiscard]] std::int64_t read_sequentially(std::uint32_t position, void* buffer, long count);

    ResourceFile file_;
    LibraryContent content_;
    bool found_ = false;       ///< `content_` is held.
    ResourceFileBlock block_;  ///< Of a compressed content, which the shared stream inflates.
    std::uint32_t length_ = 0;
};

}  // namespace zmr
