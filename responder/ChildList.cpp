#include "responder/ChildList.h"

#include "foundation/GException.h"
#include "foundation/HeapBlock.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>
#include <utility>

namespace zmr {

namespace {

constexpr int kStep = 4;

std::size_t bytes_of(int entries)
{
    return static_cast<std::size_t>(entries) * sizeof(GResponder*);
}

/// A slot more than it has children tells the room.
std::size_t bytes_of_block(int capacity)
{
    return (static_cast<std::size_t>(capacity) + 1) * sizeof(GResponder*);
}

}  // namespace

/// The size of the block for `count` children: larger lists have few sizes, so that growing one by
/// one stays linear.
int ChildList::block_entries(int count)
{
    if (count <= kSmall)
        return (count + kStep - 1) / kStep * kStep;
    return static_cast<int>(std::bit_ceil(static_cast<unsigned>(count)));
}

void ChildList::clear()
{
    if (slots_ == nullptr)
        return;
    free_block(block());
    forget();
}

/// The first index of `child` from `from` on; `end` or more when it does not stand before that.
inline int ChildList::index_between(int from, int end, const GResponder* child) const
{
    int index = from;
    for (; index + 4 <= end; index += 4) {  // few entries in most lists: no setting out first
        if (slots_[index].child == child)
            return index;
        if (slots_[index + 1].child == child)
            return index + 1;
        if (slots_[index + 2].child == child)
            return index + 2;
        if (slots_[index + 3].child == child)
            return index + 3;
    }
    while (index < end && slots_[index].child != child)
        ++index;
    return index;
}

int ChildList::index_behind_first(const GResponder* child) const
{
    return count_ == 0 ? 0 : index_between(1, count_, child);
}

int ChildList::index_of(const GResponder* child, std::uint16_t place) const
{
    if (count_ == 0)
        return 0;
    const int noted = static_cast<std::uint16_t>(place - place_at(0));
    if (noted < count_ && slots_[noted].child == child)
        return noted;
    if (count_ <= kSearched)
        return index_of(child);
    // A removal moves the shorter part of the list, so that notes hold at the ends and fail most
    // in the middle. When those that went stood evenly spread, a child stands as far from the
    // middle, measured by the list as it is, as it did by the list as it was.
    const int most = std::max(int{slots_[-1].room.most}, int{count_});
    const int middle = count_ / 2;
    const int likely = middle + (std::min(noted, most) - middle) * count_ / most;
    for (const int distance : {8, 64}) {
        const int end = std::clamp(likely + distance, 0, int{count_});
        const int index = index_between(std::clamp(likely - distance, 0, end), end, child);
        if (index < end)
            return index;
    }
    return index_of(child);
}

/// The places stay.
void ChildList::set_room(int front, int capacity)
{
    room().first_place = static_cast<std::uint16_t>(room().first_place + room().front - front);
    room().front = static_cast<std::uint16_t>(front);
    room().capacity = static_cast<std::uint16_t>(capacity);
}

void ChildList::insert_within(int index, GResponder* child)
{
    assert(index >= 0 && index <= count_ && count_ < kMaxCount);
    const bool near_front = index < count_ - index;
    if (slots_ == nullptr || capacity() == count_)
        grow(index);
    const int front = room().front;
    const int behind = capacity() - front - count_;
    // Half of the room that lies at the other end comes over to this one.
    if (near_front && front == 0)
        move_list((behind + 1) / 2);
    else if (!near_front && behind == 0)
        move_list(-((front + 1) / 2));
    if (near_front) {
        move_front(-1);
        move_entries(0, 1, index);
    } else {
        move_entries(index + 1, index, count_ - index);
    }
    slots_[index].child = child;
    ++count_;
}

/// Within the block.
void ChildList::move_list(int by)
{
    const Room before = room();
    std::memmove(slots_ + by, slots_, bytes_of(count_));
    slots_ += by;
    room() = before;
    set_room(before.front + by, before.capacity);
}

/// The new room comes to the end that is nearer to `index`.
void ChildList::grow(int index)
{
    const int capacity = block_entries(count_ + 1);
    if (slots_ == nullptr || index < count_ - index) {
        move_into_block_of(capacity, slots_ == nullptr ? 0 : capacity - count_);
        return;
    }
    // Full, so that nothing lies in front of the list.
    slots_ = static_cast<Slot*>(resize_block(slots_ - 1, bytes_of_block(capacity))) + 1;
    set_room(0, capacity);
}

void ChildList::move_into_block_of(int capacity, int front)
{
    Slot* first = static_cast<Slot*>(allocate_block(bytes_of_block(capacity))) + 1 + front;
    first[-1].room = slots_ != nullptr ? room() : Room{};
    if (count_ > 0)
        std::memcpy(first, slots_, bytes_of(count_));
    if (slots_ != nullptr)
        free_block(block());
    slots_ = first;
    set_room(front, capacity);
}

bool ChildList::remove_behind_first(const GResponder* child, std::uint16_t place)
{
    const int index = count_ > kSearched ? index_of(child, place) : index_behind_first(child);
    if (index == count_)
        return false;
    remove_within(index);
    return true;
}

void ChildList::remove_within(int index)
{
    assert(index >= 0 && index < count_);
    room().most = count_ > kSearched ? std::max(room().most, static_cast<std::uint16_t>(count_))
                                     : std::uint16_t{0};
    --count_;
    if (index < count_ - index) {
        move_entries(1, 0, index);
        move_front(1);
    } else if (index < count_) {
        move_entries(index, index + 1, count_ - index);
    }
    if (count_ % kStep == 0 && capacity() > kKept && capacity() >= 4 * block_entries(count_))
        give_back();
}

void ChildList::give_back()
{
    move_list(-room().front);
    const int capacity = 2 * block_entries(count_);
    try {
        slots_ = static_cast<Slot*>(resize_block(slots_ - 1, bytes_of_block(capacity))) + 1;
    } catch (const OutOfMemory_Exception&) {
        return;  // the large block will do, and a removal does not fail
    }
    set_room(0, capacity);
}

void ChildList::swap(int index1, int index2)
{
    std::swap(slots_[index1], slots_[index2]);
}

void ChildList::move_entries(int to, int from, int number)
{
    assert(number >= 0 && to >= 0 && from >= 0);
    if (number > 0)
        std::memmove(slots_ + to, slots_ + from, bytes_of(number));
}

void ChildList::share(const ChildList& other)
{
    slots_ = other.slots_;
    count_ = other.count_;
}

void ChildList::forget()
{
    slots_ = nullptr;
    count_ = 0;
}

void ChildList::own_array()
{
    ChildList copy;
    if (count_ > 0) {
        copy.move_into_block_of(block_entries(count_), 0);
        copy.count_ = count_;
        std::memcpy(copy.slots_, slots_, bytes_of(count_));
    }
    share(copy);
    copy.forget();
}

}  // namespace zmr
