#include "odb/ODB_UnknownAttribute.h"

G_DEFINE_CLASS(ODB_UnknownAttribute, ODB_ObjectAttribute);

ODB_UnknownAttribute::ODB_UnknownAttribute(void* content, long size)
    : content_(static_cast<unsigned char*>(content)), size_(size)
{
}
