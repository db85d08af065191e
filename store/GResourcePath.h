#pragma once

#include "foundation/GString.h"
#include "store/LibraryPath.h"

#include <cstdint>
#include <memory>
#include <vector>

/// A directory in a resource file: the names of its levels, the root being the empty list. A value;
/// copies share the levels until one is changed, so that many names in one directory cost little.
class ZMR_GV_API GResourcePath {
public:
    GResourcePath() = default;
    GResourcePath(const GResourcePath&) = default;
    GResourcePath& operator=(const GResourcePath&) = default;
    ~GResourcePath() = default;

    /// Appends one level, which must not be empty (an empty one is ignored).
    GResourcePath& operator+=(const GString& level);
    /// Level `index` from the root; the empty text outside 0 to `count` - 1.
    [[nodiscard]] const GString& operator[](int index) const;
    [[nodiscard]] bool operator==(const GResourcePath& other) const;

    /// The levels with a "/" behind each; empty for the root.
    [[nodiscard]] GString get_readable_form() const;
    /// When this path starts with `old_path`, puts `new_path` in place of that start and returns
    /// true; otherwise nothing changes.
    bool rename_path_from_root(const GResourcePath& old_path, const GResourcePath& new_path);
    /// Takes the last level off; nothing happens at the root.
    void remove_last();
    void empty();

    /// The form in which the library file takes it. False for a path beyond its limits, where
    /// nothing can lie.
    [[nodiscard]] bool to_library(zmr::LibraryPath& path) const;
    /// True when the copies share their levels, or have none: equal at the cost of a pointer.
    [[nodiscard]] bool shares_levels(const GResourcePath& other) const
    {
        return count == other.count && levels_ == other.levels_;
    }
    [[nodiscard]] static GResourcePath FromLibrary(const zmr::LibraryPath& path);

    std::int32_t count = 0;  ///< Number of levels; read only.

private:
    using Levels = std::vector<GString>;
    Levels& own_levels();

    std::shared_ptr<Levels> levels_;  ///< Null at the root; never changed while shared.
};
