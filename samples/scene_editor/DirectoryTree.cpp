#include "scene_editor/DirectoryTree.h"

#include "scene_editor/core/BuiltInPictures.h"
#include "scene_editor/core/PaneLayout.h"

BOOL DirectoryTree::create(CWnd& parent, UINT id, int dpi)
{
    zmr::load_common_controls();
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | TVS_HASBUTTONS |
                        TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_DISABLEDRAGDROP;
    if (!CreateEx(WS_EX_CLIENTEDGE, WC_TREEVIEW, "", style, RECT{}, &parent, id))
        return FALSE;
    const int icon_px = editor::scaled(16, dpi);
    if (!images_.create(icon_px, 0, 1))
        return FALSE;
    images_.set(0, editor::directory_picture(icon_px));
    SetImageList(&images_.list(), TVSIL_NORMAL);
    SetItemHeight(editor::scaled(20, dpi));
    return TRUE;
}

void DirectoryTree::reset(const std::string& root_name)
{
    DeleteAllItems();
    items_.clear();
    paths_.clear();
    is_filled_.clear();
    if (!root_name.empty())
        insert({}, root_name, true, TVI_ROOT);
}

void DirectoryTree::set_subdirectories(const editor::DirectoriesListed& listed)
{
    const HTREEITEM parent = item_of(listed.path);
    if (parent == nullptr || has_subdirectories_of(listed.path))
        return;  // asked for twice: by opening it and on the way to another one
    SetRedraw(FALSE);
    for (const editor::Subdirectory& directory : listed.directories) {
        editor::DirectoryPath path = listed.path;
        path.push_back(directory.name);
        insert(path, directory.name, directory.has_subdirectories, parent);
    }
    SetRedraw(TRUE);
    TVITEM item{};
    item.mask = TVIF_HANDLE | TVIF_CHILDREN;
    item.hItem = parent;
    item.cChildren = listed.directories.empty() ? 0 : 1;
    SetItem(&item);
    is_filled_[listed.path] = true;
}

bool DirectoryTree::has_subdirectories_of(const editor::DirectoryPath& path) const
{
    return is_filled_.contains(path);
}

const editor::DirectoryPath* DirectoryTree::path_of(HTREEITEM item) const
{
    const auto found = paths_.find(item);
    return found != paths_.end() ? &found->second : nullptr;
}

HTREEITEM DirectoryTree::item_of(const editor::DirectoryPath& path) const
{
    const auto found = items_.find(path);
    return found != items_.end() ? found->second : nullptr;
}

HTREEITEM DirectoryTree::insert(const editor::DirectoryPath& path, const std::string& label,
                                bool has_subdirectories, HTREEITEM parent)
{
    std::string text = label;  // the structure takes no constant text
    TVINSERTSTRUCT inserted{};
    inserted.hParent = parent;
    inserted.hInsertAfter = TVI_LAST;
    inserted.item.mask = TVIF_TEXT | TVIF_CHILDREN | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    inserted.item.pszText = text.data();
    inserted.item.cChildren = has_subdirectories ? 1 : 0;
    const HTREEITEM item = InsertItem(&inserted);
    if (item != nullptr) {
        items_[path] = item;
        paths_[item] = path;
    }
    return item;
}
