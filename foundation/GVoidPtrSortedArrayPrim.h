#pragma once

#include "platform/Export.h"

/// A sorted array of pointers that it does not own, each once; the order is `compare`'s.
class ZMR_GV_API GVoidPtrSortedArrayPrim {
public:
    GVoidPtrSortedArrayPrim() = default;
    GVoidPtrSortedArrayPrim(const GVoidPtrSortedArrayPrim& other);
    GVoidPtrSortedArrayPrim& operator=(const GVoidPtrSortedArrayPrim& other);
    virtual ~GVoidPtrSortedArrayPrim();

    /// Inserts `item` unless an equal one is there; returns the index of either.
    long insert_item(const void* item);
    /// The index of an equal item, or -1.
    [[nodiscard]] long index_of(const void* item) const;
    /// Takes out the item at `index`; outside the array nothing happens.
    void at_remove(long index);

    const void** items = nullptr;
    long count = 0;

protected:
    /// Negative, 0 or positive. Here: the order of addresses.
    virtual int compare(const void* item1, const void* item2) const;

private:
    [[nodiscard]] bool search(const void* item, long& index) const;
    long limit_ = 0;
};
