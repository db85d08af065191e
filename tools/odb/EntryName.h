#pragma once

#include "store/GResourceFullName.h"
#include "store/GResourcePath.h"

#include <string>
#include <string_view>

namespace odb {

/// One entry of a library: its directory and its name.
struct EntryName {
    GResourcePath path;
    GString name;  ///< Empty for the root.

    /// The directory of that name; the root when the name is empty.
    [[nodiscard]] GResourcePath as_directory() const;
    /// The resource of one type that belongs to the entry.
    [[nodiscard]] GResourceFullName of_type(const GString& type) const
    {
        return GResourceFullName(path, name, type);
    }
    /// As a person writes it: "icons/16x16/badge.png".
    [[nodiscard]] std::string text() const;
};

/// Parses "icons/16x16/badge.png". Slashes at either end and doubled ones don't count.
[[nodiscard]] EntryName parse_entry(std::string_view text);
/// The same as a directory; the root for "" and "/".
[[nodiscard]] GResourcePath parse_directory(std::string_view text);
/// The levels joined by "/", without one at the end; empty for the root.
[[nodiscard]] std::string directory_text(const GResourcePath& path);

}  // namespace odb
