#pragma once

#include "foundation/GException.h"
#include "foundation/HeapBlock.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

/// A growing array of values. An index below 0 throws TGVector_IndexOutOfRange_Exception; writing
/// access at or past the count grows the vector with value-initialised items, reading access there
/// throws the same. An exception of an item's own leaves the vector as it was, unless the text of
/// an operation says less.
template <class T>
class TGVector {
public:
    static_assert(alignof(T) <= alignof(std::max_align_t));

    TGVector() noexcept = default;
    /// Room for `first_limit` items. When it must grow, the needed count is rounded up to a
    /// multiple of `step` (values below 1 count as 1), and from kLinearUpTo items on it grows by
    /// half.
    explicit TGVector(long first_limit, long step = kDefaultStep) : delta(std::max(step, 1L))
    {
        setLimit(first_limit);
    }
    TGVector(const TGVector& other) : delta(other.delta), movable(other.movable)
    {
        setLimit(other.count);
        try {
            std::uninitialized_copy_n(other.items, other.count, items);
        } catch (...) {
            zmr::free_block(items);
            throw;
        }
        count = other.count;
    }
    TGVector(TGVector&& other) noexcept { swap(other); }
    TGVector& operator=(const TGVector& other)
    {
        TGVector copied(other);
        swap(copied);
        return *this;
    }
    TGVector& operator=(TGVector&& other) noexcept
    {
        swap(other);
        return *this;
    }
    ~TGVector()
    {
        std::destroy_n(items, count);
        zmr::free_block(items);
    }

    T& operator[](long index)
    {
        if (index < 0)
            throw TGVector_IndexOutOfRange_Exception(index, 0, count - 1);
        if (index >= count)
            setCount(index + 1);
        return items[index];
    }
    const T& operator[](long index) const
    {
        if (index < 0 || index >= count)
            throw TGVector_IndexOutOfRange_Exception(index, 0, count - 1);
        return items[index];
    }

    /// Adds at the end and returns the index. `item` may be one of the vector's own.
    long insert(T item)
    {
        make_room(count + 1);
        ::new (static_cast<void*>(items + count)) T(std::move(item));
        return count++;
    }
    /// Inserts before `index`; one past the count inserts at the end.
    void at_insert(long index, T item)
    {
        if (index < 0)
            throw TGVector_IndexOutOfRange_Exception(index, 0, count);
        const long place = std::min(index, count);
        insert(std::move(item));
        std::rotate(items + place, items + count - 1, items + count);
    }
    /// Takes items out; what lies outside the vector is ignored.
    void at_remove(long index, long number = 1)
    {
        if (index < 0 || index >= count || number <= 0)
            return;
        number = std::min(number, count - index);
        std::move(items + index + number, items + count, items + index);
        std::destroy_n(items + count - number, number);
        count -= number;
    }
    /// Takes all items out and keeps the room.
    void empty()
    {
        std::destroy_n(items, count);
        count = 0;
    }
    /// Cuts the vector, or grows it with value-initialised items. Values below 0 count as 0.
    void setCount(long new_count)
    {
        new_count = std::max(new_count, 0L);
        if (new_count > count) {
            make_room(new_count);
            std::uninitialized_value_construct_n(items + count, new_count - count);
        } else {
            std::destroy_n(items + new_count, count - new_count);
        }
        count = new_count;
    }
    /// Sets the room; never below the count.
    void setLimit(long new_limit)
    {
        new_limit = std::max(new_limit, count);
        if (new_limit == limit)
            return;
        if (static_cast<std::size_t>(new_limit) > kMaxBytes / sizeof(T))
            throw OutOfMemory_Exception();
        const std::size_t bytes = static_cast<std::size_t>(new_limit) * sizeof(T);
        if (new_limit == 0)
            zmr::free_block(std::exchange(items, nullptr));
        else if (movable)
            items = static_cast<T*>(zmr::resize_block(static_cast<void*>(items), bytes));
        else
            move_to(static_cast<T*>(zmr::allocate_block(bytes)));
        limit = new_limit;
    }
    void swap(TGVector& other) noexcept
    {
        std::swap(count, other.count);
        std::swap(limit, other.limit);
        std::swap(delta, other.delta);
        std::swap(items, other.items);
        std::swap(movable, other.movable);
    }

    [[nodiscard]] T* begin() { return items; }
    [[nodiscard]] T* end() { return items + count; }
    [[nodiscard]] const T* begin() const { return items; }
    [[nodiscard]] const T* end() const { return items + count; }

    static constexpr long kDefaultStep = 16;
    static constexpr long kLinearUpTo = 1024;

    long count = 0;
    long limit = 0;
    long delta = kDefaultStep;  ///< The growth step.
    T* items = nullptr;
    /// The items may be moved as plain memory. A user may set it for a type that does not know its
    /// own address, such as GString.
    bool movable = std::is_trivially_copyable_v<T>;

private:
    static constexpr std::size_t kMaxBytes = std::numeric_limits<std::ptrdiff_t>::max();

    void make_room(long needed)
    {
        if (needed <= limit)
            return;
        constexpr long kMost = std::numeric_limits<long>::max();
        if (limit >= kLinearUpTo && limit <= kMost - limit / 2)
            needed = std::max(needed, limit + limit / 2);
        const long rest = needed % delta;
        setLimit(rest == 0 || needed > kMost - delta ? needed : needed + delta - rest);
    }
    void move_to(T* room)
    {
        try {
            if constexpr (std::is_nothrow_move_constructible_v<T> ||
                          !std::is_copy_constructible_v<T>)
                std::uninitialized_move_n(items, count, room);
            else
                std::uninitialized_copy_n(items, count, room);
        } catch (...) {
            zmr::free_block(room);
            throw;
        }
        std::destroy_n(items, count);
        zmr::free_block(std::exchange(items, room));
    }
};
