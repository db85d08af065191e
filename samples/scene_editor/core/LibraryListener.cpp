#include "scene_editor/core/LibraryListener.h"

#include "odb/ODB_Mediator.h"
#include "odb/ObjectDatabase.h"
#include "scene_editor/core/LibraryPaths.h"

namespace editor {

LibraryListener::LibraryListener(const ResourceFileServer& server, EntryModified entry_modified,
                                 DirectoryRenamed directory_renamed)
    : server_(server),
      entry_modified_(std::move(entry_modified)),
      directory_renamed_(std::move(directory_renamed))
{
    ResourceFile::RegisterCallback(ObjectDatabase::Reason_MediatorModified, &Hear, this);
    ResourceFile::RegisterCallback(ResourceFile::Reason_DirectoryRenamed, &Hear, this);
}

LibraryListener::~LibraryListener()
{
    ResourceFile::UnRegisterCallback(GAnyReason, &Hear, this);
}

void LibraryListener::Hear(GCallBackReason reason, void* info, void* user)
{
    const auto& listener = *static_cast<const LibraryListener*>(user);
    const auto* const base = static_cast<const ResourceFile::Reason_BaseInfo*>(info);
    if (base->server != &listener.server_)
        return;
    if (reason == ResourceFile::Reason_DirectoryRenamed) {
        const auto* const renamed = static_cast<const ResourceFile::DirectoryRenamedInfo*>(base);
        listener.directory_renamed_(directory_path(*renamed->old_path),
                                    directory_path(*renamed->new_path));
        return;
    }
    const auto* const modified = static_cast<const ObjectDatabase::MediatorModifiedInfo*>(base);
    const GResourceFullName& name = modified->mediator->get_DB_resname();
    listener.entry_modified_(directory_path(name.path()), std::string(name.name.view()));
}

}  // namespace editor
