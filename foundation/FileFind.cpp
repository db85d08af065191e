#include "foundation/FileFind.h"

#include "foundation/DirectoryAccess.h"
#include "foundation/GFile.h"
#include "foundation/PathSyntax.h"

#include <algorithm>
#include <vector>

struct FileFind::Entries {
    std::vector<std::string> names;
    std::size_t next = 0;
    GString prefix;  ///< What stands before a bare name: empty, or the directory with a separator.
};

FileFind::FileFind(const char* mask, unsigned char kind, bool bare_names)
    : entries_(std::make_unique<Entries>())
{
    const GFile path(mask);
    const GString name_mask = path.get_name();
    const std::string_view prefix = path.view().substr(0, zmr::name_start(path.view()));
    if (!bare_names)
        entries_->prefix = GString(prefix);

    for (zmr::DirectoryEntry& entry :
         zmr::read_directory(prefix.empty() ? std::string(".") : std::string(prefix))) {
        const bool directory = entry.kind == zmr::PathKind::Directory;
        if ((kind & (directory ? kDirectories : kFiles)) != 0 &&
            zmr::matches_mask(entry.name, name_mask.view(), zmr::kPathCase))
            entries_->names.push_back(std::move(entry.name));
    }
    std::sort(entries_->names.begin(), entries_->names.end());
    ++*this;
}

FileFind::~FileFind() = default;

FileFind& FileFind::operator++()
{
    if (entries_->next == entries_->names.size()) {
        name.empty();
        return *this;
    }
    name = entries_->prefix + entries_->names[entries_->next].c_str();
    ++entries_->next;
    return *this;
}
