#include "store/ResourceFileServer.h"

#include "store/ProcessIdentity.h"
#include "store/ServerStream.h"
#include "store/StoreFiles.h"

#include <algorithm>
#include <limits>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

namespace {

/// The servers of this process. Recursive, because a visit may end a client, and an object that is
/// removed may lie in a file that is opened for it.
struct ServerTable {
    std::recursive_mutex mutex;
    std::vector<ResourceFileServer*> servers;
};

ServerTable& table()
{
    static ServerTable& all = *new ServerTable;  // files may be closed after static destruction
    return all;
}

/// The identity of the file of that name; false when there is none.
bool identity_of(const GFile& file, zmr::FileIdentity& identity)
{
    zmr::FileError error;
    const auto device =
        zmr::store_files().open(file.text, zmr::FileAccess::Read, zmr::FileCreate::OpenExisting,
                                zmr::FileShare::ReadWrite, error);
    return device != nullptr && !device->identity(identity);
}

ResourceFile::OpenFailure failure_of(const zmr::LibraryOpenResult& result)
{
    using Failure = ResourceFile::OpenFailure;
    switch (result.status) {
        case zmr::LibraryOpenStatus::Ok:
            return Failure::None;
        case zmr::LibraryOpenStatus::Missing:
            return Failure::Missing;
        case zmr::LibraryOpenStatus::NotALibrary:
        case zmr::LibraryOpenStatus::NewerFormat:
            return Failure::NoLibrary;
        case zmr::LibraryOpenStatus::Damaged:
            return Failure::Damaged;
        case zmr::LibraryOpenStatus::Locked:
            return Failure::InUse;
        case zmr::LibraryOpenStatus::Failed:
            break;
    }
    if (result.error.kind == zmr::FileErrorKind::NotFound)
        return Failure::Missing;
    return result.error.kind == zmr::FileErrorKind::InUse ? Failure::InUse : Failure::Device;
}

/// Removes objects that no entry names any more; gone already is as good. One that stays for want
/// of memory costs its room only, while an exception would stop the end of a scope or of a client.
void remove_objects(const std::vector<GObjectPlace>& places)
{
    for (const GObjectPlace& place : places) {
        try {
            static_cast<void>(place.remove());
        } catch (const std::bad_alloc&) {
        }
    }
}

}  // namespace

ResourceFileServer::ResourceFileServer() : clients(0, 4), library_(zmr::store_files())
{
    stream_ = std::make_unique<zmr::ServerStream>(library_, [this](std::uint64_t position) {
        const auto block = blocks_.find(position);
        return block == blocks_.end() ? nullptr : &block->second;
    });
}

ResourceFileServer::~ResourceFileServer() = default;

ResourceFileServer* ResourceFileServer::Join(ResourceFile& client, ResourceFileServer* server)
{
    const std::lock_guard guard(table().mutex);
    server->clients[server->clients.count] = &client;
    return server;
}

ResourceFileServer* ResourceFileServer::Attach(ResourceFile& client, const GFile& file,
                                               bool to_write, ResourceFile::OpenFailure& failure,
                                               std::string& reason)
{
    const std::lock_guard guard(table().mutex);
    zmr::FileIdentity wanted;
    const bool exists = identity_of(file, wanted);
    for (ResourceFileServer* const server : table().servers) {
        zmr::FileIdentity present;
        const bool is_made = server->library_.identity(present);
        if (is_made ? !exists || !(present == wanted) : server->filename_.compare(file.text) != 0)
            continue;
        if (to_write && !server->library_.is_writable()) {
            const zmr::LibraryOpenResult result =
                server->library_.begin_writing(zmr::process_identity());
            failure = failure_of(result);
            reason = result.text;
            if (failure != ResourceFile::OpenFailure::None)
                return nullptr;
            ++server->changes_;  // what another process has committed since may be seen now
        }
        return Join(client, server);
    }

    struct Discard {
        void operator()(ResourceFileServer* server) const { delete server; }
    };
    std::unique_ptr<ResourceFileServer, Discard> server(new ResourceFileServer);
    const zmr::LibraryOpenResult result = server->library_.open(
        file.text, to_write ? zmr::LibraryAccess::Write : zmr::LibraryAccess::Read,
        to_write ? zmr::process_identity() : std::string());
    failure = failure_of(result);
    reason = result.text;
    if (failure != ResourceFile::OpenFailure::None)
        return nullptr;
    server->filename_ = file;
    table().servers.reserve(table().servers.size() + 1);  // so that the last steps can't fail
    static_cast<void>(Join(client, server.get()));
    table().servers.push_back(server.get());
    return server.release();
}

void ResourceFileServer::Detach(ResourceFile& client, ResourceFileServer* server)
{
    {
        const std::lock_guard guard(table().mutex);
        TGVector<ResourceFile*>& all = server->clients;
        long kept = 0;
        for (long i = 0; i < all.count; ++i) {
            if (all[i] != &client)
                all[kept++] = all[i];
        }
        all.count = kept;
        if (kept > 0)
            return;
        std::erase(table().servers, server);
        // Before anyone opens the file anew.
        const bool closed = server->library_.close();
        const std::vector<GObjectPlace> doomed = std::move(server->doomed_);
        if (closed)
            remove_objects(doomed);
    }
    // Without the table's lock: instances may hold files open, whose locks are taken to close them.
    server->loaded_.take_all(&GStreamable::destroy);
    delete server;
}

bool ResourceFileServer::IsOpen(const ResourceFileServer* server)
{
    const std::lock_guard guard(table().mutex);
    const auto& all = table().servers;
    return std::find(all.begin(), all.end(), server) != all.end();
}

void ResourceFileServer::visit_clients(const std::function<void(ResourceFile&)>& visit) const
{
    const std::lock_guard guard(table().mutex);
    for (long i = clients.count - 1; i >= 0; --i)
        visit(*clients[i]);
}

int ResourceFileServer::error() const
{
    return static_cast<int>(library_.error().kind);
}

GString ResourceFileServer::error_text() const
{
    const zmr::FileError failed = library_.error();
    return failed ? GString(failed.text()) : GString();
}

iopstream& ResourceFileServer::get_stream()
{
    return *stream_;
}

bool ResourceFileServer::find_content(const GResourceFullName& name, zmr::LibraryContent& content)
{
    zmr::LibraryPath path;
    return name.to_library(path) && library_.pin(path, name.name.view(), name.type.view(), content);
}

std::size_t ResourceFileServer::read_content(const zmr::LibraryContent& content,
                                             std::uint64_t offset, void* data,
                                             std::size_t size) const
{
    return library_.read_at(content, offset, data, size);
}

void ResourceFileServer::release_content(const zmr::LibraryContent& content)
{
    library_.unpin(content);
}

const zmr::LibraryPath* ResourceFileServer::library_path(const GResourcePath& path) const
{
    if (!path.shares_levels(last_path_)) {
        if (!path.to_library(last_library_path_)) {
            last_path_.empty();
            last_library_path_ = zmr::LibraryPath();
            return nullptr;
        }
        last_path_ = path;
    }
    return &last_library_path_;
}

void ResourceFileServer::apply_kind()
{
    if (!kind_waits_)
        return;
    kind_waits_ = false;
    static_cast<void>(library_.set_file_kind(kind_.view()));  // refused only by a failed file
}

void ResourceFileServer::remove_doomed()
{
    const GSingleLock locked(lock);
    if (doomed_.empty() || library_.in_scope())
        return;
    const std::vector<GObjectPlace> doomed = std::move(doomed_);
    doomed_.clear();
    if (!library_.commit())
        return;
    remove_objects(doomed);
}

void ResourceFileServer::note_unreadable(const GResourceFullName& name, const char* reason) const
{
    damage_.name = name;
    damage_.reason = reason;
}

void ResourceFileServer::note_damage_of_engine() const
{
    const zmr::LibraryDamage met = library_.last_damage();
    if (met.part == zmr::LibraryDamage::Part::None)
        return;
    damage_.name = GResourceFullName(GResourcePath::FromLibrary(met.name.path),
                                     GString(met.name.name), GString(met.name.type));
    damage_.reason = met.text;
}

void ResourceFileServer::replace_instance(const zmr::LibraryPath& path,
                                          const GResourceFullName& name, GStreamable* instance)
{
    GStreamable* const former = loaded_.put(path, name.name.view(), name.type.view(), instance);
    if (former != instance)
        GStreamable::destroy(former);
}

void ResourceFileServer::destroy_instance(const zmr::LibraryPath& path,
                                          const GResourceFullName& name)
{
    GStreamable::destroy(loaded_.take(path, name.name.view(), name.type.view()));
}

ResourceFileBlock ResourceFileServer::pin_block(const zmr::LibraryPath& path,
                                                const GResourceFullName& name)
{
    zmr::LibraryContent content;
    if (!library_.pin(path, name.name.view(), name.type.view(), content))
        return {};
    constexpr std::uint64_t kEnd = std::numeric_limits<std::int32_t>::max();
    const std::uint64_t reach = std::max(content.stored, content.length);
    if (content.position > kEnd || reach > kEnd - content.position) {
        library_.unpin(content);
        return {};
    }
    ResourceFileBlock block;
    block.offset = static_cast<std::uint32_t>(content.position);
    block.presence = 1;
    block.length = static_cast<std::uint32_t>(content.length);
    block.sequential = content.compressed ? 1 : 0;
    if (!blocks_.emplace(content.position, content).second)
        library_.unpin(content);  // pinned already
    return block;
}
