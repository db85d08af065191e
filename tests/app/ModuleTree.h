#pragma once

#include "app/ModuleSearch.h"
#include "foundation/GString.h"
#include "foundation/Redirection.h"
#include "tests/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

/// A temporary tree of directories in which modules are looked for.
class ModuleTree {
public:
    using Names = std::vector<std::string>;

    /// Makes a directory with all above it.
    void make_directory(const std::string& name) const
    {
        std::filesystem::create_directories(path_of(name));
    }
    /// Makes a text file with the directories above it.
    void make_file(const std::string& name) const
    {
        std::filesystem::create_directories(path_of(name).parent_path());
        std::ofstream(path_of(name)) << name;
    }
    [[nodiscard]] std::filesystem::path path_of(const std::string& name) const
    {
        return folder_.path() / std::filesystem::path(std::u8string(name.begin(), name.end()));
    }
    /// The full name of an entry; of the tree itself for the empty name.
    [[nodiscard]] GFile file(const std::string& name) const
    {
        return name.empty() ? GFile(folder_.file("").substr(0, folder_.file("").size() - 1).c_str())
                            : GFile(folder_.file(name).c_str());
    }
    /// A full name as it stands in the tree, with slashes; "." is the tree, and a name outside of
    /// it stays as it is.
    [[nodiscard]] std::string inside(const GString& full) const
    {
        std::string name(full.view());
        std::replace(name.begin(), name.end(), '\\', '/');
        std::string root(file("").view());
        std::replace(root.begin(), root.end(), '\\', '/');
        if (!name.starts_with(root))
            return name;
        return name.size() == root.size() ? "." : name.substr(root.size() + 1);
    }

    [[nodiscard]] Names directories(const zmr::ModuleSearch& search) const
    {
        Names names;
        for (const GFile& directory : search.directories())
            names.push_back(inside(directory));
        return names;
    }
    [[nodiscard]] Names files(const zmr::ModuleSearch& search, const char* mask) const
    {
        Names names;
        search.for_each_file(mask,
                             [&](const char* found) { names.push_back(inside(GString(found))); });
        return names;
    }

    /// Adds an item to `redirection`: the directories of the tree for files of those masks.
    void redirect(RedirectionFile& redirection, const char* masks, const Names& names) const
    {
        auto item = std::make_unique<RedirectionItem>(masks);
        for (const std::string& name : names)
            item->v_insert(gnewstr(file(name)));
        redirection.v_insert(item.release());
    }

private:
    TemporaryFolder folder_;
};
