#pragma once

#include "store/LibraryFile.h"

#include <cstdint>
#include <string>

namespace zmr {

/// A library that is filled by numbered commits, so that who looks at it can tell from the last
/// number what all of it must hold. For writers and readers in different processes.
struct NumberedCommits {
    static constexpr LibraryTuning kSmall{8000, 100'000, 100'000};

    /// The number of the last commit; 0 when there is none.
    [[nodiscard]] static std::uint64_t Last(const LibraryFile& file);
    /// Commits under that number. False when it failed.
    [[nodiscard]] static bool Put(LibraryFile& file, std::uint64_t number);
    /// What is wrong with it, else empty: contents that the last number promises and that are not
    /// there, and all that verify finds.
    [[nodiscard]] static std::string Check(const LibraryFile& file);
};

}  // namespace zmr
