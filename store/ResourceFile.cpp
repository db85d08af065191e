#include "store/ResourceFile.h"

#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "store/ResourceFileServer.h"
#include "store/StoreFiles.h"

#include <algorithm>
#include <cstring>
#include <vector>

G_DEFINE_CLASS(ResourceFile, GStreamable);

const GCallBackReason ResourceFile::Reason_DirectoryRenamed;

namespace {

constexpr std::size_t kPieceBytes = 65536;

bool is_directory(const GResourceFullName& name)
{
    return name.name.is_empty() && name.type.is_empty();
}

/// The object in a stored stream; null when it is of an unknown class. Throws on malformed bytes.
GStreamable* object_in(const std::string& bytes)
{
    impstream in(std::span(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
    try {
        return in.read_pointer<GStreamable>();
    } catch (const UnknownStreamableType_Exception&) {
        return nullptr;
    }
}

}  // namespace

ResourceFile::ResourceFile(const char* file, GIO::IOOpenMode mode) : mode_(mode)
{
    if (file != nullptr)
        ResourceFile::open(file, mode);
}

ResourceFile::ResourceFile(const ResourceFile& other)
    : GStreamable(other), current_path(other.current_path), mode_(other.mode_)
{
    attach(other.server);
}

ResourceFile& ResourceFile::operator=(const ResourceFile& other)
{
    if (this == &other)
        return *this;
    ResourceFile::close();
    GStreamable::operator=(other);
    current_path = other.current_path;
    mode_ = other.mode_;
    attach(other.server);
    return *this;
}

ResourceFile::~ResourceFile()
{
    ResourceFile::close();
}

void ResourceFile::attach(ResourceFileServer* new_server)
{
    if (new_server != nullptr)
        server = ResourceFileServer::Join(*this, new_server);
}

void ResourceFile::shut_down()
{
    close();
    GStreamable::shut_down();
}

void ResourceFile::open(const char* file, GIO::IOOpenMode mode)
{
    if (server != nullptr)
        close();
    mode_ = mode;
    open_failure_ = OpenFailure::None;
    open_error_.empty();
    GFile full(file);
    if (full.is_empty()) {
        open_failure_ = OpenFailure::Missing;
        open_error_ = "No file name was given.";
        return;
    }
    full.expand();
    std::string reason;
    server = ResourceFileServer::Attach(*this, full, (mode & GIO::OpenWrite) != 0, open_failure_,
                                        reason);
    if (server == nullptr)
        open_error_ = GString(std::string(full.text) + ": " + reason + ".");
}

void ResourceFile::close()
{
    if (server == nullptr)
        return;
    ResourceFileServer* const left = server;
    server = nullptr;
    ResourceFileServer::Detach(*this, left);
}

void ResourceFile::set_type(const GString& type)
{
    if (!is_writable())
        return;
    const GSingleLock locked(server->lock);
    if (get_type() == type)
        return;
    zmr::FileIdentity identity;
    server->kind_ = type;
    server->kind_waits_ = true;
    // A kind alone does not make a file that is not there yet.
    if (server->library_.identity(identity))
        server->apply_kind();
}

GString ResourceFile::get_type() const
{
    if (server == nullptr)
        return {};
    const GSingleLock locked(server->lock);
    return server->kind_waits_ ? server->kind_ : GString(server->library_.file_kind());
}

void ResourceFile::flush()
{
    if (!is_writable())
        return;
    const GSingleLock locked(server->lock);
    server->apply_kind();
    server->library_.commit();
}

void ResourceFile::pack()
{
    static_cast<void>(ResourceFile::pack({}));
}

bool ResourceFile::pack(const std::function<bool(std::uint64_t, std::uint64_t)>& progress)
{
    if (!is_writable())
        return false;
    const GSingleLock locked(server->lock);
    return server->library_.pack(progress);
}

std::uint64_t ResourceFile::change_count() const
{
    return server == nullptr ? 0 : server->changes_.load();
}

GFile ResourceFile::get_filename() const
{
    return server == nullptr ? GFile() : server->filename_;
}

bool ResourceFile::exist(const GResourceFullName& name) const
{
    if (server == nullptr)
        return false;
    const GSingleLock locked(server->lock);
    const zmr::LibraryPath* const path = server->library_path(name);
    return path != nullptr && server->library_.exists(*path, name.name.view(), name.type.view());
}

GStreamable* ResourceFile::get(const GString& name, const GString& type, bool keep_loaded)
{
    return get(GResourceFullName(current_path, name, type), keep_loaded);
}

GStreamable* ResourceFile::get(const GResourceFullName& name, bool keep_loaded)
{
    if (server == nullptr)
        return nullptr;
    const GSingleLock locked(server->lock);
    const zmr::LibraryPath* const found = server->library_path(name);
    if (found == nullptr)
        return nullptr;
    const zmr::LibraryPath path = *found;  // reading the object may use the file
    if (keep_loaded) {
        GStreamable* const held = server->loaded_.find(path, name.name.view(), name.type.view());
        if (held != nullptr)
            return held;
    }
    zmr::LibraryContent content;
    if (!server->library_.find(path, name.name.view(), name.type.view(), content) ||
        content.kind != zmr::ContentKind::Streamable)
        return nullptr;
    std::string bytes;
    if (!server->library_.get(path, name.name.view(), name.type.view(), bytes)) {
        server->note_damage_of_engine();
        return nullptr;
    }
    GStreamable* object = nullptr;
    try {
        object = object_in(bytes);
    } catch (const GLibraryException& failure) {
        server->note_unreadable(name, failure.what());
    }
    if (object == nullptr || !keep_loaded)
        return object;
    try {
        server->replace_instance(path, name, object);
    } catch (...) {
        GStreamable::destroy(object);
        throw;
    }
    return object;
}

void ResourceFile::put(GStreamable* object, const GString& name, const GString& type,
                       bool keep_loaded)
{
    put(object, GResourceFullName(current_path, name, type), keep_loaded);
}

void ResourceFile::put(GStreamable* object, const GResourceFullName& name, bool keep_loaded)
{
    if (server == nullptr || object == nullptr)
        return;
    const GSingleLock locked(server->lock);
    const zmr::LibraryPath* const found = server->library_path(name);
    if (found == nullptr)
        return;
    const zmr::LibraryPath path = *found;
    if (is_writable()) {
        ompstream out;
        out.writePointer(object);
        server->apply_kind();
        if (server->library_.put(path, name.name.view(), name.type.view(),
                                 zmr::ContentKind::Streamable, object->getClassName(),
                                 std::as_bytes(out.bytes())))  // a failure is in server->error()
            ++server->changes_;
    }
    if (keep_loaded)
        server->replace_instance(path, name, object);
    else if (is_writable() &&
             server->loaded_.find(path, name.name.view(), name.type.view()) != object)
        server->destroy_instance(path, name);
}

void ResourceFile::remove(const GResourceFullName& name)
{
    if (!is_writable())
        return;
    const GSingleLock locked(server->lock);
    const zmr::LibraryPath* const path = server->library_path(name);
    if (path == nullptr)
        return;
    if (server->library_.remove(*path, name.name.view(), name.type.view()))
        ++server->changes_;
    const zmr::LibraryPath kept = *path;
    server->destroy_instance(kept, name);
}

void ResourceFile::rename(const GResourceFullName& from, const GResourceFullName& to)
{
    if (!is_writable() || from == to)
        return;
    const GSingleLock locked(server->lock);
    zmr::LibraryPath source;
    zmr::LibraryPath target;
    if (!from.to_library(source) || !to.to_library(target))
        return;
    if (!is_directory(from) || !is_directory(to)) {
        if (!server->library_.rename(source, from.name.view(), from.type.view(), target,
                                     to.name.view(), to.type.view()))
            return;
        ++server->changes_;
        GStreamable* const moved = server->loaded_.find(source, from.name.view(), from.type.view());
        if (moved == nullptr) {
            server->destroy_instance(target, to);
            return;
        }
        server->replace_instance(target, to, moved);
        server->loaded_.take(source, from.name.view(), from.type.view());
        return;
    }
    if (!server->library_.rename_directory(source, target))
        return;
    ++server->changes_;
    server->loaded_.rename_directory(source, target);
    const GResourcePath old_path = from;
    const GResourcePath new_path = to;
    DirectoryRenamedInfo info;
    info.server = server;
    info.old_path = &old_path;
    info.new_path = &new_path;
    EvokeCallback(Reason_DirectoryRenamed, info);
}

void ResourceFile::copy_from(const GResourceFullName& to, const ResourceFile& source,
                             const GResourceFullName& from)
{
    if (!is_writable() || source.server == nullptr)
        return;
    const GSingleLock locked(server->lock);
    zmr::LibraryPath source_path;
    zmr::LibraryPath target_path;
    if (!from.to_library(source_path) || !to.to_library(target_path))
        return;
    server->apply_kind();
    if (server->library_.copy_from(target_path, to.name.view(), to.type.view(),
                                   source.server->library_, source_path, from.name.view(),
                                   from.type.view())) {
        ++server->changes_;
        server->destroy_instance(target_path, to);
    }
}

void ResourceFile::copy_from(const GResourceFullName& to, ipstream& source, long size, unsigned int)
{
    if (!is_writable())
        return;
    const GSingleLock locked(server->lock);
    zmr::LibraryPath path;
    if (!to.to_library(path))
        return;
    server->apply_kind();
    std::uint64_t left = size < 0 ? UINT64_MAX : static_cast<std::uint64_t>(size);
    const auto next_piece = [&source, &left](void* data, std::size_t room, std::size_t& done) {
        const auto wanted = static_cast<long>(std::min<std::uint64_t>({room, left, kPieceBytes}));
        try {
            done = wanted == 0 ? 0 : static_cast<std::size_t>(source.readBytes(data, wanted));
        } catch (const GException&) {
            return false;
        }
        left -= done;
        return (source.state() & pstream::kBad) == 0;
    };
    if (server->library_.put_from(path, to.name.view(), to.type.view(), {}, next_piece)) {
        ++server->changes_;
        server->destroy_instance(path, to);
    }
}

bool ResourceFile::extract_to(opstream& out, const GResourceFullName& name, bool) const
{
    if (server == nullptr)
        return false;
    const GSingleLock locked(server->lock);
    const zmr::LibraryPath* const found = server->library_path(name);
    if (found == nullptr)
        return false;
    const zmr::LibraryPath path = *found;
    zmr::LibraryContent content;
    if (!server->library_.find(path, name.name.view(), name.type.view(), content))
        return false;
    try {
        if (content.compressed || content.in_index) {
            std::string bytes;
            if (!server->library_.get(path, name.name.view(), name.type.view(), bytes)) {
                server->note_damage_of_engine();
                return false;
            }
            out.writeBytes(bytes.data(), static_cast<long>(bytes.size()));
            return !out.fail();
        }
        std::vector<unsigned char> piece(kPieceBytes);
        for (std::uint64_t done = 0; done < content.length && !out.fail();) {
            const std::size_t count =
                server->library_.read_at(content, done, piece.data(), piece.size());
            if (count == 0) {
                server->note_damage_of_engine();
                return false;
            }
            out.writeBytes(piece.data(), static_cast<long>(count));
            done += count;
        }
        return !out.fail();
    } catch (const GException&) {
        return false;
    }
}

char* ResourceFile::read_class_name(const GResourceFullName& name) const
{
    if (server == nullptr)
        return nullptr;
    const GSingleLock locked(server->lock);
    const zmr::LibraryPath* const path = server->library_path(name);
    zmr::LibraryContent content;
    if (path == nullptr ||
        !server->library_.find(*path, name.name.view(), name.type.view(), content) ||
        content.kind != zmr::ContentKind::Streamable)
        return nullptr;
    return gnewstr(content.label.c_str());
}

ResourceFileBlock ResourceFile::get_resource_block(const GResourceFullName& name) const
{
    if (server == nullptr)
        return {};
    const GSingleLock locked(server->lock);
    const zmr::LibraryPath* const path = server->library_path(name);
    return path == nullptr ? ResourceFileBlock() : server->pin_block(*path, name);
}

void ResourceFile::empty()
{
    if (!is_writable())
        return;
    const GSingleLock locked(server->lock);
    if (server->library_.clear())
        ++server->changes_;
    server->loaded_.take_all(&GStreamable::destroy);
}

bool ResourceFile::IsValidToRead(const char* file)
{
    return file != nullptr && zmr::LibraryFile::IsLibrary(zmr::store_files(), file);
}

void ResourceFile::unload(const GResourceFullName& name)
{
    if (server == nullptr)
        return;
    const GSingleLock locked(server->lock);
    zmr::LibraryPath path;
    if (name.to_library(path))
        server->destroy_instance(path, name);
}

std::vector<GStreamable*> ResourceFile::loaded_instances(const GResourcePath& path,
                                                         const GString& type, bool recursive) const
{
    if (server == nullptr)
        return {};
    const GSingleLock locked(server->lock);
    const zmr::LibraryPath* const found = server->library_path(path);
    if (found == nullptr)
        return {};
    return server->loaded_.list(*found, type.view(), recursive);
}

void ResourceFile::give_up_changes() noexcept
{
    if (server != nullptr)
        server->library_.give_up();
}

void ResourceFile::visit_loaded(void (*visit)(GStreamable* instance, void* user), void* user) const
{
    if (server == nullptr)
        return;
    const GSingleLock locked(server->lock);
    server->loaded_.for_each(visit, user);
}

const ResourceFile::Damage* ResourceFile::last_damage() const
{
    if (server == nullptr || server->damage_.reason.empty())
        return nullptr;
    return &server->damage_;
}

ResourceFile::CommitScope::CommitScope(const ResourceFile& file) : server_(file.server)
{
    if (server_ != nullptr)
        server_->library_.begin_scope();
}

ResourceFile::CommitScope::~CommitScope()
{
    if (server_ == nullptr)
        return;
    server_->library_.end_scope();
    server_->remove_doomed();
}

void ResourceFile::remove_after_commit(const GObjectPlace& place)
{
    if (!is_writable())
        return;
    const GSingleLock locked(server->lock);
    server->doomed_.push_back(place);
    server->library_.commit();
    server->remove_doomed();
}

void ResourceFile::keep_place(const GObjectPlace& place)
{
    if (server == nullptr)
        return;
    const GSingleLock locked(server->lock);
    std::erase(server->doomed_, place);
}

void ResourceFile::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    GStreamable::read(in);
    GFile file;
    in >> file;
    const auto mode = static_cast<GIO::IOOpenMode>(in.readByte() & GIO::OpenReadWrite);
    GResourceFullName directory;
    in >> directory;
    close();
    mode_ = mode;
    if (!file.is_empty())
        open(file.text, mode);
    current_path = directory.path();
}

void ResourceFile::write(opstream& out)
{
    out.writeByte(0);
    GStreamable::write(out);
    out << get_filename();
    out.writeByte(static_cast<unsigned char>(mode_));
    out << GResourceFullName(current_path, GString(), GString());
}
