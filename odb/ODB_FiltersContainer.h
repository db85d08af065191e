#pragma once

#include "foundation/GCollection.h"
#include "odb/ODB_ContentsFilter.h"

/// A filter that wants what all the filters in it want; an empty one wants everything. Owns its
/// filters, which are asked from the first to the first refusal. A container may lie in another
/// one, but never, however deep, in itself.
///
/// A container is two streamable objects in one: as a pointer to GStreamable pass it by its
/// ODB_ContentsFilter part, which is also the one that streams and the class registry give.
class ZMR_GV_API ODB_FiltersContainer : public ODB_ContentsFilter, public GCollection {
    G_DECLARE_CLASS(ODB_FiltersContainer)

public:
    ODB_FiltersContainer() = default;
    ODB_FiltersContainer(const ODB_FiltersContainer&) = delete;
    ODB_FiltersContainer& operator=(const ODB_FiltersContainer&) = delete;
    ~ODB_FiltersContainer() override;

    unsigned char accept(const ODB_Mediator& mediator) override;
    /// The filter at `index`, which must be in the container and not null.
    [[nodiscard]] ODB_ContentsFilter& at(long index) const;
    /// Adds the filter at the end and takes it over.
    void insert(ODB_ContentsFilter* filter);

    void shut_down() override;
    /// An unknown class among the filters throws what readPointer throws. The filters read so far
    /// are there then.
    void read(ipstream& in) override;
    void write(opstream& out) override;
    [[nodiscard]] GStreamable* clone(bool deep) override;
    void enableSmartPointers(bool enable) override;
    void freeItem(void* item) override;
    void write_item(void* item, opstream& out) override;
    void* read_item(ipstream& in) override;
};
