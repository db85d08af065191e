#pragma once

#include "platform/CTreeCtrl.h"
#include "scene_editor/IconImages.h"
#include "scene_editor/core/LibraryResults.h"

#include <map>
#include <vector>

/// The directories of a library as a tree. What lies below a directory is known once it was given
/// by `set_subdirectories`; until then a directory only tells whether there is something.
class DirectoryTree : public CTreeCtrl {
public:
    BOOL create(CWnd& parent, UINT id, int dpi);

    /// Only the root, under that name; or nothing for an empty name.
    void reset(const std::string& root_name);
    /// Puts directories below one of the tree. The first answer stays until `reset`.
    void set_subdirectories(const editor::DirectoriesListed& listed);
    [[nodiscard]] bool has_subdirectories_of(const editor::DirectoryPath& path) const;

    /// The directory of an item. Null for none.
    [[nodiscard]] const editor::DirectoryPath* path_of(HTREEITEM item) const;
    /// The item of a directory; null when it is not in the tree.
    [[nodiscard]] HTREEITEM item_of(const editor::DirectoryPath& path) const;

private:
    HTREEITEM insert(const editor::DirectoryPath& path, const std::string& label,
                     bool has_subdirectories, HTREEITEM parent);

    IconImages images_;
    std::map<editor::DirectoryPath, HTREEITEM> items_;
    std::map<HTREEITEM, editor::DirectoryPath> paths_;
    std::map<editor::DirectoryPath, bool> is_filled_;
};
