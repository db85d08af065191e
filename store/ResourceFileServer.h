#pragma once

#include "foundation/GFile.h"
#include "foundation/GLock.h"
#include "foundation/TGVector.h"
#include "foundation/iopstream.h"
#include "store/GObjectPlace.h"
#include "store/LibraryFile.h"
#include "store/LoadedInstances.h"
#include "store/ResourceFile.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace zmr {
class ServerStream;
}

/// The one open file behind all the clients that opened it, found by the file's identity, not by
/// its name. Lives from the first client's `open` to the last one's `close`.
class ZMR_GV_API ResourceFileServer {
public:
    ResourceFileServer(const ResourceFileServer&) = delete;
    ResourceFileServer& operator=(const ResourceFileServer&) = delete;

    /// Not 0 once a write, a sync or the lock was lost: the last commit is intact, and writing does
    /// nothing until the last client closes.
    [[nodiscard]] int error() const;
    /// What happened, for a message; empty without an error.
    [[nodiscard]] GString error_text() const;
    /// The stream of the whole file, for reading only and only under `lock`. Writing to it throws.
    [[nodiscard]] iopstream& get_stream();

    /// Finds a resource's content wherever it lies, also behind the reach of get_stream, and holds
    /// its place until release_content: it is read as it is now whatever is put, removed or packed
    /// meanwhile. Any thread.
    [[nodiscard]] bool find_content(const GResourceFullName& name, zmr::LibraryContent& content);
    /// Reads stored bytes of a found content from `offset`; see LibraryFile::read_at. Any thread.
    [[nodiscard]] std::size_t read_content(const zmr::LibraryContent& content, std::uint64_t offset,
                                           void* data, std::size_t size) const;
    void release_content(const zmr::LibraryContent& content);

    /// True while `server` is one; null and those that ended are not.
    [[nodiscard]] static bool IsOpen(const ResourceFileServer* server);

    mutable GCriticalSection
        lock;  ///< Held while an object is loaded and while the stream is used.
    TGVector<ResourceFile*> clients;  ///< In the order of their opening; read only, and only where
                                      ///< no other thread opens or closes the file.
    /// Calls `visit` with each client from the last to the first, of which none ends meanwhile,
    /// also where other threads play movies. `visit` opens and closes nothing.
    void visit_clients(const std::function<void(ResourceFile&)>& visit) const;

private:
    friend class ResourceFile;
    friend class GResourceIterator;
    friend class GResourceTypeIterator;
    friend class GResourceSubDirectoryIterator;

    ResourceFileServer();
    ~ResourceFileServer();

    /// Adds `client` to the server of that file, which is opened when none is there. Null, with the
    /// reason, on failure.
    static ResourceFileServer* Attach(ResourceFile& client, const GFile& file, bool to_write,
                                      ResourceFile::OpenFailure& failure, std::string& reason);
    static ResourceFileServer* Join(ResourceFile& client, ResourceFileServer* server);
    /// Takes the client out. The last one closes the file and ends the server.
    static void Detach(ResourceFile& client, ResourceFileServer* server);

    /// The library's form of a path, kept for the next call; null for one beyond the limits.
    const zmr::LibraryPath* library_path(const GResourcePath& path) const;
    void apply_kind();
    /// Removes what waits for a commit, unless one is still held back.
    void remove_doomed();
    void note_unreadable(const GResourceFullName& name, const char* reason) const;
    void note_damage_of_engine() const;
    void replace_instance(const zmr::LibraryPath& path, const GResourceFullName& name,
                          GStreamable* instance);
    void destroy_instance(const zmr::LibraryPath& path, const GResourceFullName& name);
    ResourceFileBlock pin_block(const zmr::LibraryPath& path, const GResourceFullName& name);

    zmr::LibraryFile library_;
    std::atomic<std::uint64_t> changes_ = 0;  ///< Changed under the lock, read without.
    zmr::LoadedInstances loaded_;
    GFile filename_;
    GString kind_;  ///< Set while the file is not made yet, written with its first change.
    bool kind_waits_ = false;
    mutable GResourcePath last_path_;
    mutable zmr::LibraryPath last_library_path_;
    mutable ResourceFile::Damage damage_;
    std::map<std::uint64_t, zmr::LibraryContent> blocks_;  ///< Handed out, by position; pinned.
    std::unique_ptr<zmr::ServerStream> stream_;
    std::vector<GObjectPlace> doomed_;  ///< Removed once the changes are durable.
};
