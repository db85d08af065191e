#include "scene_editor/core/DeletedEntries.h"

#include "odb/ODB_Mediator.h"
#include "odb/ObjectDatabase.h"
#include "scene_editor/core/LibraryPaths.h"
#include "store/GResourceIterators.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace editor {

namespace {

constexpr int kLevelsAbove = 2;  // `.deleted` and the deletion's number

GResourcePath deleted_path()
{
    GResourcePath path;
    path += GString(kDeletedDirectory);
    return path;
}

// The directories of the deletions, the last one behind.
std::vector<std::string> deletions(const ObjectDatabase& database)
{
    std::vector<std::string> numbers;
    for (GResourceSubDirectoryIterator it(database, deleted_path()); it.index >= 0; --it)
        numbers.emplace_back(it.element().view());
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::string next_deletion(const ObjectDatabase& database)
{
    const std::vector<std::string> numbers = deletions(database);
    const unsigned long last =
        numbers.empty() ? 0 : std::strtoul(numbers.back().c_str(), nullptr, 10);
    char number[24];
    std::snprintf(number, sizeof number, "%08lu", last + 1);
    return number;
}

// All entries below a directory.
void collect(const ObjectDatabase& database, const GResourcePath& path,
             std::vector<GResourceFullName>& found)
{
    const GResourceFullName pattern(path, GString(), ObjectDatabase::MediatorResourceType);
    for (GResourceIterator it(database, pattern); it.index >= 0; --it) {
        GResourceFullName name = pattern;
        name.name = it.element();
        found.push_back(name);
    }
    for (GResourceSubDirectoryIterator it(database, path); it.index >= 0; --it) {
        GResourcePath below = path;
        below += it.element();
        collect(database, below, found);
    }
}

GResourcePath original_path(const GResourcePath& deleted)
{
    GResourcePath path;
    for (int level = kLevelsAbove; level < deleted.count; ++level)
        path += deleted[level];
    return path;
}

}  // namespace

std::size_t deletions_kept(const ObjectDatabase& database)
{
    return deletions(database).size();
}

std::vector<ListedEntry> delete_entries(ObjectDatabase& database, const DirectoryPath& path,
                                        const std::vector<ListedEntry>& entries,
                                        const StepsDone& steps)
{
    std::vector<ListedEntry> deleted;
    const ResourceFile::CommitScope whole(database);
    const GResourcePath here = resource_path(path);
    GResourcePath kept = deleted_path();
    kept += text_of(next_deletion(database));
    for (const std::string& level : path)
        kept += text_of(level);
    for (const ListedEntry& entry : entries) {
        if (!steps(deleted.size(), entries.size()))
            break;
        const GString name = text_of(entry.name);
        if (database.get_mediator(here, name) != nullptr)
            database.rename_object(here, name, kept, name);
        else
            database.remove_object(here, name);
        if (!database.object_exists(here, name))
            deleted.push_back(entry);
    }
    return deleted;
}

RestoredEntries restore_last_deletion(ObjectDatabase& database, const StepsDone& steps)
{
    RestoredEntries restored;
    const std::vector<std::string> numbers = deletions(database);
    if (numbers.empty())
        return restored;
    GResourcePath path = deleted_path();
    path += text_of(numbers.back());
    std::vector<GResourceFullName> names;
    collect(database, path, names);
    const ResourceFile::CommitScope whole(database);
    for (auto deleted = names.rbegin(); deleted != names.rend(); ++deleted) {
        if (!steps(restored.count, names.size()))
            break;
        const GResourcePath target = original_path(deleted->path());
        const std::string name(deleted->name.view());
        const std::string free = free_name(database, target, name);
        database.rename_object(deleted->path(), deleted->name, target, text_of(free));
        if (!database.object_exists(target, text_of(free)))
            continue;
        if (restored.count++ == 0) {
            restored.path = directory_path(target);
            restored.name = free;
        }
        if (free != name)
            restored.renamed.push_back(free);
    }
    return restored;
}

bool empty_deleted(ObjectDatabase& database, const StepsDone& steps)
{
    std::vector<GResourceFullName> names;
    collect(database, deleted_path(), names);
    const ResourceFile::CommitScope whole(database);
    std::size_t done = 0;
    for (const GResourceFullName& name : names) {
        if (!steps(done++, names.size()))
            return false;
        database.remove_object(name);
    }
    return true;
}

std::string free_name(const ObjectDatabase& database, const GResourcePath& path,
                      const std::string& name)
{
    std::string free = name;
    for (unsigned number = 2; database.object_exists(path, text_of(free)); ++number)
        free = numbered_name(name, number);
    return free;
}

}  // namespace editor
