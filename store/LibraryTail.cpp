#include "store/LibraryState.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

// From a root slot to the last commit.
namespace zmr {
namespace {

constexpr std::uint64_t kSearchBytes = 16u << 20;  // how far behind a broken frame more is sought

constexpr std::uint64_t kMostUnsynced = LibraryTuning().one_sync_bytes;

}  // namespace

/// Puts the changes of a record into the index.
class LibraryState::Replay : public ChangeVisitor {
public:
    explicit Replay(DirectoryIndex& index) : index_(index) {}
    void put(const std::string& directory, std::string_view type, std::string_view name,
             std::string_view label, const EntryValue& value, bool is_new) override
    {
        index_.put(directory, {type, name}, label, value, is_new);
    }
    void remove(const std::string& directory, std::string_view type, std::string_view name) override
    {
        index_.remove(directory, {type, name});
    }
    void move_directory(const std::string& from, const std::string& to) override
    {
        index_.move_directory(from, to);
    }
    void file_kind(std::string_view kind) override { index_.set_file_kind(kind); }
    void clear_all() override { index_.clear(); }

private:
    DirectoryIndex& index_;
};

bool LibraryState::load_from(const RootSlot& slot, std::uint64_t file_bytes)
{
    RootRecord root;
    records_.clear();
    record_bytes_ = 0;
    tail_commits_.clear();
    root_unnamed_ = false;
    number_ = slot.number;
    checksum_ = slot.record_checksum;
    if (slot.number > 0) {
        if (slot.record_position < kDataStart || slot.record_position > file_bytes ||
            slot.record_length > file_bytes - slot.record_position)
            return false;
        std::string bytes(static_cast<std::size_t>(slot.record_length), '\0');
        if (storage.read(slot.record_position, bytes.data(), bytes.size()) != ReadOutcome::Good)
            return false;
        const std::string_view payload = std::string_view(bytes).substr(kFrameBytes);
        CommitRecord record;
        if (payload.size() < 8 || CommitRecord::checksum_in(payload) != slot.record_checksum ||
            !record.decode(payload, slot.tail) || record.number != slot.number ||
            !record.has(CommitRecord::kHasRoot))
            return false;
        root = std::move(record.root);
        records_.push_back({slot.record_position, slot.record_length});
    }
    space_loaded_ = false;
    storage.restart_at(slot.tail);
    index.reset(std::move(root));
    return true;
}

bool LibraryState::find_commit(std::uint64_t& position, std::uint64_t file_bytes,
                               std::string& payload) const
{
    const auto commit_at = [&](std::uint64_t at, const Frame& frame) {
        if (frame.kind != FrameKind::Commit || frame.length > file_bytes - at - kFrameBytes)
            return false;
        payload.resize(static_cast<std::size_t>(frame.length));
        return storage.read(at + kFrameBytes, payload.data(), payload.size()) ==
                   ReadOutcome::Good &&
               CommitRecord::is_whole(payload);
    };
    std::string window;
    std::uint64_t window_start = 0;
    const auto frame_at = [&](std::uint64_t at, Frame& frame) {
        if (at < window_start || at + kFrameBytes > window_start + window.size()) {
            constexpr std::size_t kWindowBytes = 4096;  // mostly one record of a few hundred bytes
            window_start = at;
            window.resize(kWindowBytes);
            window.resize(storage.read_some(at, window.data(), window.size()));
        }
        const auto offset = static_cast<std::size_t>(at - window_start);
        return window.size() >= offset + kFrameBytes &&
               decode_frame(std::string_view(window).substr(offset, kFrameBytes), at, frame);
    };

    Frame frame;
    while (position <= file_bytes && file_bytes - position > kFrameBytes &&
           frame_at(position, frame)) {
        if (frame.kind == FrameKind::Commit) {
            if (commit_at(position, frame))
                return true;
            break;
        }
        if (frame.length > file_bytes - position - kFrameBytes)
            break;
        position += kFrameBytes + frame.length;
    }
    if (position > file_bytes || file_bytes - position <= kFrameBytes)
        return false;

    // What follows is no chain of frames: the rest of an interrupted commit, or damage. A whole
    // record further on tells which.
    const std::string magic = encode_frame({FrameKind::Commit, 0}, 0).substr(0, 8);
    const std::uint64_t last = std::min(file_bytes, position + kSearchBytes);
    std::string piece;
    for (std::uint64_t from = position; last - from >= kFrameBytes;) {
        constexpr std::uint64_t kPieceBytes = 64 * 1024;
        piece.resize(static_cast<std::size_t>(std::min(kPieceBytes, last - from)));
        piece.resize(storage.read_some(from, piece.data(), piece.size()));
        const std::string_view view = piece;
        for (std::size_t at = view.find(magic); at != std::string_view::npos;
             at = view.find(magic, at + 1)) {
            if (decode_frame(view.substr(at, kFrameBytes), from + at, frame) &&
                commit_at(from + at, frame)) {
                position = from + at;
                return true;
            }
        }
        if (piece.size() <= kFrameBytes)
            return false;
        from += piece.size() - (kFrameBytes - 1);  // a frame may lie across two pieces
    }
    return false;
}

bool LibraryState::follow_tail(std::uint64_t file_bytes)
{
    struct Candidate {
        CommitRecord record;
        std::string payload;
        std::uint64_t position;  // of its frame
    };
    std::optional<Candidate> last;  // applied once another follows it, or its bytes were checked
    std::uint64_t number = number_;
    std::uint64_t checksum = checksum_;
    std::uint64_t start = storage.end();
    std::uint64_t position = start;
    std::uint64_t garbage = 0;
    std::string payload;
    while (garbage <= kSearchBytes && find_commit(position, file_bytes, payload)) {
        Candidate next{{}, std::move(payload), position};
        const std::uint64_t end = position + kFrameBytes + next.payload.size();
        const bool sound = next.record.decode(next.payload, position);
        const bool follows = sound && next.record.number == number + 1 &&
                             next.record.previous_checksum == checksum &&
                             next.record.start == start;
        if (!follows) {
            // A record of an attempt that was given up; a later number than the next is proof of
            // a commit that was whole and is not any more, and of all before it.
            if (sound && next.record.number > number + 1) {
                if (last)
                    static_cast<void>(
                        apply(last->record, last->payload, last->position + kFrameBytes));
                return false;
            }
            garbage += end - position;
            position = end;
            payload.clear();
            continue;
        }
        number = next.record.number;
        checksum = CommitRecord::checksum_in(next.payload);
        start = position = end;
        if (last && !apply(last->record, last->payload, last->position + kFrameBytes))
            return false;
        last = std::move(next);
        // The views of a record borrow from its payload, which has moved.
        if (!last->record.decode(last->payload, last->position))
            return false;
        payload.clear();
    }
    if (!last || !wrote_all(last->record, last->position))
        return true;
    return apply(last->record, last->payload, last->position + kFrameBytes);
}

bool LibraryState::wrote_all(const CommitRecord& record, std::uint64_t frame_position) const
{
    if (record.has(CommitRecord::kSyncedFirst))
        return true;
    if (frame_position - record.start > kMostUnsynced)
        return false;
    RunningChecksum appended;
    std::string piece(64 * 1024, '\0');
    for (std::uint64_t at = record.start; at < frame_position;) {
        const auto part =
            static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), frame_position - at));
        if (storage.read(at, piece.data(), part) != ReadOutcome::Good)
            return false;
        appended.add(piece.data(), part);
        at += part;
    }
    if (appended.value() != record.appended_checksum)
        return false;
    std::uint64_t sum = 0;
    for (const CommitRecord::Used& part : record.used) {
        sum += part.range.length;
        if (sum > kMostUnsynced || storage.read_checked(part.range.position, part.range.length,
                                                        part.checksum, piece) != ReadOutcome::Good)
            return false;
    }
    return true;
}

bool LibraryState::apply(CommitRecord& record, const std::string& payload,
                         std::uint64_t payload_position)
{
    const std::uint64_t end = payload_position + payload.size();
    const FileRange range{payload_position - kFrameBytes, kFrameBytes + payload.size()};
    if (record.has(CommitRecord::kHasRoot)) {
        index.reset(std::move(record.root));
        tail_commits_.clear();
        records_.assign(1, range);
        record_bytes_ = 0;
        // The slots name an older root, so the next close has something to do.
        root_unnamed_ = true;
    } else {
        Replay replay(index);
        const auto offset = static_cast<std::uint64_t>(record.changes.data() - payload.data());
        if (!read_changes(record.changes, payload_position + offset, end, replay))
            return false;
        tail_commits_.push_back({record.number, std::move(record.used), std::move(record.given_up),
                                 record.has(CommitRecord::kCleared), record.start_of_new});
        records_.push_back(range);
        record_bytes_ += range.length;
    }
    number_ = record.number;
    checksum_ = CommitRecord::checksum_in(payload);
    space_loaded_ = false;
    storage.restart_at(end);
    return true;
}

}  // namespace zmr
