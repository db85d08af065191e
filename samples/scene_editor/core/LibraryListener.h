#pragma once

#include "scene_editor/core/LibraryResults.h"
#include "store/ResourceFile.h"

#include <functional>

namespace editor {

/// Hears of changes that any client of a library file makes, this program's own among them: that an
/// entry was modified, and that a directory was renamed. It is called in the thread that makes the
/// change, under the server's lock. It must end while no other thread changes that file.
class LibraryListener {
public:
    using EntryModified = std::function<void(const DirectoryPath& path, const std::string& name)>;
    using DirectoryRenamed =
        std::function<void(const DirectoryPath& from, const DirectoryPath& to)>;

    LibraryListener(const ResourceFileServer& server, EntryModified entry_modified,
                    DirectoryRenamed directory_renamed);
    ~LibraryListener();
    LibraryListener(const LibraryListener&) = delete;
    LibraryListener& operator=(const LibraryListener&) = delete;

private:
    static void Hear(GCallBackReason reason, void* info, void* user);

    const ResourceFileServer& server_;
    EntryModified entry_modified_;
    DirectoryRenamed directory_renamed_;
};

}  // namespace editor
