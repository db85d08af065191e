#pragma once

#include "foundation/GSortedCollection.h"

class ODB_ObjectAttribute;

/// A list of attributes with a stream format in which each is a block of its own, so that one of an
/// unknown class does not spoil the rest: it is kept as its bytes and written back unchanged.
/// Sorted by class identity when items are inserted; read ones keep the order of the stream.
class ZMR_GV_API ODB_AttributesArray : public GSortedCollection {
    G_DECLARE_CLASS(ODB_AttributesArray)

public:
    ODB_AttributesArray();
    ODB_AttributesArray(const ODB_AttributesArray& other) = default;
    ODB_AttributesArray& operator=(const ODB_AttributesArray& other) = default;

    void read(ipstream& in) override;
    void write(opstream& out) override;
    const void* keyOf(const void* item) const override;
    int compare(const void* key1, const void* key2) const override;

    /// The attribute at `index`, which must be in the array.
    [[nodiscard]] ODB_ObjectAttribute& at(long index) const;
};
