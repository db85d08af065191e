#include "store/LoadedInstances.h"

#include <utility>

namespace zmr {

GStreamable* LoadedInstances::find(const LibraryPath& path, std::string_view name,
                                   std::string_view type) const
{
    const auto directory = directories_.find(path.key());
    if (directory == directories_.end())
        return nullptr;
    const auto names = directory->second.find(type);
    if (names == directory->second.end())
        return nullptr;
    const auto found = names->second.find(name);
    return found == names->second.end() ? nullptr : found->second;
}

GStreamable* LoadedInstances::put(const LibraryPath& path, std::string_view name,
                                  std::string_view type, GStreamable* instance)
{
    Types& types = directories_[path.key()];
    auto names = types.find(type);
    if (names == types.end())
        names = types.emplace(type, Names()).first;
    const auto [place, is_new] = names->second.try_emplace(std::string(name), instance);
    return is_new ? nullptr : std::exchange(place->second, instance);
}

GStreamable* LoadedInstances::take(const LibraryPath& path, std::string_view name,
                                   std::string_view type)
{
    const auto directory = directories_.find(path.key());
    if (directory == directories_.end())
        return nullptr;
    const auto names = directory->second.find(type);
    if (names == directory->second.end())
        return nullptr;
    const auto found = names->second.find(name);
    if (found == names->second.end())
        return nullptr;
    GStreamable* const instance = found->second;
    names->second.erase(found);
    if (names->second.empty())
        directory->second.erase(names);
    if (directory->second.empty())
        directories_.erase(directory);
    return instance;
}

void LoadedInstances::rename_directory(const LibraryPath& from, const LibraryPath& to)
{
    auto place = directories_.lower_bound(from.key());
    while (place != directories_.end() && place->first.starts_with(from.key())) {
        std::string moved = to.key() + place->first.substr(from.key().size());
        auto node = directories_.extract(place++);
        node.key() = std::move(moved);
        directories_.insert(std::move(node));
    }
}

std::vector<GStreamable*> LoadedInstances::list(const LibraryPath& path, std::string_view type,
                                                bool recursive) const
{
    std::vector<GStreamable*> instances;
    for (auto place = directories_.lower_bound(path.key());
         place != directories_.end() && place->first.starts_with(path.key()); ++place) {
        if (!recursive && place->first != path.key())
            break;
        const auto names = place->second.find(type);
        if (names == place->second.end())
            continue;
        for (const auto& [name, instance] : names->second)
            instances.push_back(instance);
    }
    return instances;
}

void LoadedInstances::take_all(void (*taker)(GStreamable* instance))
{
    const Directories taken = std::exchange(directories_, {});
    for (const auto& [path, types] : taken) {
        for (const auto& [type, names] : types) {
            for (const auto& [name, instance] : names)
                taker(instance);
        }
    }
}

void LoadedInstances::for_each(void (*visit)(GStreamable* instance, void* user), void* user) const
{
    for (const auto& [path, types] : directories_) {
        for (const auto& [type, names] : types) {
            for (const auto& [name, instance] : names)
                visit(instance, user);
        }
    }
}

}  // namespace zmr
