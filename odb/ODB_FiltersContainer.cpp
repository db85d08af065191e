#include "odb/ODB_FiltersContainer.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <cassert>

G_DEFINE_CLASS(ODB_FiltersContainer, ODB_ContentsFilter, GCollection);

namespace {

// The items are kept as addresses of this type.
ODB_ContentsFilter* filter_of(void* item)
{
    return static_cast<ODB_ContentsFilter*>(item);
}

}  // namespace

ODB_FiltersContainer::~ODB_FiltersContainer()
{
    empty();
}

unsigned char ODB_FiltersContainer::accept(const ODB_Mediator& mediator)
{
    for (long i = 0; i < count; ++i) {
        ODB_ContentsFilter* const filter = filter_of(items[i]);
        if (filter != nullptr && filter->accept(mediator) == 0)
            return 0;
    }
    return 1;
}

ODB_ContentsFilter& ODB_FiltersContainer::at(long index) const
{
    assert(index >= 0 && index < count && items[index] != nullptr);
    return *filter_of(items[index]);
}

void ODB_FiltersContainer::insert(ODB_ContentsFilter* filter)
{
    v_insert(filter);
}

void ODB_FiltersContainer::shut_down()
{
    GCollection::shut_down();
    ODB_ContentsFilter::shut_down();
}

void ODB_FiltersContainer::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    GCollection::read(in);
    owns_items = 1;  // whatever the data says: each filter was claimed as it was read
}

void ODB_FiltersContainer::write(opstream& out)
{
    out.writeByte(0);
    GCollection::write(out);
}

GStreamable* ODB_FiltersContainer::clone(bool deep)
{
    return ODB_ContentsFilter::clone(deep);
}

void ODB_FiltersContainer::enableSmartPointers(bool enable)
{
    ODB_ContentsFilter::enableSmartPointers(enable);
    GCollection::enableSmartPointers(enable);
}

void ODB_FiltersContainer::freeItem(void* item)
{
    GStreamable::destroy(filter_of(item));
}

void ODB_FiltersContainer::write_item(void* item, opstream& out)
{
    out.writeStreamablePointer(filter_of(item), false);
}

void* ODB_FiltersContainer::read_item(ipstream& in)
{
    void* const filter = in.readPointer(ODB_ContentsFilter::gTypeInfo_);
    owns_items = 1;  // so that it is freed also when a later one throws
    in.claim();
    return filter;
}
