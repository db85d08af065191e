#include "store/SpaceMap.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace zmr {

void SpaceMap::clear()
{
    pieces_.clear();
    usable_.clear();
    waiting_.clear();
    free_bytes_ = 0;
    usable_bytes_ = 0;
}

void SpaceMap::insert(std::uint64_t position, std::uint64_t length, std::uint64_t number)
{
    if (length == 0)
        return;
    pieces_[position] = {length, number};
    free_bytes_ += length;
    if (number == 0) {
        usable_bytes_ += length;
        usable_.emplace(length, position);
    } else {
        waiting_.emplace(number, position);
    }
}

SpaceMap::Pieces::iterator SpaceMap::erase(Pieces::iterator piece)
{
    const auto [length, number] = piece->second;
    free_bytes_ -= length;
    if (number == 0) {
        usable_bytes_ -= length;
        usable_.erase({length, piece->first});
    } else {
        waiting_.erase({number, piece->first});
    }
    return pieces_.erase(piece);
}

void SpaceMap::take(const FileRange& range)
{
    const std::uint64_t end = range.position + range.length;
    auto piece = pieces_.upper_bound(range.position);
    if (piece != pieces_.begin())
        --piece;
    while (piece != pieces_.end() && piece->first < end) {
        const std::uint64_t position = piece->first;
        const auto [length, number] = piece->second;
        if (position + length <= range.position) {
            ++piece;
            continue;
        }
        piece = erase(piece);
        if (position < range.position)
            insert(position, range.position - position, number);
        if (position + length > end)
            insert(end, position + length - end, number);
    }
}

void SpaceMap::give(const FileRange& range, std::uint64_t number)
{
    if (range.length == 0)
        return;
    take(range);
    std::uint64_t position = range.position;
    std::uint64_t length = range.length;
    // Only neighbours of the same standing join, so that none becomes usable before its time.
    auto next = pieces_.lower_bound(position);
    if (next != pieces_.end() && next->first == position + length &&
        next->second.number == number) {
        length += next->second.length;
        next = erase(next);
    }
    if (next != pieces_.begin()) {
        const auto before = std::prev(next);
        if (before->first + before->second.length == position && before->second.number == number) {
            position = before->first;
            length += before->second.length;
            erase(before);
        }
    }
    insert(position, length, number);
}

bool SpaceMap::allocate(std::uint64_t length, std::uint64_t& position, std::uint64_t limit)
{
    constexpr int kTries = 256;  // only a limit makes more than one needed
    auto best = usable_.lower_bound({length, 0});
    for (int i = 0; i < kTries && best != usable_.end(); ++i) {
        if (best->second > limit || length > limit - best->second) {
            best = usable_.lower_bound({best->first + 1, 0});  // others of that size lie behind
            continue;
        }
        position = take_from(pieces_.find(best->second), length);
        return true;
    }
    return false;
}

bool SpaceMap::allocate_first(std::uint64_t length, std::uint64_t& position)
{
    for (auto piece = pieces_.begin(); piece != pieces_.end(); ++piece) {
        if (piece->second.number != 0 || piece->second.length < length)
            continue;
        position = take_from(piece, length);
        return true;
    }
    return false;
}

std::uint64_t SpaceMap::take_from(Pieces::iterator piece, std::uint64_t length)
{
    const std::uint64_t position = piece->first;
    const std::uint64_t rest = piece->second.length - length;
    erase(piece);
    insert(position + length, rest, 0);
    return position;
}

void SpaceMap::advance(std::uint64_t number)
{
    std::vector<FileRange> ready;
    for (const auto& [waits_for, position] : waiting_) {
        if (waits_for > number)
            break;
        const FileRange range{position, pieces_.find(position)->second.length};
        if (!is_pinned(range))
            ready.push_back(range);
    }
    for (const FileRange& range : ready)
        give(range, 0);
}

void SpaceMap::pin(const FileRange& range)
{
    if (range.length == 0)
        return;
    auto& [length, times] = pins_[range.position];
    length = std::max(length, range.length);
    ++times;
}

void SpaceMap::unpin(const FileRange& range)
{
    const auto place = pins_.find(range.position);
    if (place != pins_.end() && --place->second.second == 0)
        pins_.erase(place);
}

bool SpaceMap::is_pinned(const FileRange& range) const
{
    const auto next = pins_.lower_bound(range.position);
    if (next != pins_.end() && next->first < range.position + range.length)
        return true;
    return next != pins_.begin() &&
           std::prev(next)->first + std::prev(next)->second.first > range.position;
}

std::uint64_t SpaceMap::pins_end() const
{
    std::uint64_t end = 0;
    for (const auto& [position, pin] : pins_)
        end = std::max(end, position + pin.first);
    return end;
}

std::string SpaceMap::encode() const
{
    std::string bytes;
    ByteWriter out(bytes);
    out.varint(pieces_.size());
    std::uint64_t end = 0;
    for (const auto& [position, piece] : pieces_) {
        out.varint(position - end);
        out.varint(piece.length);
        out.varint(piece.number);
        end = position + piece.length;
    }
    return bytes;
}

bool SpaceMap::decode(std::string_view bytes, std::uint64_t file_end)
{
    clear();
    ByteReader in(bytes);
    const std::uint64_t count = in.count(3);
    std::uint64_t end = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t gap = in.varint();
        const std::uint64_t length = in.varint();
        const std::uint64_t number = in.varint();
        const bool fits = gap <= file_end - end && length <= file_end - end - gap;
        if (!in.good() || !fits || length == 0 || end + gap < kDataStart) {
            clear();
            return false;
        }
        insert(end + gap, length, number);
        end += gap + length;
    }
    if (in.good())
        return true;
    clear();
    return false;
}

}  // namespace zmr
