#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace zmr {

/// The directory that an entry of a library file lies in: an ordered list of level names, the root
/// being the empty list. A level may hold any bytes and may be empty.
///
/// Held in its stored form, in which byte order puts a directory directly before all that lies
/// below it: each level's bytes, a zero byte written as 00 FF, and 00 01 behind each level. Make
/// one once and use it for many calls. A value; copies cost one string.
class ZMR_GV_API LibraryPath {
public:
    static constexpr std::size_t kMaxLevelBytes = 1024;
    static constexpr std::size_t kMaxLevels = 64;

    LibraryPath() = default;

    /// Appends one level. False, with nothing changed, when the level or the path would be too
    /// long.
    [[nodiscard]] bool append(std::string_view level);
    /// The number of levels. Linear in the path's bytes.
    [[nodiscard]] std::size_t size() const;
    [[nodiscard]] bool is_root() const { return key_.empty(); }
    /// Level `index` from the root; empty when there is none.
    [[nodiscard]] std::string level(std::size_t index) const;
    /// True when `ancestor` is this path or one above it.
    [[nodiscard]] bool starts_with(const LibraryPath& ancestor) const
    {
        return std::string_view(key_).starts_with(ancestor.key_);
    }
    /// The levels joined by "/", for messages only: levels may hold a "/" of their own.
    [[nodiscard]] std::string readable() const;

    /// The stored form.
    [[nodiscard]] const std::string& key() const { return key_; }
    /// Takes a stored form that comes from a file. False, with nothing changed, when it is none.
    [[nodiscard]] bool assign_key(std::string_view key);

    friend bool operator==(const LibraryPath&, const LibraryPath&) = default;

private:
    std::string key_;
};

}  // namespace zmr
