#pragma once

#include "scene_editor/core/LibraryResults.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

class GResourcePath;
class ObjectDatabase;

namespace editor {

// Entries that a user deletes move, with all that belongs to them, below the directory `.deleted`
// of their library, each deletion into a directory of its own with the way to the entry below it:
// .deleted/00000012/models/ring.obj. So a deletion can be taken back, also after the library was
// closed, until the directory is emptied, which packing does. Other programs list what lies there.

inline constexpr const char* kDeletedDirectory = ".deleted";

/// Told how far a work of many steps has come; false stops it between two of them.
using StepsDone = std::function<bool(std::size_t done, std::size_t total)>;

/// How many deletions can be taken back.
[[nodiscard]] std::size_t deletions_kept(const ObjectDatabase& database);
/// Deletes the entries. One whose mediator is damaged can't be kept and is removed. Those that are
/// still there then, stopped ones among them, are left out of the result.
[[nodiscard]] std::vector<ListedEntry> delete_entries(ObjectDatabase& database,
                                                      const DirectoryPath& path,
                                                      const std::vector<ListedEntry>& entries,
                                                      const StepsDone& steps);
struct RestoredEntries {
    std::size_t count = 0;
    DirectoryPath path;                ///< Where the first one is.
    std::string name;                  ///< Its name.
    std::vector<std::string> renamed;  ///< The new names of those whose old ones are in use.
};
/// Takes the last deletion back.
[[nodiscard]] RestoredEntries restore_last_deletion(ObjectDatabase& database,
                                                    const StepsDone& steps);
/// Removes for good what was deleted. False when it was stopped.
bool empty_deleted(ObjectDatabase& database, const StepsDone& steps);

/// `name` where the directory has no entry of it, else the first numbered one that is free.
[[nodiscard]] std::string free_name(const ObjectDatabase& database, const GResourcePath& path,
                                    const std::string& name);

}  // namespace editor
