#include "scene_editor/core/DirectoryNames.h"

#include "odb/ObjectDatabase.h"
#include "scene_editor/core/DeletedEntries.h"
#include "scene_editor/core/LibraryPaths.h"
#include "store/GResourceIterators.h"

#include <algorithm>

namespace editor {

// The library's lists are in the order of their bytes, walked from the last one.
DirectoryNames::DirectoryNames(const ObjectDatabase& database, const DirectoryPath& path)
{
    for (GResourceSubDirectoryIterator it(database, resource_path(path)); it.index >= 0; --it) {
        if (!path.empty() || it.element().view() != kDeletedDirectory)
            add(it.element().view());
    }
    directories_ = ends_.size();
    for (GResourceIterator it(database, mediator_name(path, {})); it.index >= 0; --it)
        add(it.element().view());
}

void DirectoryNames::add(std::string_view name)
{
    text_.append(name);
    ends_.push_back(text_.size());
}

std::string_view DirectoryNames::name(std::size_t number) const
{
    const std::size_t begin = number == 0 ? 0 : ends_[number - 1];
    return std::string_view(text_).substr(begin, ends_[number] - begin);
}

DirectoryNames::Difference DirectoryNames::since(const DirectoryNames& before) const
{
    Difference difference;
    std::size_t old = 0;
    std::size_t now = 0;
    for (; old < before.directories_ && now < directories_; ++old, ++now)
        difference.has_other_directories |= before.name(old) != name(now);
    difference.has_other_directories |= before.directories_ != directories_;
    old = before.directories_;
    now = directories_;
    while (old < before.size() || now < size()) {
        const bool is_same = old < before.size() && now < size() && before.name(old) == name(now);
        if (is_same) {
            ++old;
            ++now;
        } else if (now == size() || (old < before.size() && before.name(old) > name(now))) {
            difference.gone.emplace_back(before.name(old++));
        } else {
            difference.come.emplace_back(name(now++));
        }
    }
    return difference;
}

}  // namespace editor
