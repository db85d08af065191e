#include "foundation/GStringCollection.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <cstring>

G_DEFINE_CLASS(GStringCollection, GSortedCollection);

GStringCollection::~GStringCollection()
{
    empty();
}

int GStringCollection::compare(const void* key1, const void* key2) const
{
    return std::strcmp(static_cast<const char*>(key1), static_cast<const char*>(key2));
}

void GStringCollection::freeItem(void* item)
{
    gfreestr(static_cast<char*>(item));
}

void GStringCollection::write_item(void* item, opstream& out)
{
    out.writeString(static_cast<const char*>(item));
}

void* GStringCollection::read_item(ipstream& in)
{
    return in.readString();
}
