#pragma once

#include "foundation/GSortedCollection.h"
#include "foundation/GStringCollection.h"

#include <vector>

class ODB_ContentsFilter;
class ODB_Mediator;

/// A list of mediators in the byte order of their names; equal names from several directories stand
/// side by side. It does not own them.
class ZMR_GV_API ODB_MediatorsArray : public GSortedCollection {
    G_DECLARE_CLASS(ODB_MediatorsArray)

public:
    ODB_MediatorsArray();
    ODB_MediatorsArray(const ODB_MediatorsArray& other);
    /// Takes the pointers over in their present order.
    ODB_MediatorsArray& operator=(const ODB_MediatorsArray& other);
    ~ODB_MediatorsArray() override;

    const void* keyOf(const void* item) const override;
    int compare(const void* key1, const void* key2) const override;
    /// Deletes the mediator; runs only when a caller made the array the owner.
    void freeItem(void* item) override;

    /// The mediator at `index`, which must be in the array.
    [[nodiscard]] ODB_Mediator& at(long index) const;
    void at_remove(long index);
    /// Inserts many at once, in their places: n log n, where one by one would move the array's end
    /// for each of them.
    void insert_all(std::vector<ODB_Mediator*> mediators);
    /// The index of a mediator of that name, or -1.
    [[nodiscard]] long find(const GString& key) const;
    /// Puts the names into `result`, emptied first, which then owns its texts.
    void get_names(GStringCollection& result) const;
    /// Takes out the mediators that the filter refuses; asks from the last to the first. Linear.
    /// When the filter throws, those that it has refused are out.
    void apply_filter(const ODB_ContentsFilter& filter);
};
