#pragma once

#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GFile.h"
#include "foundation/TGCollection.h"
#include "foundation/TGVector.h"

#include <cstddef>
#include <functional>
#include <string_view>

class RedirectionFile;

namespace zmr {

/// The directories in which a program looks for its modules, in the order in which they are
/// searched, and the walk that finds and loads them. Directories are kept as full paths; what lies
/// at a path of more than kLongestPathBytes is left out, never cut. A missing directory is one
/// without files. One thread. See docs/modules.md.
class ZMR_GV_API ModuleSearch {
public:
    static constexpr std::size_t kLongestPathBytes = 260;

    ModuleSearch();
    /// What a program searches: `program_directory`; when `subdirectory` is not null that directory
    /// of it with all below; then the directories of `redirection`, which may be null, for `mask`.
    ModuleSearch(const GFile& program_directory, const char* subdirectory,
                 const RedirectionFile* redirection, const char* mask);

    /// Adds one directory; an empty name is ignored. One that is listed already comes again.
    void add_directory(const GFile& directory);
    /// Adds a directory and all below it, each in front of its own subdirectories, which come in
    /// the byte order of their names. Links to directories are followed; a directory that one walk
    /// meets by several ways is added by the first, so that a ring of links ends.
    void add_tree(const GFile& directory);
    /// Adds the directories of all items that match `mask`, item by item.
    void add_redirected(const RedirectionFile& redirection, const char* mask);

    [[nodiscard]] const TGVector<GFile>& directories() const { return directories_; }
    /// The text for the PATH variable: each directory followed by ";", then the `former` value, so
    /// that libraries which a module needs are found in the listed directories first.
    [[nodiscard]] GString path_value(std::string_view former) const;

    /// Calls `action` with the full path of each file that matches `mask`: directory by directory,
    /// within one in the byte order of names. An exception of `action` goes through.
    void for_each_file(const char* mask, const std::function<void(const char* file)>& action) const;
    /// Loads each of these files that is a loadable library to the end of `modules`; all others are
    /// left out without a message. Changes no environment.
    void load(const char* mask, TGCollection<GDynamicLinkLibrary>& modules) const;

private:
    TGVector<GFile> directories_;
};

}  // namespace zmr
