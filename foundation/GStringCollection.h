#pragma once

#include "foundation/GSortedCollection.h"
#include "foundation/GString.h"

/// A sorted collection of texts made by gnewstr, in the order of their unsigned bytes, equal texts
/// once. Owned texts are freed by gfreestr.
class ZMR_GV_API GStringCollection : public GSortedCollection {
    G_DECLARE_CLASS(GStringCollection)

public:
    GStringCollection() = default;
    GStringCollection(long limit, long delta, unsigned char owns)
        : GSortedCollection(limit, delta, owns)
    {
    }
    GStringCollection(const GStringCollection&) = default;
    GStringCollection& operator=(const GStringCollection&) = default;
    ~GStringCollection() override;

    [[nodiscard]] const char* at(long index) const
    {
        return static_cast<const char*>(GCollection::at(index));
    }
    int compare(const void* key1, const void* key2) const override;
    void freeItem(void* item) override;
    void write_item(void* item, opstream& out) override;
    void* read_item(ipstream& in) override;
};
