#include "app/ModuleSearch.h"

#include "foundation/DirectoryAccess.h"
#include "foundation/FileFind.h"
#include "foundation/FileSystem.h"
#include "foundation/Redirection.h"

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>

namespace zmr {
namespace {

constexpr long kDirectoriesAtOnce = 4;

[[nodiscard]] bool fits(const GFile& path)
{
    return path.view().size() <= ModuleSearch::kLongestPathBytes;
}

/// Adds trees to a list, each directory once.
class TreeWalk {
public:
    explicit TreeWalk(TGVector<GFile>& directories) : directories_(directories) {}

    /// Depth first; the length of paths limits how deep.
    void add(const GFile& directory)
    {
        if (!fits(directory) || !is_new(directory))
            return;
        directories_.insert(directory);
        GFile below = directory;
        below.add_name("*.*");
        for (FileFind found(below, FileFind::kDirectories, true); !found.name.is_empty(); ++found) {
            if (found.name == FileSystem::GetParentDirectoryName())
                continue;
            below.replace_name(found.name);
            add(below);
        }
    }

private:
    /// False for a directory that was met before, by whatever path. One that the system doesn't
    /// tell apart counts as new: it is missing, or can't be read.
    [[nodiscard]] bool is_new(const GFile& directory)
    {
        FileIdentity identity;
        if (!path_identity(std::string(directory.view()), identity))
            return true;
        return met_.emplace(identity.volume, identity.file).second;
    }

    TGVector<GFile>& directories_;
    std::set<std::pair<std::uint64_t, std::uint64_t>> met_;
};

[[nodiscard]] GFile full_path(const GFile& directory)
{
    GFile full = directory;
    if (full.isRelativePath())
        full.expand();
    return full;
}

}  // namespace

ModuleSearch::ModuleSearch() : directories_(0, kDirectoriesAtOnce) {}

ModuleSearch::ModuleSearch(const GFile& program_directory, const char* subdirectory,
                           const RedirectionFile* redirection, const char* mask)
    : ModuleSearch()
{
    add_directory(program_directory);
    if (subdirectory != nullptr) {
        GFile below = program_directory;
        below.add_name(subdirectory);
        add_tree(below);
    }
    if (redirection != nullptr)
        add_redirected(*redirection, mask);
}

void ModuleSearch::add_directory(const GFile& directory)
{
    // An empty name would stand for whatever directory is the current one.
    const GFile full = full_path(directory);
    if (!full.is_empty() && fits(full))
        directories_.insert(full);
}

void ModuleSearch::add_tree(const GFile& directory)
{
    const GFile full = full_path(directory);
    if (!full.is_empty())
        TreeWalk(directories_).add(full);
}

void ModuleSearch::add_redirected(const RedirectionFile& redirection, const char* mask)
{
    for (long index = 0; index < redirection.count; ++index) {
        const RedirectionItem* item = redirection.at(index);
        if (item == nullptr || !item->match(mask))
            continue;
        for (long place = 0; place < item->count; ++place)
            add_directory(item->at(place));
    }
}

GString ModuleSearch::path_value(std::string_view former) const
{
    std::string value;
    for (const GFile& directory : directories_) {
        value += directory.view();
        value += ';';
    }
    value += former;
    return GString(value);
}

void ModuleSearch::for_each_file(const char* mask,
                                 const std::function<void(const char* file)>& action) const
{
    for (const GFile& directory : directories_) {
        GFile path = directory;
        path.add_name(mask);
        for (FileFind found(path, FileFind::kFiles, false); !found.name.is_empty(); ++found) {
            if (found.name.view().size() <= kLongestPathBytes)
                action(found.name);
        }
    }
}

void ModuleSearch::load(const char* mask, TGCollection<GDynamicLinkLibrary>& modules) const
{
    for_each_file(mask, [&modules](const char* file) {
        auto library = std::make_unique<GDynamicLinkLibrary>(file, 0);
        if (library->module == nullptr)
            return;
        modules.v_insert(library.get());
        static_cast<void>(library.release());
    });
}

}  // namespace zmr
