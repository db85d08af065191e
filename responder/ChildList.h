#pragma once

#include "platform/Export.h"

#include <cstdint>

class GResponder;

namespace zmr {

/// A child's note of where it stands: ChildList::place_at, as it was when it came into the list or
/// was last looked for. A base, because there it lies in bytes that the base in front of it leaves
/// unused.
class ListPlace {
protected:
    mutable std::uint16_t place_ = 0;
};

/// The dense array of a responder's children, which it does not own. There may be room at both
/// ends, so that inserting and removing at an end cost no move of the others. It grows by 4 while
/// it is small and doubles later; an empty one that never held a child has no array.
class ZMR_GV_API ChildList {
public:
    static constexpr int kMaxCount = 32767;

    ChildList() = default;
    ~ChildList()
    {
        if (slots_ != nullptr)
            clear();
    }
    ChildList(const ChildList&) = delete;
    ChildList& operator=(const ChildList&) = delete;

    [[nodiscard]] int count() const { return count_; }
    /// `index` lies in 0 to count() - 1.
    [[nodiscard]] GResponder* operator[](int index) const { return slots_[index].child; }
    /// Has the processor fetch the child, if there is one: the lines of the cache with what an
    /// event looks at, which are two where the allocator puts it so.
    void prefetch(int index) const
    {
        if (index >= count_)
            return;
        const auto* child = reinterpret_cast<const char*>(slots_[index].child);
        __builtin_prefetch(child);
        __builtin_prefetch(child + kLookedAtBytes);
    }
    /// The lowest index of `child`; count() when it is missing. Linear.
    [[nodiscard]] int index_of(const GResponder* child) const
    {
        return count_ > 0 && slots_[0].child == child ? 0 : index_behind_first(child);
    }
    /// The same for a child that has the note `place`: a few steps where others have come and gone
    /// since then at the ends or evenly spread, else linear.
    [[nodiscard]] int index_of(const GResponder* child, std::uint16_t place) const;
    /// What a child notes that stands at `index`. It stays the same while others come and go at the
    /// ends.
    [[nodiscard]] std::uint16_t place_at(int index) const
    {
        const Room& room = slots_[-1].room;
        return static_cast<std::uint16_t>(room.first_place + room.front + index);
    }

    /// Appends when there is room, below kMaxCount children; else false, with nothing changed.
    [[nodiscard]] bool append_in_room(GResponder* child)
    {
        if (slots_ == nullptr || count_ == room().capacity - room().front)
            return false;
        slots_[count_++].child = child;
        return true;
    }
    /// Inserts in front of `index`, which lies in 0 to count(), below kMaxCount children. Throws
    /// OutOfMemory_Exception with nothing changed.
    void insert_at(int index, GResponder* child)
    {
        if (index != count_ || !append_in_room(child))
            insert_within(index, child);
    }
    /// `index` lies in 0 to count() - 1. Gives half of the memory back when a quarter or less of it
    /// is used, but not of a small array.
    void remove_at(int index)
    {
        if (index != 0 || count_ > kSmall) {
            remove_within(index);
            return;
        }
        // When the only one goes, all room comes to lie behind the front again.
        move_front(count_ == 1 ? -room().front : 1);
        --count_;
    }
    /// Takes out the entry of `child` that index_of tells, as remove_at does; false when there is
    /// none.
    [[nodiscard]] bool remove(const GResponder* child, std::uint16_t place)
    {
        if (count_ == 0 || slots_[0].child != child)
            return remove_behind_first(child, place);
        remove_at(0);
        return true;
    }
    void put_at(int index, GResponder* child) { slots_[index].child = child; }
    void swap(int index1, int index2);
    /// Moves `number` entries from index `from` to index `to`, over what lies there.
    void move_entries(int to, int from, int number);

    /// Takes the array of `other` as it is, in place of its own one, which is lost: one of the two
    /// has to `forget` it, or to take a copy of its own by `own_array`, before it changes or ends.
    void share(const ChildList& other);
    /// Becomes empty and frees nothing.
    void forget();
    /// Becomes empty and frees the array.
    void clear();
    /// Copies a shared array. Throws OutOfMemory_Exception with nothing changed.
    void own_array();

private:
    static constexpr int kLookedAtBytes = 40;  ///< From the front of a responder on.
    static constexpr int kSmall = 16;          ///< Up to here blocks grow by 4.
    static constexpr int kKept = 64;           ///< And up to here they are not given back.
    static constexpr int kSearched = 128;      ///< Up to here a search is as fast as a guess.

    /// Where the list lies in its block, in children.
    struct Room {
        std::uint16_t front;  ///< So many slots lie in front of the list.
        std::uint16_t capacity;
        std::uint16_t first_place;  ///< Of the block's first slot.
        std::uint16_t most;         ///< Children that there were, while many are taken out.
    };
    union Slot {
        GResponder* child;
        Room room;
    };

    [[nodiscard]] static int block_entries(int count);
    /// Of a list with a block.
    [[nodiscard]] Room& room() { return slots_[-1].room; }
    [[nodiscard]] Slot* block() { return slots_ - 1 - room().front; }
    [[nodiscard]] int capacity() { return room().capacity; }
    [[nodiscard]] int index_between(int from, int end, const GResponder* child) const;
    [[nodiscard]] int index_behind_first(const GResponder* child) const;
    void set_room(int front, int capacity);
    /// Lets the list begin `by` slots further on in its block.
    void move_front(int by)
    {
        Room moved = room();
        moved.front = static_cast<std::uint16_t>(moved.front + by);
        slots_ += by;
        room() = moved;
    }
    void insert_within(int index, GResponder* child);
    [[nodiscard]] bool remove_behind_first(const GResponder* child, std::uint16_t place);
    void remove_within(int index);
    void move_list(int by);
    void grow(int index);
    void give_back();
    void move_into_block_of(int capacity, int front);

    /// The first child. The slot in front of it tells the room and moves with it: a list costs its
    /// owner a pointer and a count.
    Slot* slots_ = nullptr;
    std::int16_t count_ = 0;
};

}  // namespace zmr
