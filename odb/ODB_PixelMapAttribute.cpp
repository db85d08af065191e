#include "odb/ODB_PixelMapAttribute.h"

#include "foundation/GStringCollection.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "graphics/PixelMap.h"
#include "graphics/PixelMapTools.h"
#include "odb/ObjectDatabase.h"
#include "store/GResourceIterators.h"

#include <memory>

G_DEFINE_CLASS(ODB_PixelMapAttribute, ODB_ObjectAttribute);

void ODB_PixelMapAttribute::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    ODB_ObjectAttribute::read(in);
}

void ODB_PixelMapAttribute::write(opstream& out)
{
    out.writeByte(0);
    ODB_ObjectAttribute::write(out);
}

void ODB_PixelMapAttribute::get_names(GStringCollection& result) const
{
    result.empty();
    result.owns_items = 1;
    const GString prefix = GString(getClassName()) + ".";
    GResourceFullName name;
    get_DB_resname(name);
    // Types belong to the whole file: each may be that of another entry's picture.
    for (GResourceTypeIterator type(*get_DB()); type.index >= 0; --type) {
        if (!type.element().view().starts_with(prefix.view()))
            continue;
        name.type = type.element();
        if (!get_DB()->exist(name))
            continue;
        GString picture = name.type;
        picture.extract(prefix.length());
        result.v_insert(gnewstr(picture.text));
    }
}

PixelMap* ODB_PixelMapAttribute::get_map(const char* name) const
{
    GResourceFullName resource;
    get_map_resname(resource, name);
    GStreamable* const stored = get_DB()->get(resource, false);
    auto* const map = zmr::class_cast<PixelMap>(stored);
    if (map == nullptr)
        GStreamable::Destroy(stored);
    return map;
}

void ODB_PixelMapAttribute::add_map(const char* name, PixelMap* map)
{
    if (name == nullptr || map == nullptr)
        return;
    GResourceFullName resource;
    get_map_resname(resource, name);
    get_DB()->put(map, resource, false);
}

void ODB_PixelMapAttribute::add_map(const char* name, const char* file)
{
    const std::unique_ptr<PixelMap> map(PixelMapTools::LoadFromFile(file));
    add_map(name, map.get());
}

void ODB_PixelMapAttribute::remove_map(const char* name)
{
    GResourceFullName resource;
    get_map_resname(resource, name);
    get_DB()->remove(resource);
}

void ODB_PixelMapAttribute::get_map_resname(GResourceFullName& name, const char* map) const
{
    get_DB_resname(name);
    name.type = GString(getClassName()) + "." + map;
}
