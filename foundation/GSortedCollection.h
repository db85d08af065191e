#pragma once

#include "foundation/GCollection.h"

/// A collection kept in the order of its items' keys. By default the key of an item is the item's
/// address, and keys are compared as unsigned addresses.
class ZMR_GV_API GSortedCollection : public GCollection {
    G_DECLARE_CLASS(GSortedCollection)

public:
    GSortedCollection() = default;
    GSortedCollection(long limit, long delta, unsigned char owns) : GCollection(limit, delta, owns)
    {
    }

    /// Reads the duplicates flag and the items. Items that don't stand in the order of their keys
    /// here (addresses differ from run to run) are sorted, and nulls are taken out. Equal keys of
    /// damaged data stay: the stream may refer to such an item again.
    void read(ipstream& in) override;
    void write(opstream& out) override;

    /// The key of an item.
    virtual const void* keyOf(const void* item) const;
    /// Negative, 0 or positive, as `key1` comes before, equals or comes after `key2`.
    virtual int compare(const void* key1, const void* key2) const;
    /// Binary search: true when an item with that key is there. `index` receives the first of them,
    /// or the place where the key belongs.
    virtual bool search(const void* key, long& index) const;

    /// The index of that very item, searched by its key; -1 when it is missing. With duplicates all
    /// items of equal key are looked at.
    long v_index_of(const void* item) const override;
    /// Inserts at its place, behind items of equal key, and returns the index. An item whose key is
    /// there already is not taken, and the present one's index returned, unless duplicates are
    /// allowed. Null is not taken: -1.
    long v_insert(void* item) override;

    bool duplicates = false;  ///< Items with equal keys may stand side by side.

private:
    void restore_order();
    [[nodiscard]] long end_of_equals(const void* key, long first) const;
};
