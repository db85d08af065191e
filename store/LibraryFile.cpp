#include "store/LibraryFile.h"

#include "store/LibraryState.h"

#include <mutex>
#include <utility>

namespace zmr {
namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

std::string_view view(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Refuses changes while a visitor runs, which may be one inside another.
class BusyGuard {
public:
    explicit BusyGuard(bool& busy) : busy_(busy), before_(std::exchange(busy, true)) {}
    ~BusyGuard() { busy_ = before_; }
    BusyGuard(const BusyGuard&) = delete;
    BusyGuard& operator=(const BusyGuard&) = delete;

private:
    bool& busy_;
    bool before_;
};

}  // namespace

LibraryFile::LibraryFile(FileSystemDevice& files, const LibraryTuning& tuning)
    : state_(std::make_unique<LibraryState>(files, tuning))
{
}

LibraryFile::~LibraryFile()
{
    close();
}

LibraryOpenResult LibraryFile::open(const std::string& name, LibraryAccess access,
                                    std::string_view owner)
{
    const Lock lock(state_->mutex);
    return state_->open(name, access, owner);
}

LibraryOpenResult LibraryFile::begin_writing(std::string_view owner)
{
    const Lock lock(state_->mutex);
    return state_->begin_writing(owner);
}

bool LibraryFile::refresh()
{
    const Lock lock(state_->mutex);
    return state_->refresh();
}

bool LibraryFile::close()
{
    const Lock lock(state_->mutex);
    return state_->close();
}

bool LibraryFile::is_open() const
{
    const Lock lock(state_->mutex);
    return state_->is_open;
}

bool LibraryFile::is_writable() const
{
    const Lock lock(state_->mutex);
    return state_->writable;
}

bool LibraryFile::IsLibrary(FileSystemDevice& files, const std::string& name)
{
    LibraryFile file(files);
    return file.open(name, LibraryAccess::Read).status == LibraryOpenStatus::Ok;
}

bool LibraryFile::identity(FileIdentity& identity) const
{
    const Lock lock(state_->mutex);
    const FileDevice* device = state_->storage.device();
    return device != nullptr && !device->identity(identity);
}

FileError LibraryFile::error() const
{
    const Lock lock(state_->mutex);
    return state_->storage.error();
}

LibraryDamage LibraryFile::last_damage() const
{
    const Lock lock(state_->mutex);
    return state_->damage.last();
}

std::string LibraryFile::file_kind() const
{
    const Lock lock(state_->mutex);
    return state_->index.file_kind();
}

bool LibraryFile::set_file_kind(std::string_view kind)
{
    const Lock lock(state_->mutex);
    return state_->change([&] { return state_->set_file_kind(kind); });
}

bool LibraryFile::exists(const LibraryPath& path, std::string_view name,
                         std::string_view type) const
{
    const Lock lock(state_->mutex);
    DirectoryIndex::Found found;
    return state_->find(path, {type, name}, found);
}

bool LibraryFile::find(const LibraryPath& path, std::string_view name, std::string_view type,
                       LibraryContent& content) const
{
    const Lock lock(state_->mutex);
    DirectoryIndex::Found found;
    if (!state_->find(path, {type, name}, found))
        return false;
    content = state_->content_of(found);
    return true;
}

bool LibraryFile::get(const LibraryPath& path, std::string_view name, std::string_view type,
                      std::string& bytes) const
{
    const Lock lock(state_->mutex);
    return state_->get(path, {type, name}, bytes);
}

std::size_t LibraryFile::read_at(const LibraryContent& content, std::uint64_t offset, void* data,
                                 std::size_t size) const
{
    const Lock lock(state_->mutex);
    return state_->read_at(content, offset, static_cast<char*>(data), size);
}

bool LibraryFile::put(const LibraryPath& path, std::string_view name, std::string_view type,
                      ContentKind kind, std::string_view label, std::span<const std::byte> bytes)
{
    const Lock lock(state_->mutex);
    return state_->change([&] {
        return state_->put(path, {type, name}, kind, label, view(bytes));
    });
}

bool LibraryFile::put_from(const LibraryPath& path, std::string_view name, std::string_view type,
                           std::string_view label, const LibrarySource& source)
{
    const Lock lock(state_->mutex);
    return state_->change([&] { return state_->put_from(path, {type, name}, label, source); });
}

bool LibraryFile::copy_from(const LibraryPath& path, std::string_view name, std::string_view type,
                            const LibraryFile& source, const LibraryPath& from_path,
                            std::string_view from_name, std::string_view from_type)
{
    if (&source == this) {
        const Lock lock(state_->mutex);
        return state_->change([&] {
            return state_->copy_from(path, {type, name}, *state_, from_path,
                                     {from_type, from_name});
        });
    }
    const std::scoped_lock locks(state_->mutex, source.state_->mutex);
    return state_->change([&] {
        return state_->copy_from(path, {type, name}, *source.state_, from_path,
                                 {from_type, from_name});
    });
}

bool LibraryFile::remove(const LibraryPath& path, std::string_view name, std::string_view type)
{
    const Lock lock(state_->mutex);
    return state_->change([&] { return state_->remove(path, {type, name}); });
}

bool LibraryFile::rename(const LibraryPath& path, std::string_view name, std::string_view type,
                         const LibraryPath& to_path, std::string_view to_name,
                         std::string_view to_type)
{
    const Lock lock(state_->mutex);
    return state_->change([&] {
        return state_->rename(path, {type, name}, to_path, {to_type, to_name});
    });
}

bool LibraryFile::rename_directory(const LibraryPath& from, const LibraryPath& to)
{
    const Lock lock(state_->mutex);
    return state_->change([&] { return state_->rename_directory(from, to); });
}

bool LibraryFile::clear()
{
    const Lock lock(state_->mutex);
    return state_->change([&] { return state_->clear(); });
}

void LibraryFile::visit(const LibraryPath& path, std::string_view type,
                        const LibraryEntryVisitor& visit) const
{
    const Lock lock(state_->mutex);
    const BusyGuard busy(state_->busy);
    state_->index.for_each(path.key(), type,
                           [&](const EntryRecord& record) { return visit(view_of(record)); });
}

LibraryEntryList LibraryFile::list(const LibraryPath& path, std::string_view type) const
{
    const Lock lock(state_->mutex);
    return state_->index.list(path.key(), type);
}

std::vector<std::string> LibraryFile::types(const LibraryPath& path) const
{
    const Lock lock(state_->mutex);
    return state_->index.types_in(path.key());
}

std::vector<std::string> LibraryFile::types() const
{
    const Lock lock(state_->mutex);
    return state_->index.types();
}

std::vector<std::string> LibraryFile::directories(const LibraryPath& path) const
{
    const Lock lock(state_->mutex);
    return state_->directories(path);
}

bool LibraryFile::directory_exists(const LibraryPath& path) const
{
    const Lock lock(state_->mutex);
    std::string found;
    return state_->index.next_directory(path.key(), found) && found.starts_with(path.key());
}

bool LibraryFile::pin(const LibraryPath& path, std::string_view name, std::string_view type,
                      LibraryContent& content)
{
    const Lock lock(state_->mutex);
    return state_->pin(path, {type, name}, content);
}

void LibraryFile::unpin(const LibraryContent& content)
{
    const Lock lock(state_->mutex);
    state_->unpin(content);
}

std::size_t LibraryFile::read_position(std::uint64_t position, void* data, std::size_t size) const
{
    const Lock lock(state_->mutex);
    return state_->read_position(position, static_cast<char*>(data), size);
}

std::uint64_t LibraryFile::extent() const
{
    const Lock lock(state_->mutex);
    return state_->is_open ? state_->storage.length() : 0;
}

bool LibraryFile::commit()
{
    const Lock lock(state_->mutex);
    return state_->commit();
}

bool LibraryFile::commit_if_due()
{
    const Lock lock(state_->mutex);
    return state_->commit_if_due();
}

void LibraryFile::begin_scope()
{
    const Lock lock(state_->mutex);
    ++state_->scopes;
}

void LibraryFile::end_scope()
{
    const Lock lock(state_->mutex);
    // A close inside the scope has ended it already.
    if (state_->scopes == 0 || --state_->scopes > 0)
        return;
    if (state_->commit_wanted)
        state_->commit();
    else
        state_->commit_if_due();
}

void LibraryFile::give_up() noexcept
{
    const Lock lock(state_->mutex);
    if (state_->can_write())
        state_->fail();
}

bool LibraryFile::in_scope() const
{
    const Lock lock(state_->mutex);
    return state_->scopes > 0;
}

bool LibraryFile::pack(const LibraryProgress& progress)
{
    const Lock lock(state_->mutex);
    return state_->pack(progress);
}

bool LibraryFile::verify(const std::function<void(const LibraryDamage&)>& visit,
                         const LibraryProgress& progress) const
{
    const Lock lock(state_->mutex);
    return state_->verify(visit, progress);
}

LibraryStatistics LibraryFile::statistics() const
{
    const Lock lock(state_->mutex);
    return state_->statistics();
}

}  // namespace zmr
