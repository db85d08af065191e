#pragma once

#include "tools/odb/Browse.h"

#include <functional>
#include <string>
#include <vector>

namespace odb {

/// One file that is to become an object.
struct SourceFile {
    std::string file;    ///< How to open it.
    std::string name;    ///< Its last name.
    GResourcePath into;  ///< The directory of the library that it goes to.
};

/// What a walk reports to.
struct SourceVisitor {
    /// False ends the walk.
    std::function<bool(const SourceFile&)> file;
    /// A source that can't be walked, and why.
    std::function<void(const std::string& source, const std::string& reason)> skipped;
};

/// Visits the files among `sources`, and those in the directories among them; with Depth::All also
/// in the directories below, whose names then are directories of the library below `into`. Links
/// are followed; one to a directory that it lies in is skipped. Entries come in the system's order,
/// and no directory is held in memory. False when `visitor.file` ended it.
bool walk_sources(const std::vector<std::string>& sources, const GResourcePath& into, Depth depth,
                  const SourceVisitor& visitor);

}  // namespace odb
