#pragma once

#include "foundation/GSortedCollection.h"
#include "graphics/RGB_Color.h"

#include <cstdint>

/// Colours by palette index, in the order of the indices, each index once. Owns its entries; a copy
/// has entries of its own. Streamed with the classes that keep one. User-interface thread.
class ZMR_GV_API PaletteCollection : public GSortedCollection {
    G_DECLARE_CLASS(PaletteCollection)

public:
    struct Entry {
        std::int32_t index;
        RGB_Color color;
    };

    PaletteCollection() : GSortedCollection(0, 4, 1) {}
    PaletteCollection(const PaletteCollection& other);
    PaletteCollection& operator=(const PaletteCollection& other);
    ~PaletteCollection() override;

    /// Sets the colour of `index`, which is kept as 32 bits.
    void add_entry(long index, const RGB_Color& color);
    /// The position of the entry of `index`, or -1. A binary search.
    [[nodiscard]] long find_color(long index) const;
    /// The entry at a position; null outside the collection.
    [[nodiscard]] const Entry* at(long position) const
    {
        return static_cast<const Entry*>(GCollection::at(position));
    }

    const void* keyOf(const void* item) const override;
    int compare(const void* key1, const void* key2) const override;
    void freeItem(void* item) override;
    void write_item(void* item, opstream& out) override;
    /// Reads one entry. What the whole collection makes of a stream whose indices do not ascend is
    /// put in order by `read`.
    void* read_item(ipstream& in) override;
    /// Reads the entries; of several with one index the last one counts.
    void read(ipstream& in) override;

private:
    void copy_entries(const PaletteCollection& other);
};
