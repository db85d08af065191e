#include "odb/ODB_InternalObject.h"

#include "foundation/GStaticText.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "odb/ObjectDatabase.h"

G_DEFINE_CLASS(ODB_InternalObject, ODB_Mediator);

namespace {

constexpr unsigned char kVersion = 3;  // 3: `naming` as a byte

constinit const zmr::StaticText kDefaultType(".ODB default object's resource type");

/// Two names in one place; their types are not compared.
bool in_same_place(const GResourceFullName& a, const GResourceFullName& b)
{
    return a.path() == b.path() && a.name == b.name;
}

}  // namespace

ODB_InternalObject::ODB_InternalObject() = default;

ODB_InternalObject::ODB_InternalObject(const GString& name, const GString& type)
    : resource_name_(GResourcePath(), name, type), naming_(naming_fixed_name)
{
}

ODB_InternalObject::ODB_InternalObject(const GResourceFullName& place)
    : resource_name_(place), naming_(naming_fixed_place)
{
}

ODB_InternalObject::~ODB_InternalObject() = default;

const GString& ODB_InternalObject::GetDefaultResourceType()
{
    static const GString type = zmr::shared_text(kDefaultType);
    return type;
}

GResourceFullName ODB_InternalObject::get_resource_name()
{
    if (naming_ == naming_own_place)
        resource_name_ =
            GResourceFullName(get_DB_resname().path(), get_DB_key(), GetDefaultResourceType());
    else if (naming_ == naming_fixed_name)
        static_cast<GResourcePath&>(resource_name_) = get_DB_resname().path();
    return resource_name_;
}

void ODB_InternalObject::store_object(const GStreamable* object)
{
    ODB_Mediator::store_object(object);
    if (resource_name_.is_empty())
        resource_name_ =
            GResourceFullName(get_DB_resname().path(), get_DB_key(), GetDefaultResourceType());
    if (object != nullptr) {
        get_DB()->put(const_cast<GStreamable*>(object), get_resource_name(), false);
        return;
    }
    char* const class_name = get_DB()->read_class_name(get_resource_name());
    set_object_class_name(GString(class_name));
    gfreestr(class_name);
}

GStreamable* ODB_InternalObject::get_object()
{
    return get_DB()->get(get_resource_name(), false);
}

void ODB_InternalObject::remove_object()
{
    ODB_Mediator::remove_object();
    get_DB()->remove(get_resource_name());
}

void ODB_InternalObject::copy_object_from(ODB_Mediator& source)
{
    ODB_Mediator::copy_object_from(source);
    auto& original = static_cast<ODB_InternalObject&>(source);
    if (in_same_place(get_resource_name(), get_DB_resname()) &&
        in_same_place(original.get_resource_name(), original.get_DB_resname()))
        return;  // copied with the other resources of that name
    get_DB()->copy_from(get_resource_name(), *original.get_DB(), original.get_resource_name());
}

void ODB_InternalObject::read(ipstream& in)
{
    const unsigned char version = in.readByte();
    ODB_Mediator::read(in);
    GResourceFullName name;
    std::int32_t naming = naming_own_place;
    if (version == 0) {
        in >> name.name;
        in >> name.type;
        naming = naming_fixed_name;
    } else {
        in >> name;
        if (version == 2)
            naming = in.readByte() != 0 ? naming_fixed_place : naming_own_place;
        else if (version >= 3)
            naming = in.readByte();
    }
    // An own place follows from the mediator's name: a listing of many keeps no second copy of it.
    resource_name_ = naming == naming_own_place ? GResourceFullName() : name;
    naming_ = naming;
}

void ODB_InternalObject::write(opstream& out)
{
    out.writeByte(kVersion);
    ODB_Mediator::write(out);
    out << resource_name_;
    out.writeByte(static_cast<unsigned char>(naming_));
}

/// As by a stream, without the stream: libraries are copied by it.
GStreamable* ODB_InternalObject::clone(bool deep)
{
    if (getMetaClass() != &metaclass_)
        return ODB_Mediator::clone(deep);
    auto* const copy = new ODB_InternalObject;
    copy->set_object_class_name(get_object_class_name());
    if (naming_ != naming_own_place)
        copy->resource_name_ = resource_name_;
    copy->naming_ = naming_;
    return copy;
}
