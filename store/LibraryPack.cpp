#include "store/LibraryState.h"

#include <algorithm>
#include <utility>

// Moving what lives into free space, and cutting the file's end.
namespace zmr {

/// One run of pack over an open, writable library.
class LibraryPack {
public:
    LibraryPack(LibraryState& state, const LibraryProgress& progress)
        : state_(state), progress_(progress)
    {
    }
    [[nodiscard]] bool run();

private:
    struct Mover {
        std::string type;
        std::string name;
        EntryValue value;
        std::string label;
    };
    /// Two roots, both slots on the second: what was given up before can be used.
    [[nodiscard]] bool settle();
    /// Finds all that lives; false when some of the index can't be read.
    [[nodiscard]] bool survey();
    void rebuild_space();
    [[nodiscard]] bool move_contents(std::uint64_t limit);
    [[nodiscard]] bool move_index(std::uint64_t limit);
    [[nodiscard]] bool move_content(const LibraryPath& path, const Mover& mover,
                                    std::uint64_t limit);
    [[nodiscard]] bool cut();
    [[nodiscard]] std::uint64_t bytes_above(std::uint64_t limit) const;
    /// Tells how far it has come; false, from then on, when it is to stop.
    [[nodiscard]] bool goes_on();
    template <class Visit>
    [[nodiscard]] bool each_directory(Visit visit);
    [[nodiscard]] std::uint64_t live_end() const
    {
        return live_.empty() ? kDataStart : live_.back().position + live_.back().length;
    }

    LibraryState& state_;
    const LibraryProgress& progress_;
    std::vector<FileRange> live_;  // ascending; without the root's record and the free list
    std::uint64_t live_bytes_ = 0;
    std::uint64_t moved_bytes_ = 0;
    std::uint64_t bytes_to_move_ = 0;  // those that were moved among them, as far as is known
    static constexpr std::uint64_t kToldBytes = 1u << 20;
    std::uint64_t told_bytes_ = 0;
    bool stopped_ = false;
};

template <class Visit>
bool LibraryPack::each_directory(Visit visit)
{
    LibraryPath path;
    std::string key;
    for (bool more = state_.index.next_directory({}, key); more;
         more = state_.index.next_directory(key + '\0', key))
        if (!path.assign_key(key) || !visit(path))
            return false;
    return true;
}

bool LibraryPack::settle()
{
    if (!state_.commit_now(true) || !state_.commit_now(true))
        return false;
    return state_.write_slot(
        state_.slots_[state_.slots_[0].number > state_.slots_[1].number ? 0 : 1], true);
}

bool LibraryPack::survey()
{
    live_.clear();
    bool whole = true;
    const auto add = [&](const FileRange& range) {
        if (range.length > 0)
            live_.push_back(range);
    };
    const RootRecord& root = state_.index.root();
    add(root.types.range());
    for (const PageRef& page : root.pages) {
        ReadOutcome outcome;
        add(page.block.range());
        whole = state_.loader.load(page.block, IndexBlock::Kind::Page, outcome) != nullptr && whole;
    }
    const bool walked = each_directory([&](const LibraryPath& path) {
        ReadOutcome outcome;
        const auto base = state_.index.base_of(path.key(), outcome);
        whole = whole && base != nullptr;
        for (std::size_t i = 0; base != nullptr && i < base->extents.size(); ++i) {
            add(base->extents[i].block.range());
            whole = state_.loader.load(base->extents[i].block, IndexBlock::Kind::Extent, outcome) !=
                        nullptr &&
                    whole;
        }
        state_.index.for_each(path.key(), [&](const EntryRecord& entry) {
            add(entry.value.range());
            return true;
        });
        return true;
    });
    std::sort(live_.begin(), live_.end(),
              [](const FileRange& a, const FileRange& b) { return a.position < b.position; });
    live_bytes_ = 0;
    for (const FileRange& range : live_)
        live_bytes_ += range.length;
    return whole && walked;
}

void LibraryPack::rebuild_space()
{
    SpaceMap& space = state_.space_;
    space.clear();
    state_.space_loaded_ = true;
    state_.space_advanced_ = false;
    std::vector<FileRange> kept = live_;
    kept.push_back(state_.index.root().free_list.range());
    kept.insert(kept.end(), state_.records_.begin(), state_.records_.end());
    std::sort(kept.begin(), kept.end(),
              [](const FileRange& a, const FileRange& b) { return a.position < b.position; });
    // Free for those who see this commit; readers of older ones keep it from use.
    std::uint64_t end = kDataStart;
    for (const FileRange& range : kept) {
        if (range.length == 0)
            continue;
        if (range.position > end)
            space.give({end, range.position - end}, state_.number_);
        end = std::max(end, range.position + range.length);
    }
    if (state_.storage.end() > end)
        space.give({end, state_.storage.end() - end}, state_.number_);
}

bool LibraryPack::move_content(const LibraryPath& path, const Mover& mover, std::uint64_t limit)
{
    const EntryKey key{mover.type, mover.name};
    EntryValue value = mover.value;
    std::uint64_t start = 0;
    const FileRange old = mover.value.range();
    // Best to where it can stay; otherwise anywhere further to the front.
    state_.room_limit_ = limit;
    if (!state_.find_room(old.length - kFrameBytes, start)) {
        state_.room_limit_ = old.position;
        if (!state_.find_room(old.length - kFrameBytes, start))
            start = 0;
    }
    state_.room_limit_ = LibraryState::kNoLimit;
    if (start == 0)
        return true;
    // Copied as it lies, table and all: the checksum moves with the value.
    constexpr std::uint64_t kPieceBytes = 1u << 20;
    state_.storage.set_must_sync_first();
    const std::string frame = encode_frame({FrameKind::Content, old.length - kFrameBytes}, start);
    std::string piece;
    bool good = state_.storage.write_piece(start, frame);
    for (std::uint64_t at = kFrameBytes; good && at < old.length; at += piece.size()) {
        piece.resize(static_cast<std::size_t>(std::min(kPieceBytes, old.length - at)));
        if (state_.storage.read(old.position + at, piece.data(), piece.size()) !=
            ReadOutcome::Good) {
            state_.space_.give({start, old.length}, 0);
            return true;  // it stays where it is, as damaged as it was
        }
        good = state_.storage.write_piece(start + at, piece);
    }
    if (!good)
        return false;
    state_.storage.note_used(start, old.length);
    moved_bytes_ += old.length;
    value.position = start + kFrameBytes;
    state_.put_entry(path, key, mover.label, value);
    state_.changed(old.length);
    return !state_.storage.error();
}

bool LibraryPack::move_contents(std::uint64_t limit)
{
    std::vector<Mover> movers;
    return each_directory([&](const LibraryPath& path) {
        movers.clear();
        state_.index.for_each(path.key(), [&](const EntryRecord& entry) {
            const FileRange range = entry.value.range();
            if (range.length > 0 && range.position + range.length > limit &&
                !state_.space_.is_pinned(range))
                movers.push_back({std::string(entry.key.type), std::string(entry.key.name),
                                  entry.value, std::string(entry.label)});
            return true;
        });
        for (const Mover& mover : movers) {
            if (!move_content(path, mover, limit))
                return false;
            if (moved_bytes_ - told_bytes_ >= kToldBytes && !goes_on())
                return false;
        }
        return goes_on();
    });
}

std::uint64_t LibraryPack::bytes_above(std::uint64_t limit) const
{
    std::uint64_t bytes = 0;
    for (auto range = live_.rbegin(); range != live_.rend(); ++range) {
        if (range->position + range->length <= limit)
            break;  // nothing overlaps: all further ones end before
        bytes += range->length;
    }
    return bytes;
}

bool LibraryPack::goes_on()
{
    told_bytes_ = moved_bytes_;
    stopped_ =
        stopped_ || (progress_ && !progress_(moved_bytes_, std::max(moved_bytes_, bytes_to_move_)));
    return !stopped_;
}

bool LibraryPack::move_index(std::uint64_t limit)
{
    const bool walked = each_directory([&](const LibraryPath& path) {
        ReadOutcome outcome;
        const auto base = state_.index.base_of(path.key(), outcome);
        for (std::size_t i = 0; base != nullptr && i < base->extents.size(); ++i) {
            const BlockRef& block = base->extents[i].block;
            if (block.position + block.length > limit)
                state_.index.touch(path.key());
        }
        return true;
    });
    return walked && settle();
}

bool LibraryPack::cut()
{
    if (!survey())
        return true;
    const std::uint64_t end = std::max(live_end(), state_.space_.pins_end());
    // The root that both slots name must stay whole until the new one is named.
    const RootRecord& root = state_.index.root();
    std::uint64_t guarded = state_.records_.back().position;
    if (root.free_list.length > 0)
        guarded = std::min(guarded, root.free_list.range().position);
    const std::uint64_t need = state_.records_.back().length + state_.space_.encode().size() + 4096;
    if (end > guarded || guarded - end < need)
        return true;
    FileDevice& device = *state_.storage.device();
    if (state_.former_reader_ != nullptr ||
        device.lock(kReaderLocks, state_.number_, FileLockKind::Exclusive))
        return true;  // someone sees an older state, or opens the file just now

    const std::uint64_t locked = state_.number_;
    state_.storage.restart_at(end);
    state_.cut_at_ = end;
    bool good = state_.write_free_list() && state_.write_record(true);
    state_.cut_at_ = LibraryState::kNoLimit;
    const FileRange record = state_.records_.back();
    const RootSlot slot{state_.number_, record.position, record.length, state_.checksum_,
                        state_.storage.end()};
    good = good && state_.write_slot(slot, true) && state_.write_slot(slot, true);
    if (good && !device.set_length(state_.storage.end()))
        good = state_.storage.sync();  // a file that can't be cut is as good, only longer
    device.unlock(kReaderLocks, locked);
    return good;
}

bool LibraryPack::run()
{
    if (!state_.commit_now(false) || state_.storage.device() == nullptr)
        return !state_.storage.error();
    if (!settle())
        return false;
    if (survey())
        rebuild_space();
    constexpr int kPasses = 8;
    std::uint64_t end_before = LibraryState::kNoLimit;
    std::uint64_t moved_before = 0;
    for (int pass = 0; pass < kPasses; ++pass) {
        const std::uint64_t limit = kDataStart + live_bytes_;
        // Contents that were moved have made room for the index in the next pass.
        const bool stands = live_end() + kPageBytes >= end_before && moved_bytes_ == moved_before;
        if (live_end() <= limit || stands)
            break;
        end_before = live_end();
        moved_before = moved_bytes_;
        bytes_to_move_ = moved_bytes_ + bytes_above(limit);
        state_.move_above_ = limit;
        const bool moved = move_contents(limit) && move_index(limit);
        state_.move_above_ = LibraryState::kNoLimit;
        state_.room_limit_ = LibraryState::kNoLimit;
        if (stopped_ || !moved)
            return false;
        if (!survey())
            break;
    }
    return cut();
}

bool LibraryState::pack(const LibraryProgress& progress)
{
    if (!can_write() || scopes > 0)
        return false;
    const auto end_limits = [this] {
        move_above_ = kNoLimit;
        room_limit_ = kNoLimit;
        cut_at_ = kNoLimit;
    };
    bool good = false;
    try {
        good = LibraryPack(*this, progress).run();
    } catch (...) {
        end_limits();
        fail();
        throw;
    }
    end_limits();
    if (storage.error())
        go_back();
    else
        storage.cut_reserve();
    return good;
}

}  // namespace zmr
