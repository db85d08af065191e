#pragma once

#include "scene_editor/core/DeletedEntries.h"

#include <string>
#include <vector>

class ObjectDatabase;

namespace editor {

/// What came of a work on many entries.
struct TransferResult {
    std::size_t done = 0;
    std::vector<std::string> renamed;  ///< The names of those whose own were in use.
    std::vector<std::string> refused;  ///< A sentence for each that could not be taken.
};

/// Copies entries with all that belongs to them into the directory of that name of another library,
/// or another directory of the same one. Nothing there is replaced: a name that is in use gets a
/// number. References within the library go on standing for the entries that they stand for.
/// Listeners hear of each new entry. `target` is open for changes. Each entry is one commit.
[[nodiscard]] TransferResult copy_entries(ObjectDatabase& source, const DirectoryPath& from,
                                          const std::vector<ListedEntry>& entries,
                                          ObjectDatabase& target, const DirectoryPath& to,
                                          const StepsDone& steps);

/// Adds files as objects, with icons, by the formats that are registered. Names in use get a
/// number. Each file is one commit; listeners hear of it.
[[nodiscard]] TransferResult add_files(ObjectDatabase& library, const DirectoryPath& to,
                                       const std::vector<std::string>& files,
                                       const StepsDone& steps);

/// What a person is told of the result, as sentences; empty when nothing was unexpected.
[[nodiscard]] std::string transfer_text(const TransferResult& result, const char* verb);

}  // namespace editor
