#pragma once

#include "store/LibraryFormat.h"

#include <cstdint>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace zmr {

/// The free space inside a library file: which of it may be used now, which waits for older states
/// to go, and what is pinned. Plain values; the caller locks.
class SpaceMap {
public:
    void clear();
    /// Counts a range as free: at once with `number` 0, otherwise once advance() has come to the
    /// commit `number` that gave it up. Parts that are free already are counted anew.
    void give(const FileRange& range, std::uint64_t number);
    /// Takes a range out, wherever it stands.
    void take(const FileRange& range);
    /// Finds room for `length` bytes that ends at or before `limit`: the smallest that fits, among
    /// the first few. False when there is none. Logarithmic.
    [[nodiscard]] bool allocate(std::uint64_t length, std::uint64_t& position,
                                std::uint64_t limit = std::numeric_limits<std::uint64_t>::max());
    /// The same, but the first that fits. Linear.
    [[nodiscard]] bool allocate_first(std::uint64_t length, std::uint64_t& position);
    /// Lets space that commits up to `number` gave up be used, except where it is pinned.
    void advance(std::uint64_t number);
    /// The lowest number that something waits for; 0 when nothing does.
    [[nodiscard]] std::uint64_t first_waiting() const
    {
        return waiting_.empty() ? 0 : waiting_.begin()->first;
    }

    void pin(const FileRange& range);
    void unpin(const FileRange& range);
    void unpin_all() { pins_.clear(); }
    [[nodiscard]] bool has_pins() const { return !pins_.empty(); }
    /// True when a pinned range and this one share a byte.
    [[nodiscard]] bool is_pinned(const FileRange& range) const;
    /// The end of the last pinned range, 0 without one.
    [[nodiscard]] std::uint64_t pins_end() const;

    [[nodiscard]] std::uint64_t free_bytes() const { return free_bytes_; }
    /// Bytes that allocate() may give now.
    [[nodiscard]] std::uint64_t usable_bytes() const { return usable_bytes_; }
    /// The free list as the file holds it.
    [[nodiscard]] std::string encode() const;
    /// Replaces all but the pins. False, and empty, when the bytes are malformed.
    [[nodiscard]] bool decode(std::string_view bytes, std::uint64_t file_end);

private:
    struct Piece {
        std::uint64_t length;
        std::uint64_t number;  ///< 0 when usable.
    };
    using Pieces = std::map<std::uint64_t, Piece>;
    void insert(std::uint64_t position, std::uint64_t length, std::uint64_t number);
    Pieces::iterator erase(Pieces::iterator piece);
    [[nodiscard]] std::uint64_t take_from(Pieces::iterator piece, std::uint64_t length);

    Pieces pieces_;
    std::set<std::pair<std::uint64_t, std::uint64_t>> usable_;               // length, position
    std::set<std::pair<std::uint64_t, std::uint64_t>> waiting_;              // number, position
    std::map<std::uint64_t, std::pair<std::uint64_t, std::uint64_t>> pins_;  // length, times
    std::uint64_t free_bytes_ = 0;
    std::uint64_t usable_bytes_ = 0;
};

}  // namespace zmr
