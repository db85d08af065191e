#pragma once

#include "foundation/GStreamable.h"

/// A growing array of pointers that can own and stream its items. Items are `GStreamable*` unless a
/// derived class overrides freeItem, write_item and read_item. An index outside the array is
/// ignored by the operations that change it, and gives null on reading through `at`.
class ZMR_GV_API GCollection : public GStreamable {
    G_DECLARE_CLASS(GCollection)

public:
    GCollection() : GCollection(0, 16, 1) {}
    /// Room for `limit` items, growing by at least `delta` (values below 1 count as 1). `owns` not
    /// 0: items are freed by freeItem when the collection is emptied or ends.
    GCollection(long limit, long delta, unsigned char owns);
    /// Copies the pointers; the copy owns nothing.
    GCollection(const GCollection& other);
    /// Frees what this collection owns, then as above. `other` must not hold such an item.
    GCollection& operator=(const GCollection& other);
    /// Frees owned items from the last to the first, by GStreamable::destroy: a derived class with
    /// another freeItem calls `empty` in its own destructor.
    ~GCollection() override;

    /// Frees owned items and takes all out.
    void shut_down() override;
    /// Reads what `write` wrote in place of the present items: ownership, growth step and items. An
    /// owned item that the stream hands out twice is refused with GStreamException. After an
    /// exception the items read so far are there. Memory grows with the items that come.
    void read(ipstream& in) override;
    void write(opstream& out) override;

    /// Takes the null items out.
    virtual void pack();
    /// Sets the room; never below the count.
    virtual void setLimit(long new_limit);
    /// The index of `item`, -1 when it is missing. Linear.
    virtual long v_index_of(const void* item) const;
    /// Inserts before `index`; an index outside 0 to `count` inserts at the nearer end. More than
    /// 2^28 - 1 items throw OutOfMemory_Exception.
    virtual void v_at_insert(long index, void* item);
    virtual void v_at_insert_range(long index, void* const* range, long range_count);
    /// Puts `item` in place of the one at `index`, which is not freed.
    virtual void v_at_put(long index, void* item);
    /// Adds at the end; returns the index.
    virtual long v_insert(void* item);
    /// Takes the item out without freeing it.
    virtual void v_at_remove(long index);
    virtual void v_at_remove_range(long index, long range_count);
    /// Takes `item` out without freeing it; a missing item is ignored.
    virtual void v_remove(void* item);
    /// Frees one item: GStreamable::destroy.
    virtual void freeItem(void* item);
    virtual void write_item(void* item, opstream& out);
    /// Reads what write_item wrote, a byte at least. With `owns_items` an item that comes through
    /// ipstream::readPointer has to be claimed.
    virtual void* read_item(ipstream& in);

    /// Takes the item out and frees it when the collection owns its items.
    void at_free(long index);
    /// Takes all items out, from the last to the first, and frees them when they are owned.
    void empty();
    [[nodiscard]] void* at(long index) const
    {
        return index >= 0 && index < count ? items[index] : nullptr;
    }

    void** items = nullptr;
    long count = 0;
    unsigned char owns_items = 1;

protected:
    long limit_ = 0;
    long delta_ = 16;

private:
    void make_room(long more);
    long append_item(void* item);
};
