#include "store/LibraryState.h"

#include <algorithm>
#include <new>
#include <utility>

// Commits, roots, and the space that they take and give up.
namespace zmr {

void LibraryState::changed(std::uint64_t bytes)
{
    work_bytes_ += bytes;
    if (!has_work_)
        work_since_ = std::chrono::steady_clock::now();
    has_work_ = true;
    if (storage.error()) {
        go_back();
        return;
    }
    if (scopes == 0) {
        if (commit_wanted && !busy)
            commit();
        else
            commit_if_due();
        return;
    }
    if (index.change_bytes() <= fold_at_bytes_)
        return;
    // A long scope must not fill memory: what it changed goes into the index before it commits.
    storage.set_must_sync_first();
    if (fold()) {
        index_ahead_ = true;
        log_.clear();
        fold_at_bytes_ = tuning.change_bytes;
    } else if (storage.error()) {
        go_back();
    } else {
        fold_at_bytes_ = index.change_bytes() * 2;
    }
}

bool LibraryState::commit()
{
    if (!is_open || storage.error())
        return false;
    if (!writable)
        return true;
    if (scopes > 0 || busy) {
        commit_wanted = true;
        return true;
    }
    commit_wanted = false;
    return commit_now(false);
}

bool LibraryState::commit_if_due()
{
    if (!can_write() || scopes > 0 || !has_work_)
        return !storage.error();
    const auto waited = std::chrono::steady_clock::now() - work_since_;
    if (work_bytes_ < LibraryFile::kCommitBytes &&
        waited < std::chrono::seconds(LibraryFile::kCommitSeconds))
        return true;
    return commit_now(false);
}

bool LibraryState::commit_now(bool root)
{
    try {
        return write_commit(root);
    } catch (const std::bad_alloc&) {
        fail();
        return false;
    }
}

void LibraryState::fail() noexcept
{
    storage.set_error({FileErrorKind::OutOfMemory, 0});
    try {
        go_back();
    } catch (const std::bad_alloc&) {
        storage.restart_at(kDataStart);
        index.reset({});
        space_loaded_ = true;
    }
}

bool LibraryState::write_commit(bool root)
{
    if (!writable || storage.error())
        return false;
    if (log_.empty() && !index_ahead_ && !root) {
        has_work_ = false;
        work_bytes_ = 0;
        return true;
    }
    bool folds = root || index_ahead_ || index.change_bytes() > tuning.change_bytes ||
                 record_bytes_ + log_.bytes().size() > tuning.tail_bytes;
    if (folds && !fold()) {
        // A block that can't be read now must not stop what needs no fold.
        if (index_ahead_)
            storage.set_error({FileErrorKind::Damaged, 0});
        folds = false;
    }
    const bool synced_first =
        storage.must_sync_first() || storage.commit_bytes() > tuning.one_sync_bytes / 2;
    if (storage.error() || (folds && !write_free_list()) || !write_record(folds)) {
        go_back();
        return false;
    }
    if (!folds)
        return true;
    const FileRange record = records_.back();
    if (write_slot({number_, record.position, record.length, checksum_, storage.end()},
                   root || synced_first))
        return true;
    go_back();
    return false;
}

bool LibraryState::fold()
{
    const auto write = [&](std::string_view bytes, BlockRef& block) {
        block.length = bytes.size();
        block.checksum = checksum_of(bytes);
        return write_block(FrameKind::Index, bytes, {}, block.position);
    };
    const auto moves = [&](const BlockRef& block) {
        if (block.length == 0 || block.position + block.length <= move_above_)
            return false;
        std::uint64_t start = 0;
        if (!find_room(block.length, start))
            return false;
        space_.give({start, block.length + kFrameBytes}, 0);
        return start < block.position;
    };
    IndexFold fold(index, write, moves);
    const bool done = fold.run();
    if (done)
        fold.apply();
    for (const FileRange& range : done ? fold.given_up() : fold.written())
        release(range);
    return done;
}

bool LibraryState::write_free_list()
{
    load_space();
    release(index.root().free_list.range());
    given_up_.insert(given_up_.end(), records_.begin(), records_.end());
    for (const FileRange& range : given_up_)
        space_.give(range, number_ + 1);
    given_up_.clear();
    if (cut_at_ != kNoLimit)
        space_.take({cut_at_, kNoLimit - cut_at_});
    const std::string bytes = space_.encode();
    BlockRef block;
    if (space_.free_bytes() > 0) {
        block.length = bytes.size();
        block.checksum = checksum_of(std::string_view(bytes));
        // Behind all, for it can't tell of the room that it would take.
        if (!storage.append(FrameKind::Index, bytes, {}, block.position))
            return false;
    }
    index.set_free_list(block);
    return true;
}

bool LibraryState::write_record(bool root)
{
    CommitRecord record;
    record.number = number_ + 1;
    record.previous_checksum = checksum_;
    record.start = storage.commit_start();
    if (root) {
        record.flags |= CommitRecord::kHasRoot;
        record.root = index.root();
    } else {
        record.changes = log_.bytes();
        record.given_up = given_up_;
        if (cleared_) {
            record.flags |= CommitRecord::kCleared;
            record.start_of_new = start_of_new_;
        }
    }
    if (storage.must_sync_first()) {
        if (!storage.flush() || !storage.sync())
            return false;
        note_synced();
        record.flags |= CommitRecord::kSyncedFirst;
    } else {
        record.appended_checksum = storage.appended_checksum();
    }
    // For checking the bytes, and for finding what is free behind a root; a root has its own list.
    if (!root || !record.has(CommitRecord::kSyncedFirst))
        for (const auto& [start, used] : storage.used())
            record.used.push_back({{start, used.length}, used.checksum});
    const std::string payload = record.encode();
    std::uint64_t position = 0;
    if (!storage.append(FrameKind::Commit, payload, {}, position) || !storage.flush())
        return false;
    // Not for a single commit: only a run of them has a use for it.
    if (!root && !record.has(CommitRecord::kSyncedFirst) && ++small_commits_ > kFewCommits)
        storage.reserve(tuning.reserve_bytes);
    if (!storage.sync())
        return false;
    note_synced();

    number_ = record.number;
    checksum_ = CommitRecord::checksum_in(payload);
    const FileRange range{position - kFrameBytes, payload.size() + kFrameBytes};
    if (root) {
        records_.assign(1, range);
        record_bytes_ = 0;
        root_unnamed_ = false;
    } else {
        load_space();
        for (const FileRange& given : given_up_)
            space_.give(given, number_);
        records_.push_back(range);
        record_bytes_ += range.length;
    }
    storage.begin_commit();
    given_up_.clear();
    log_.clear();
    cleared_ = false;
    index_ahead_ = false;
    space_advanced_ = false;
    fold_at_bytes_ = tuning.change_bytes;
    work_bytes_ = 0;
    has_work_ = false;
    return true;
}

bool LibraryState::write_slot(const RootSlot& slot, bool durably)
{
    const std::size_t older =
        !slot_valid_[0] || (slot_valid_[1] && slots_[0].number <= slots_[1].number) ? 0 : 1;
    // Unsynced, it may be on the disk or not; only the other slot can be relied on.
    durable_[older] = 0;
    if (!storage.write_fixed(kSlotPosition[older], encode_slot(slot)))
        return false;
    slots_[older] = slot;
    slot_valid_[older] = true;
    if (!durably)
        return true;
    if (!storage.sync())
        return false;
    note_synced();
    return true;
}

void LibraryState::note_synced()
{
    for (std::size_t i = 0; i < 2; ++i)
        durable_[i] = slot_valid_[i] ? slots_[i].number : 0;
}

std::uint64_t LibraryState::usable_number() const
{
    const std::uint64_t named = std::min(durable_[0], durable_[1]);
    FileDevice* const device = storage.device();
    if (named == 0 || device == nullptr || !device->is_locked_by_other(kReaderLocks, named))
        return named;
    std::uint64_t good = 0;  // nobody holds a state before this one
    std::uint64_t bad = named;
    while (bad - good > 1) {
        const std::uint64_t middle = good + (bad - good) / 2;
        (device->is_locked_by_other(kReaderLocks, middle) ? bad : good) = middle;
    }
    return good;
}

void LibraryState::advance_space()
{
    if (space_advanced_ || storage.device() == nullptr)
        return;
    space_advanced_ = true;
    const std::uint64_t waiting = space_.first_waiting();
    if (waiting > 0 && waiting <= std::min(durable_[0], durable_[1]))
        space_.advance(usable_number());
}

void LibraryState::load_space()
{
    if (space_loaded_)
        return;
    space_loaded_ = true;
    space_.clear();
    const BlockRef& list = index.root().free_list;
    if (list.length > 0) {
        ReadOutcome outcome;
        const std::string bytes = loader.read_bytes(list, outcome);
        // A pack cuts off the list of the root before its own, which no reader's contents need.
        if ((outcome != ReadOutcome::Good || !space_.decode(bytes, storage.end())) &&
            !is_superseded())
            damage.note(LibraryDamage::Part::FreeSpace, {}, {}, {},
                        "the list of free space can't be read");
    }
    for (const TailCommit& commit : tail_commits_) {
        if (commit.cleared) {
            space_.clear();
            space_.give({kDataStart, std::max(commit.start_of_new, kDataStart) - kDataStart},
                        commit.number);
        }
        for (const CommitRecord::Used& part : commit.used)
            space_.take(part.range);
        for (const FileRange& range : commit.given_up)
            space_.give(range, commit.number);
    }
    tail_commits_.clear();
}

bool LibraryState::find_room(std::uint64_t bytes, std::uint64_t& start)
{
    load_space();
    advance_space();
    if (move_above_ != kNoLimit && room_limit_ == kNoLimit)
        return space_.allocate_first(bytes + kFrameBytes, start);
    return space_.allocate(bytes + kFrameBytes, start, room_limit_);
}

bool LibraryState::write_block(FrameKind kind, std::string_view bytes, std::string_view more,
                               std::uint64_t& position)
{
    std::uint64_t start = 0;
    if (find_room(bytes.size() + more.size(), start))
        return storage.write_free(start, kind, bytes, more, position);
    return storage.append(kind, bytes, more, position);
}

void LibraryState::release(const FileRange& range)
{
    if (range.length == 0)
        return;
    const bool own =
        range.position >= storage.commit_start() || storage.used().contains(range.position);
    if (!own || !storage.must_sync_first() || space_.is_pinned(range)) {
        given_up_.push_back(range);
        return;
    }
    load_space();
    storage.forget_free(range.position);
    space_.give(range, 0);
}

}  // namespace zmr
