#pragma once

#include "scene_editor/core/EntryRows.h"
#include "scene_editor/core/LibraryResults.h"

#include <string>
#include <vector>

namespace editor {

/// How a list comes up to date with the names in its directory.
struct NamesUpdate {
    bool lists_again = false;             ///< Nothing else is to be done then.
    std::vector<EntryRows::Id> gone;      ///< Rows to take out.
    std::vector<std::string> to_look_at;  ///< Entries that are to be put in.

    [[nodiscard]] bool is_empty() const
    {
        return !lists_again && gone.empty() && to_look_at.empty();
    }
};

/// Most of it is in the list already: what the program has asked for itself. More than
/// kMostPutOneByOne new entries are listed again, since each one costs the length of the list.
[[nodiscard]] NamesUpdate update_for(const EntryRows& rows, const NamesChanged& changed);

inline constexpr std::size_t kMostPutOneByOne = 20;

}  // namespace editor
