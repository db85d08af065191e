#pragma once

#include "foundation/GCollection.h"

/// A collection of `T*`, which it deletes when it owns them. Not streamed.
template <class T>
class TGCollection : public GCollection {
public:
    TGCollection() = default;
    TGCollection(long limit, long delta, unsigned char owns) : GCollection(limit, delta, owns) {}
    ~TGCollection() override { empty(); }

    [[nodiscard]] T* at(long index) const { return static_cast<T*>(GCollection::at(index)); }
    void freeItem(void* item) override { delete static_cast<T*>(item); }
};
