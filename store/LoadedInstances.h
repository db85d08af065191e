#pragma once

#include "store/LibraryPath.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class GStreamable;

namespace zmr {

/// The instances that a server keeps in memory, by directory, type and name. It does not own them.
/// Look-ups cost one step in the directories and one hash probe; walks cost what is in memory.
/// Instances are held under the server's lock.
class LoadedInstances {
public:
    [[nodiscard]] GStreamable* find(const LibraryPath& path, std::string_view name,
                                    std::string_view type) const;
    /// Puts the instance there and returns the one that was there before, or null.
    GStreamable* put(const LibraryPath& path, std::string_view name, std::string_view type,
                     GStreamable* instance);
    /// Takes the instance out and returns it; null when there is none.
    GStreamable* take(const LibraryPath& path, std::string_view name, std::string_view type);
    /// Moves all that lies in or below `from`, where nothing lies at `to`.
    void rename_directory(const LibraryPath& from, const LibraryPath& to);
    /// The instances of one type in `path`, and with `recursive` below it, directory by directory,
    /// each in no order.
    [[nodiscard]] std::vector<GStreamable*> list(const LibraryPath& path, std::string_view type,
                                                 bool recursive) const;
    /// Takes all out and hands each to `taker`, which may put others. Allocates nothing.
    void take_all(void (*taker)(GStreamable* instance));
    /// Calls `visit` with every instance; it must not put or take any. Allocates nothing.
    void for_each(void (*visit)(GStreamable* instance, void* user), void* user) const;

private:
    struct TextHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const
        {
            return std::hash<std::string_view>()(text);
        }
    };
    using Names = std::unordered_map<std::string, GStreamable*, TextHash, std::equal_to<>>;
    using Types = std::map<std::string, Names, std::less<>>;
    using Directories = std::map<std::string, Types, std::less<>>;  // by LibraryPath::key

    Directories directories_;
};

}  // namespace zmr
