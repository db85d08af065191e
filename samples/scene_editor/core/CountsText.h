#pragma once

#include <cstddef>
#include <string>

namespace editor {

/// What a status line tells about the rows of a directory.
struct RowCounts {
    std::size_t directories = 0;
    std::size_t entries = 0;
    std::size_t shown = 0;  ///< Rows of both kinds that pass the filter.
    std::size_t selected = 0;
    bool is_filtered = false;
    bool is_complete = true;  ///< False while rows are still read.
};

/// 1234567 as "1,234,567".
[[nodiscard]] std::string with_thousands(std::size_t number);
/// "3 directories, 1,204 entries", "1 entry, 2 selected"; filtered, "12 of 1,207 shown".
[[nodiscard]] std::string counts_text(const RowCounts& counts);

}  // namespace editor
