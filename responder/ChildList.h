#pragma once

#include "platform/Export.h"

#include <bit>
#include <cstddef>
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
        if (has_block())
            clear();
    }
    ChildList(const ChildList&) = delete;
    ChildList& operator=(const ChildList&) = delete;

    [[nodiscard]] int count() const { return slots_ != nullptr ? slots_[-1].room.count : 0; }
    /// False when the list never held a child, which needs no look at other memory than its own.
    [[nodiscard]] bool has_block() const { return slots_ != nullptr; }
    /// `index` lies in 0 to count() - 1.
    [[nodiscard]] GResponder* operator[](int index) const { return slots_[index].child; }
    /// Has the processor fetch the child, if there is one: the lines of the cache with what an
    /// event looks at, which are two where the allocator puts it so.
    void prefetch(int index) const
    {
        if (index >= count())
            return;
        const auto* child = reinterpret_cast<const char*>(slots_[index].child);
        __builtin_prefetch(child);
        __builtin_prefetch(child + kLookedAtBytes);
    }
    /// The lowest index of `child`; count() when it is missing. Linear.
    [[nodiscard]] int index_of(const GResponder* child) const
    {
        return count() > 0 && slots_[0].child == child ? 0 : index_behind_first(child);
    }
    /// The same for a child that has the note `place`: a few steps where others have come and gone
    /// since then at the ends or evenly spread, else linear.
    [[nodiscard]] int index_of(const GResponder* child, std::uint16_t place) const;
    /// What a child notes that stands at `index`. It stays the same while others come and go at the
    /// ends.
    [[nodiscard]] std::uint16_t place_at(int index) const
    {
        return static_cast<std::uint16_t>(room().first_place + index);
    }

    /// Appends when there is room, below kMaxCount children; else false, with nothing changed.
    [[nodiscard]] bool append_in_room(GResponder* child)
    {
        if (slots_ == nullptr)
            return false;
        const Room before = room();
        if (before.behind == 0)
            return false;
        slots_[-1].room = before + Room::kLastCame;
        slots_[before.count].child = child;
        return true;
    }
    /// Inserts in front of `index`, which lies in 0 to count(), below kMaxCount children. Throws
    /// OutOfMemory_Exception with nothing changed.
    void insert_at(int index, GResponder* child)
    {
        if (index != count() || !append_in_room(child))
            insert_within(index, child);
    }
    /// `index` lies in 0 to count() - 1. Gives half of the memory back when a quarter or less of it
    /// is used, but not of a small array.
    void remove_at(int index)
    {
        if (index != 0 || count() > kSmall)
            remove_within(index);
        else
            remove_first();
    }
    /// Takes out the entry of `child` that index_of tells, as remove_at does; false when there is
    /// none.
    [[nodiscard]] bool remove(const GResponder* child, std::uint16_t place)
    {
        if (count() == 0 || slots_[0].child != child)
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

    /// Where the list lies in its block, in children. It is written as a whole, so that the usual
    /// changes are one addition, and read in parts.
    struct Room {
        std::uint16_t front;        ///< So many slots lie in front of the list,
        std::uint16_t behind;       ///< and behind it.
        std::uint16_t count;        ///< Children.
        std::uint16_t first_place;  ///< Of the first child, or where it would stand.

        [[nodiscard]] int capacity() const { return front + count + behind; }
        /// The numbers lie in the order of their weight, and only the last one overflows.
        Room operator+(std::uint64_t step) const
        {
            return std::bit_cast<Room>(std::bit_cast<std::uint64_t>(*this) + step);
        }

        // A child more or less at an end of the list.
        static constexpr std::uint64_t kFirstWent =
            (std::uint64_t{1} << 48) - (std::uint64_t{1} << 32) + 1;
        static constexpr std::uint64_t kFirstCame = ~kFirstWent + 1;
        static constexpr std::uint64_t kLastCame =
            (std::uint64_t{1} << 32) - (std::uint64_t{1} << 16);
        static constexpr std::uint64_t kLastWent = ~kLastCame + 1;
    };
    static_assert(sizeof(Room) == sizeof(std::uint64_t));
    union Slot {
        GResponder* child;
        Room room;
        std::int64_t most;
    };

    [[nodiscard]] static int block_entries(int count);
    [[nodiscard]] static int slots_in_front(int capacity) { return capacity > kSearched ? 2 : 1; }
    [[nodiscard]] static std::size_t BytesOf(int slots)
    {
        return static_cast<std::size_t>(slots) * sizeof(Slot);
    }
    [[nodiscard]] static std::size_t BytesOfBlock(int capacity);
    [[nodiscard]] static Room MakeRoom(int front, int behind, int count, int first_place)
    {
        // One store: the next change, which reads the whole, would wait for the end of several.
        return std::bit_cast<Room>(static_cast<std::uint64_t>(first_place) << 48 |
                                   static_cast<std::uint64_t>(count) << 32 |
                                   static_cast<std::uint64_t>(behind) << 16 |
                                   static_cast<std::uint64_t>(front));
    }
    /// Of a list with a block.
    [[nodiscard]] const Room& room() const { return slots_[-1].room; }
    [[nodiscard]] Slot* block() const
    {
        return slots_ - slots_in_front(room().capacity()) - room().front;
    }
    /// Of a list that may have more than kSearched children.
    [[nodiscard]] std::int64_t& most() const { return slots_[-room().front - 2].most; }
    [[nodiscard]] int index_between(int from, int end, const GResponder* child) const;
    [[nodiscard]] int index_behind_first(const GResponder* child) const;
    /// Lets the list begin `by` slots further on in its block, with `room`.
    void move_front(int by, Room room)
    {
        slots_ += by;
        slots_[-1].room = room;
    }
    void remove_first()
    {
        const Room before = room();
        // When the only one goes, all room comes to lie behind the front again.
        if (before.count == 1)
            move_front(-before.front,
                       MakeRoom(0, before.capacity(), 0, before.first_place - before.front));
        else
            move_front(1, before + Room::kFirstWent);
    }
    void insert_within(int index, GResponder* child);
    [[nodiscard]] bool remove_behind_first(const GResponder* child, std::uint16_t place);
    void remove_within(int index);
    void move_list(int by);
    void grow(int index);
    void give_back();
    void resize(int capacity);
    void move_into_block_of(int capacity, int front);

    /// The first child. The slot in front of it tells the room and moves with it: a list costs its
    /// owner a pointer. A block for more than kSearched children has one slot more at its front:
    /// how many there were, while many are taken out.
    Slot* slots_ = nullptr;
};

}  // namespace zmr
