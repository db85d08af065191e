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

}  // namespace

/// The size of the block for `count` children: larger lists have few sizes, so that growing one by
/// one stays linear.
int ChildList::block_entries(int count)
{
    if (count <= kSmall)
        return (count + kStep - 1) / kStep * kStep;
    return static_cast<int>(std::bit_ceil(static_cast<unsigned>(count)));
}

/// Of a block, with the slots in front of its children.
std::size_t ChildList::BytesOfBlock(int capacity)
{
    return BytesOf(capacity + slots_in_front(capacity));
}

void ChildList::clear()
{
    if (!has_block())
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
    return count() == 0 ? 0 : index_between(1, count(), child);
}

int ChildList::index_of(const GResponder* child, std::uint16_t place) const
{
    const int number = count();
    if (number == 0)
        return 0;
    const int noted = static_cast<std::uint16_t>(place - place_at(0));
    if (noted < number && slots_[noted].child == child)
        return noted;
    if (number <= kSearched)
        return index_of(child);
    // A removal moves the shorter part of the list, so that notes hold at the ends and fail most
    // in the middle. When those that went stood evenly spread, a child stands as far from the
    // middle, measured by the list as it is, as it did by the list as it was.
    const int before = std::max(static_cast<int>(most()), number);
    const int middle = number / 2;
    const int likely = middle + (std::min(noted, before) - middle) * number / before;
    for (const int distance : {8, 64}) {
        const int end = std::clamp(likely + distance, 0, number);
        const int index = index_between(std::clamp(likely - distance, 0, end), end, child);
        if (index < end)
            return index;
    }
    return index_of(child);
}

void ChildList::insert_within(int index, GResponder* child)
{
    assert(index >= 0 && index <= count() && count() < kMaxCount);
    const int number = count();
    const bool near_front = index < number - index;
    if (!has_block() || room().capacity() == number)
        grow(index);
    const Room found = room();
    // Half of the room that lies at the other end comes over to this one.
    if (near_front && found.front == 0)
        move_list((found.behind + 1) / 2);
    else if (!near_front && found.behind == 0)
        move_list(-((found.front + 1) / 2));
    if (near_front) {
        move_front(-1, room() + Room::kFirstCame);
        move_entries(0, 1, index);
    } else {
        slots_[-1].room = room() + Room::kLastCame;
        move_entries(index + 1, index, number - index);
    }
    slots_[index].child = child;
}

/// Within the block; the places stay.
void ChildList::move_list(int by)
{
    const Room before = room();
    std::memmove(slots_ + by, slots_, BytesOf(before.count));
    move_front(by,
               MakeRoom(before.front + by, before.behind - by, before.count, before.first_place));
}

/// The new room comes to the end that is nearer to `index`.
void ChildList::grow(int index)
{
    const int number = count();
    const int capacity = block_entries(number + 1);
    if (!has_block())
        move_into_block_of(capacity, 0);
    else if (index < number - index)
        move_into_block_of(capacity, capacity - number);
    else
        resize(capacity);
}

/// With the list at the front of its block.
void ChildList::resize(int capacity)
{
    const Room before = room();
    const int in_front = slots_in_front(capacity);
    if (in_front != slots_in_front(before.capacity())) {
        move_into_block_of(capacity, 0);
        return;
    }
    slots_ = static_cast<Slot*>(resize_block(block(), BytesOfBlock(capacity))) + in_front;
    slots_[-1].room = MakeRoom(0, capacity - before.count, before.count, before.first_place);
}

void ChildList::move_into_block_of(int capacity, int front)
{
    const Room before = has_block() ? room() : Room{};
    const int in_front = slots_in_front(capacity);
    auto* const made = static_cast<Slot*>(allocate_block(BytesOfBlock(capacity)));
    Slot* const first = made + in_front + front;
    if (in_front > 1)
        made->most = slots_in_front(before.capacity()) > 1 ? most() : 0;
    if (before.count > 0)
        std::memcpy(first, slots_, BytesOf(before.count));
    clear();
    slots_ = first;
    slots_[-1].room =
        MakeRoom(front, capacity - front - before.count, before.count, before.first_place);
}

bool ChildList::remove_behind_first(const GResponder* child, std::uint16_t place)
{
    const int number = count();
    const int index = number > kSearched ? index_of(child, place) : index_behind_first(child);
    if (index == number)
        return false;
    remove_within(index);
    return true;
}

void ChildList::remove_within(int index)
{
    assert(index >= 0 && index < count());
    const Room before = room();
    const int left = before.count - 1;
    if (left >= kSearched)
        most() = left > kSearched ? std::max<std::int64_t>(most(), left + 1) : 0;
    if (index < left - index) {
        move_entries(1, 0, index);
        move_front(1, before + Room::kFirstWent);
    } else {
        move_entries(index, index + 1, left - index);
        slots_[-1].room = before + Room::kLastWent;
    }
    if (left % kStep == 0 && before.capacity() > kKept &&
        before.capacity() >= 4 * block_entries(left))
        give_back();
}

void ChildList::give_back()
{
    move_list(-room().front);
    try {
        resize(2 * block_entries(count()));
    } catch (const OutOfMemory_Exception&) {
        return;  // the large block will do, and a removal does not fail
    }
}

void ChildList::swap(int index1, int index2)
{
    std::swap(slots_[index1], slots_[index2]);
}

void ChildList::move_entries(int to, int from, int number)
{
    assert(number >= 0 && to >= 0 && from >= 0);
    if (number > 0)
        std::memmove(slots_ + to, slots_ + from, BytesOf(number));
}

void ChildList::share(const ChildList& other)
{
    slots_ = other.slots_;
}

void ChildList::forget()
{
    slots_ = nullptr;
}

void ChildList::own_array()
{
    ChildList copy;
    if (const int number = count(); number > 0) {
        copy.move_into_block_of(block_entries(number), 0);
        std::memcpy(copy.slots_, slots_, BytesOf(number));
        copy.slots_[-1].room =
            MakeRoom(0, block_entries(number) - number, number, room().first_place);
    }
    share(copy);
    copy.forget();
}

}  // namespace zmr
