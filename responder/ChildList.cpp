#include "responder/ChildList.h"

#include "foundation/HeapBlock.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>
#include <utility>

namespace zmr {

namespace {

constexpr int kStep = 4;
constexpr int kSmall = 16;  ///< Up to here blocks grow by kStep.

/// The size of the block for `count` children: larger lists have few sizes, so that growing one by
/// one stays linear.
int block_entries(int count)
{
    if (count <= kSmall)
        return (count + kStep - 1) / kStep * kStep;
    const int step = static_cast<int>(std::bit_floor(static_cast<unsigned>(count - 1))) / 2;
    return (count + step - 1) / step * step;
}

std::size_t bytes_of(int entries)
{
    return static_cast<std::size_t>(entries) * sizeof(GResponder*);
}

/// Looks at eight at a time, which the compiler turns into a few comparisons of whole registers.
constexpr int kAtOnce = 8;

}  // namespace

ChildList::~ChildList()
{
    if (items_ != nullptr)
        free_block(items_ - front_);
}

void ChildList::clear()
{
    if (items_ != nullptr)
        free_block(items_ - front_);
    forget();
}

int ChildList::index_of(const GResponder* child) const
{
    int index = 0;
    for (; index + kAtOnce <= count_; index += kAtOnce) {
        bool found = false;
        for (int next = 0; next < kAtOnce; ++next)
            found |= items_[index + next] == child;
        if (found)
            break;
    }
    while (index < count_ && items_[index] != child)
        ++index;
    return index;
}

void ChildList::insert_at(int index, GResponder* child)
{
    assert(index >= 0 && index <= count_ && count_ < kMaxCount);
    const int behind = capacity_ - front_ - count_;
    const bool near_front = index < count_ - index;
    if (front_ + behind == 0) {
        grow(index);
    } else if ((near_front ? int{front_} : behind) == 0) {
        // Half of the room that lies at the other end comes over to this one.
        const int moved = (front_ + behind + 1) / 2;
        GResponder** target = near_front ? items_ + moved : items_ - moved;
        std::memmove(target, items_, bytes_of(count_));
        items_ = target;
        front_ = static_cast<std::uint16_t>(near_front ? front_ + moved : front_ - moved);
    }
    if (front_ > 0 && (near_front || capacity_ - front_ - count_ == 0)) {
        --items_;
        --front_;
        std::memmove(items_, items_ + 1, bytes_of(index));
    } else if (index < count_) {
        std::memmove(items_ + index + 1, items_ + index, bytes_of(count_ - index));
    }
    items_[index] = child;
    ++count_;
}

/// The new room comes to the end that is nearer to `index`.
void ChildList::grow(int index)
{
    const int capacity = block_entries(count_ + 1);
    const bool near_front = index < count_ - index;
    if (near_front || items_ == nullptr) {
        move_into_block_of(capacity, near_front ? capacity - count_ : 0);
        return;
    }
    items_ = static_cast<GResponder**>(resize_block(items_, bytes_of(capacity)));
    capacity_ = static_cast<std::uint16_t>(capacity);
}

void ChildList::move_into_block_of(int capacity, int front)
{
    auto** block = static_cast<GResponder**>(allocate_block(bytes_of(capacity)));
    if (count_ > 0)
        std::memcpy(block + front, items_, bytes_of(count_));
    if (items_ != nullptr)
        free_block(items_ - front_);
    items_ = block + front;
    front_ = static_cast<std::uint16_t>(front);
    capacity_ = static_cast<std::uint16_t>(capacity);
}

void ChildList::remove_at(int index)
{
    assert(index >= 0 && index < count_);
    if (index < count_ - 1 - index) {
        std::memmove(items_ + 1, items_, bytes_of(index));
        ++items_;
        ++front_;
    } else {
        std::memmove(items_ + index, items_ + index + 1, bytes_of(count_ - 1 - index));
    }
    --count_;
    if (capacity_ > kSmall && count_ > 0 && count_ % kStep == 0 &&
        capacity_ >= 2 * block_entries(count_))
        give_back();
}

void ChildList::give_back()
{
    GResponder** block = items_ - front_;
    std::memmove(block, items_, bytes_of(count_));
    const int capacity = block_entries(count_);
    items_ = block;
    front_ = 0;
    items_ = static_cast<GResponder**>(resize_block(block, bytes_of(capacity)));
    capacity_ = static_cast<std::uint16_t>(capacity);
}

void ChildList::swap(int index1, int index2)
{
    std::swap(items_[index1], items_[index2]);
}

void ChildList::move_entries(int to, int from, int number)
{
    assert(number >= 0 && to >= 0 && from >= 0 && std::max(to, from) + number <= count_);
    if (number > 0)
        std::memmove(items_ + to, items_ + from, bytes_of(number));
}

void ChildList::share(const ChildList& other)
{
    items_ = other.items_;
    count_ = other.count_;
    front_ = other.front_;
    capacity_ = other.capacity_;
}

void ChildList::forget()
{
    items_ = nullptr;
    count_ = 0;
    front_ = 0;
    capacity_ = 0;
}

void ChildList::own_array()
{
    ChildList copy;
    if (count_ > 0) {
        const int capacity = block_entries(count_);
        copy.items_ = static_cast<GResponder**>(allocate_block(bytes_of(capacity)));
        copy.capacity_ = static_cast<std::uint16_t>(capacity);
        copy.count_ = count_;
        std::memcpy(copy.items_, items_, bytes_of(count_));
    }
    share(copy);
    copy.forget();
}

}  // namespace zmr
