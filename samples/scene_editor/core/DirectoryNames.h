#pragma once

#include "scene_editor/core/EntryRows.h"
#include "scene_editor/core/LibraryResults.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class ObjectDatabase;

namespace editor {

/// The names in one directory of a library as they are when it is made, in one block of memory; the
/// directory of what was deleted is left out.
class DirectoryNames {
public:
    DirectoryNames() = default;
    DirectoryNames(const ObjectDatabase& database, const DirectoryPath& path);

    /// Numbered in an order of its own, subdirectories first.
    [[nodiscard]] std::size_t size() const { return ends_.size(); }
    [[nodiscard]] std::string_view name(std::size_t number) const;
    [[nodiscard]] RowKind kind(std::size_t number) const
    {
        return number < directories_ ? RowKind::Directory : RowKind::Entry;
    }

    struct Difference {
        std::vector<std::string> gone;  ///< Names of entries.
        std::vector<std::string> come;
        bool has_other_directories = false;

        [[nodiscard]] bool is_empty() const
        {
            return gone.empty() && come.empty() && !has_other_directories;
        }
    };
    /// What has become of `before`. Linear.
    [[nodiscard]] Difference since(const DirectoryNames& before) const;

private:
    void add(std::string_view name);

    std::string text_;
    std::vector<std::size_t> ends_;
    std::size_t directories_ = 0;
};

}  // namespace editor
