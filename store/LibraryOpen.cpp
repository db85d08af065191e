#include "store/LibraryState.h"

#include <array>
#include <thread>
#include <utility>

// Opening, locking, finding the last commit, closing.
namespace zmr {
namespace {

constexpr int kLockTries = 1000;  // for as long as a few syncs of a busy disk may take
constexpr auto kLockPause = std::chrono::milliseconds(2);
constexpr int kLooks = 20;  // at what a writing process may just change

LibraryOpenResult refused(LibraryOpenStatus status, std::string text)
{
    return {status, {}, std::move(text)};
}

LibraryOpenResult failed(const FileError& error)
{
    return {LibraryOpenStatus::Failed, error, error.text()};
}

std::string read_sector(const FileDevice& device, std::uint64_t position)
{
    std::string sector(kSectorBytes, '\0');
    std::size_t done = 0;
    if (device.read_at(position, sector.data(), sector.size(), done))
        done = 0;
    sector.resize(done);
    return sector;
}

/// Whether the file's making was cut short; of one that was, also what its header is.
FileError look_at_making(const FileDevice& device, bool& unfinished, HeaderKind& header)
{
    std::uint64_t bytes = 0;
    unfinished = false;
    if (const FileError error = device.length(bytes))
        return error;
    if (bytes > kDataStart)
        return {};
    std::string fixed(kDataStart, '\0');
    std::size_t done = 0;
    if (const FileError error = device.read_at(0, fixed.data(), fixed.size(), done))
        return error;
    fixed.resize(done);
    unfinished = is_unfinished(fixed);
    header = decode_header(std::string_view(fixed).substr(0, kSectorBytes));
    return {};
}

}  // namespace

LibraryOpenResult LibraryState::open(const std::string& name, LibraryAccess access,
                                     std::string_view owner_text)
{
    if (is_open)
        close();
    forget_all();
    const auto let_go = [this] {
        storage.detach();
        forget_all();
    };
    LibraryOpenResult result;
    try {
        result = open_device(name, access, owner_text);
        name_ = name;
        owner_ = std::string(owner_text);
    } catch (...) {
        let_go();
        throw;
    }
    if (result.status != LibraryOpenStatus::Ok) {
        let_go();
        return result;
    }
    is_open = true;
    writable = access == LibraryAccess::Write;
    return result;
}

LibraryOpenResult LibraryState::open_device(const std::string& name, LibraryAccess access,
                                            std::string_view owner_text)
{
    const bool writes = access == LibraryAccess::Write;
    FileError error;
    auto device = files.open(name, writes ? FileAccess::ReadWrite : FileAccess::Read,
                             FileCreate::OpenExisting, FileShare::ReadWrite, error);
    if (device == nullptr) {
        if (error.kind != FileErrorKind::NotFound)
            return failed(error);
        if (!writes)
            return refused(LibraryOpenStatus::Missing, "there is no such file");
        storage.attach_missing(name, std::string(owner_text));
        index.reset({});
        return {LibraryOpenStatus::Ok, {}, {}};
    }
    device->advise_random();
    if (writes) {
        LibraryOpenResult locked = lock_writer(*device);
        if (locked.status != LibraryOpenStatus::Ok)
            return locked;
    } else if (!lock_reader(*device)) {
        return failed({FileErrorKind::InUse, 0});
    }

    bool unfinished = false;
    HeaderKind header = HeaderKind::Valid;
    if ((error = look_at_making(*device, unfinished, header)))
        return failed(error);
    if (unfinished) {
        if (!writes && header == HeaderKind::Foreign)
            return refused(LibraryOpenStatus::NotALibrary, "the file is not a library");
        if (!writes)
            return refused(LibraryOpenStatus::Damaged, "the library was never finished");
        storage.attach(std::move(device), name, std::string(owner_text), true);
        index.reset({});
        return {LibraryOpenStatus::Ok, {}, {}};
    }
    storage.attach(std::move(device), name, std::string(owner_text), false);
    LibraryOpenResult result = load();
    if (result.status != LibraryOpenStatus::Ok)
        return result;
    if (writes && stale_)
        return refuse_stale();
    if (!writes) {
        keep_reader_lock();
        return result;
    }
    // A killed writer's last commits may be in the system's memory only.
    if ((record_bytes_ > 0 || root_unnamed_) && !storage.sync())
        return failed(storage.error());
    if (!storage.write_fixed(kOwnerPosition, encode_owner(owner_text)))
        return failed(storage.error());
    return result;
}

LibraryOpenResult LibraryState::refuse_stale() const
{
    if (storage.read_error())
        return failed(storage.read_error());
    return refused(LibraryOpenStatus::Damaged,
                   "the newest state is damaged; an older one can be read");
}

LibraryOpenResult LibraryState::lock_writer(FileDevice& device)
{
    const FileError error = device.lock(kWriterLock, 1, FileLockKind::Exclusive);
    if (!error)
        return {LibraryOpenStatus::Ok, {}, {}};
    if (error.kind != FileErrorKind::InUse)
        return failed(error);
    std::string owner;
    if (!decode_owner(read_sector(device, kOwnerPosition), owner) || owner.empty())
        owner = "another program";
    return {LibraryOpenStatus::Locked, error, "in use by " + owner};
}

bool LibraryState::lock_reader(FileDevice& device)
{
    // Whoever cuts the file holds these ranges for as long as a few syncs take.
    for (int i = 0; i < kLockTries; ++i) {
        const FileError error = device.lock(kReaderLocks, 1, FileLockKind::Shared);
        // Where the system has no locks, reading goes on without: nobody can cut there safely.
        if (error.kind != FileErrorKind::InUse)
            return true;
        std::this_thread::sleep_for(kLockPause);
    }
    return false;
}

bool LibraryState::read_slot(std::size_t which, RootSlot& slot) const
{
    // Another process may be writing it at this instant: then it is another one a moment later.
    std::string before;
    for (int look = 0; look < kLooks; ++look) {
        std::string sector(kSectorBytes, '\0');
        sector.resize(storage.read_some(kSlotPosition[which], sector.data(), sector.size()));
        if (decode_slot(sector, slot))
            return true;
        if (look > 0 && sector == before)
            return false;
        before = std::move(sector);
        std::this_thread::yield();
    }
    return false;
}

bool LibraryState::is_superseded() const
{
    RootSlot slot;
    for (std::size_t i = 0; i < kSlotPosition.size(); ++i)
        if (read_slot(i, slot) && slot.number > number_)
            return true;
    return false;
}

LibraryOpenResult LibraryState::load()
{
    // Beside a process that writes, a later commit may be read and the one before it not yet. That
    // one is there at the next look, while damage stays where it is.
    LibraryOpenResult result = load_once();
    for (int look = 1; look < kLooks && stale_; ++look) {
        const std::uint64_t before = number_;
        result = load_once();
        if (number_ <= before)
            break;
    }
    if (result.status != LibraryOpenStatus::Ok)
        return result;
    if (!slot_valid_[0] || !slot_valid_[1])
        damage.note(LibraryDamage::Part::RootSlot, {}, {}, {}, "one of the two roots is damaged");
    if (stale_)
        damage.note(LibraryDamage::Part::RootSlot, {}, {}, {},
                    "the newest state is damaged; this is an older one");
    return result;
}

LibraryOpenResult LibraryState::load_once()
{
    stale_ = false;
    storage.forget_read_error();
    const auto damaged = [this](const char* text) {
        return storage.read_error() ? failed(storage.read_error())
                                    : refused(LibraryOpenStatus::Damaged, text);
    };
    for (std::size_t i = 0; i < 2; ++i)
        slot_valid_[i] = read_slot(i, slots_[i]);
    std::array<char, kSectorBytes> sector;
    const HeaderKind header =
        decode_header({sector.data(), storage.read_some(0, sector.data(), sector.size())});
    if (header == HeaderKind::Newer)
        return refused(LibraryOpenStatus::NewerFormat,
                       "the library was written by a newer version");
    if (!slot_valid_[0] && !slot_valid_[1]) {
        if (header == HeaderKind::Foreign && !storage.read_error())
            return refused(LibraryOpenStatus::NotALibrary, "the file is not a library");
        return damaged("both of the library's roots are damaged");
    }
    // Behind the slots: the file holds all that they name, however fast it grows.
    std::uint64_t bytes = 0;
    if (const FileError error = storage.device()->length(bytes))
        return failed(error);

    const std::size_t newer =
        !slot_valid_[0] || (slot_valid_[1] && slots_[1].number > slots_[0].number) ? 1 : 0;
    bool found = load_from(slots_[newer], bytes);
    if (!found && slot_valid_[1 - newer])
        found = load_from(slots_[1 - newer], bytes);
    if (!found)
        return damaged("neither of the library's roots can be read");
    // From here on a read that fails must not pass for the end of what was committed.
    storage.forget_read_error();
    const bool whole = storage.end() <= bytes && follow_tail(bytes);
    stale_ = !whole || number_ < slots_[newer].number || storage.read_error();
    return {LibraryOpenStatus::Ok, {}, {}};
}

void LibraryState::keep_reader_lock()
{
    // A state of no commits is held by the lock that every opening reader takes.
    FileDevice& device = *storage.device();
    if (number_ > 0 && !device.lock(kReaderLocks + number_, 1, FileLockKind::Shared))
        device.unlock(kReaderLocks, 1);
    reader_number_ = number_;
}

LibraryOpenResult LibraryState::begin_writing(std::string_view owner_text)
{
    if (writable)
        return {LibraryOpenStatus::Ok, {}, {}};
    if (!is_open || busy)
        return refused(LibraryOpenStatus::Failed, "the library is not open");
    FileError error;
    auto device = files.open(name_, FileAccess::ReadWrite, FileCreate::OpenExisting,
                             FileShare::ReadWrite, error);
    if (device == nullptr)
        return error.kind == FileErrorKind::NotFound
                   ? refused(LibraryOpenStatus::Missing, "there is no such file")
                   : failed(error);
    FileIdentity mine;
    FileIdentity other;
    if (storage.device()->identity(mine) || device->identity(other) || !(mine == other))
        return refused(LibraryOpenStatus::Missing, "the file was replaced by another");
    device->advise_random();
    LibraryOpenResult result = lock_writer(*device);
    if (result.status != LibraryOpenStatus::Ok)
        return result;

    bool unfinished = false;
    HeaderKind header = HeaderKind::Valid;
    if ((error = look_at_making(*device, unfinished, header)))
        return failed(error);
    std::string owner(owner_text);
    std::string kept_name = name_;
    auto reader = storage.release_device();
    storage.attach(std::move(device), name_, owner, unfinished);
    try {
        if (!unfinished)
            result = load_to_write(owner);
    } catch (...) {
        storage.attach(std::move(reader), std::move(kept_name), {}, false);
        forget_commits();
        index.reset({});
        throw;
    }
    if (result.status != LibraryOpenStatus::Ok) {
        storage.attach(std::move(reader), std::move(kept_name), {}, false);
        forget_commits();
        static_cast<void>(load());
        return result;
    }
    if (space_.has_pins())
        former_reader_ = std::move(reader);
    owner_ = std::move(owner);
    writable = true;
    return result;
}

LibraryOpenResult LibraryState::load_to_write(const std::string& owner)
{
    forget_commits();
    LibraryOpenResult result = load();
    if (result.status == LibraryOpenStatus::Ok && stale_)
        result = refuse_stale();
    if (result.status == LibraryOpenStatus::Ok && (record_bytes_ > 0 || root_unnamed_) &&
        !storage.sync())
        result = failed(storage.error());
    if (result.status == LibraryOpenStatus::Ok &&
        !storage.write_fixed(kOwnerPosition, encode_owner(owner)))
        result = failed(storage.error());
    return result;
}

bool LibraryState::refresh()
{
    if (!is_open)
        return false;
    if (writable)
        return true;
    if (!lock_reader(*storage.device()))
        return false;
    const std::uint64_t before = reader_number_;
    forget_commits();
    bool loaded = false;
    try {
        loaded = load().status == LibraryOpenStatus::Ok;
    } catch (...) {
        forget_commits();
        index.reset({});
        throw;
    }
    if (!loaded)
        index.reset({});
    keep_reader_lock();
    if (before != number_ && before > 0 && !space_.has_pins())
        storage.device()->unlock(kReaderLocks + before, 1);
    return loaded;
}

bool LibraryState::close()
{
    if (!is_open)
        return true;
    scopes = 0;
    commit_wanted = false;
    const bool dirty = !log_.empty() || index_ahead_ || record_bytes_ > 0 || root_unnamed_;
    if (writable && dirty && !storage.error())
        commit_now(true);
    if (writable)
        storage.cut_reserve();
    const bool good = !storage.error();
    is_open = false;
    writable = false;
    former_reader_.reset();
    storage.detach();
    forget_all();
    return good;
}

void LibraryState::forget_commits()
{
    log_.clear();
    given_up_.clear();
    cleared_ = false;
    index_ahead_ = false;
    space_.clear();
    space_loaded_ = false;
    space_advanced_ = false;
    tail_commits_.clear();
    records_.clear();
    record_bytes_ = 0;
    root_unnamed_ = false;
    number_ = 0;
    checksum_ = 0;
    slots_ = {};
    slot_valid_ = {};
    durable_ = {};
    fold_at_bytes_ = tuning.change_bytes;
    work_bytes_ = 0;
    has_work_ = false;
    stale_ = false;
    block_position_ = 0;
    table_position_ = 0;
}

void LibraryState::forget_all()
{
    forget_commits();
    space_loaded_ = true;
    space_.unpin_all();
    pinned_.clear();
    index.reset({});
    loader.clear();
    damage.clear();
    reader_number_ = 0;
    busy = false;
    small_commits_ = 0;
    name_.clear();
}

void LibraryState::go_back()
{
    forget_commits();
    storage.restart_at(kDataStart);
    if (storage.device() == nullptr || load().status != LibraryOpenStatus::Ok) {
        storage.restart_at(kDataStart);
        index.reset({});
        space_loaded_ = true;
    }
}

}  // namespace zmr
