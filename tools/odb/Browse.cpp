#include "tools/odb/Browse.h"

#include "odb/ODB_Mediator.h"
#include "odb/ObjectDatabase.h"
#include "store/GResourceIterators.h"

#include <algorithm>

namespace odb {

namespace {

// The iterators walk from the last element to the first.
template <class Iterator>
std::vector<GString> all_of(Iterator iterator)
{
    std::vector<GString> names;
    for (; iterator.index >= 0; --iterator)
        names.push_back(iterator.element());
    std::reverse(names.begin(), names.end());
    return names;
}

}  // namespace

std::vector<GString> subdirectories(const ObjectDatabase& database, const GResourcePath& path)
{
    return all_of(GResourceSubDirectoryIterator(database, path));
}

bool directory_exists(const ObjectDatabase& database, const GResourcePath& path)
{
    return path.count == 0 || GResourceTypeIterator(database, path).index >= 0 ||
           GResourceSubDirectoryIterator(database, path).index >= 0;
}

std::vector<GString> object_names(const ObjectDatabase& database, const GResourcePath& path)
{
    return all_of(GResourceIterator(
        database, GResourceFullName(path, GString(), ObjectDatabase::MediatorResourceType)));
}

bool walk_directories(const ObjectDatabase& database, const GResourcePath& path, Depth depth,
                      const std::function<bool(const GResourcePath&)>& visit)
{
    // A stack of its own: files from anywhere may nest deeply.
    std::vector<GResourcePath> waiting{path};
    while (!waiting.empty()) {
        const GResourcePath current = waiting.back();
        waiting.pop_back();
        if (!visit(current))
            return false;
        if (depth == Depth::This)
            continue;
        const std::vector<GString> names = subdirectories(database, current);
        for (auto name = names.rbegin(); name != names.rend(); ++name) {
            GResourcePath below = current;
            below += *name;
            waiting.push_back(below);
        }
    }
    return true;
}

void unload_entry(ObjectDatabase& database, const EntryName& entry)
{
    database.unload(entry.of_type(ObjectDatabase::MediatorResourceType));
}

std::string class_of(const ODB_Mediator& mediator)
{
    const GString& name = mediator.get_object_class_name();
    return name.is_empty() ? "?" : std::string(name.view());
}

}  // namespace odb
