#include "odb/ODB_Mediator.h"

#include "foundation/GFile.h"
#include "foundation/OwnedObject.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "graphics/PixelMap.h"
#include "graphics/PixelMapTools.h"
#include "odb/ODB_AttributesArray.h"
#include "odb/ODB_ObjectAttribute.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ObjectDatabase.h"
#include "store/GResourceIterators.h"

G_DEFINE_CLASS(ODB_Mediator, GStreamable);

namespace {

constexpr unsigned char kVersion = 3;  // 3: nothing behind the class name

/// The items that older versions carried behind the class name. They are dropped: attributes are
/// resources of their own, and a file's name belongs to the classes that need one.
void skip_items_of_version(unsigned char version, ipstream& in)
{
    if (version >= kVersion)
        return;
    GFile file;
    if (version == 0 || in.readByte() != 0)
        in >> file;
    if (version == 2)
        return;
    if (in.readByte() != 0) {
        ODB_AttributesArray attributes;
        attributes.owns_items = 1;
        attributes.read(in);
    }
}

}  // namespace

ODB_Mediator::ODB_Mediator() = default;
ODB_Mediator::ODB_Mediator(const ODB_Mediator& other) = default;
ODB_Mediator& ODB_Mediator::operator=(const ODB_Mediator& other) = default;
ODB_Mediator::~ODB_Mediator() = default;

bool ODB_Mediator::IsReference(const ODB_Mediator* mediator)
{
    return zmr::class_cast<ODB_ReferenceToObject>(mediator) != nullptr;
}

bool ODB_Mediator::operator==(const ODB_Mediator& other) const
{
    if (this == &other)
        return true;
    return getTypeInfo_() == other.getTypeInfo_() && equals(other);
}

bool ODB_Mediator::equals(const ODB_Mediator& other) const
{
    return DB_resname_ == other.DB_resname_;
}

void ODB_Mediator::read(ipstream& in)
{
    const unsigned char version = in.readByte();
    GString class_name;
    in >> class_name;
    skip_items_of_version(version, in);
    set_object_class_name(class_name);
}

void ODB_Mediator::write(opstream& out)
{
    out.writeByte(kVersion);
    out << object_class_name_;
}

void ODB_Mediator::store_object(const GStreamable* object)
{
    object_class_identifier_ = object == nullptr ? nullptr : object->getMetaClass();
    object_class_name_ = object == nullptr ? "" : object_class_identifier_->name;
}

void ODB_Mediator::remove_object() {}

void ODB_Mediator::copy_object_from(ODB_Mediator&) {}

void ODB_Mediator::set_object_class_name(const GString& name)
{
    object_class_name_ = name;
    object_class_identifier_ = GMetaClass::FindByName(name.text);
}

void ODB_Mediator::set_DB(ObjectDatabase* database)
{
    DB_ = database;
    if (database != nullptr)
        database->was_attached_to_ = true;
}

void ODB_Mediator::set_DB_resname(const GResourceFullName& name)
{
    DB_resname_ = name;
}

GResourceFullName ODB_Mediator::resource_of_type(const GString& type) const
{
    return {DB_resname_.path(), DB_resname_.name, type};
}

void ODB_Mediator::set_icon(const char* file)
{
    set_icon(PixelMapTools::LoadFromFile(file));
}

void ODB_Mediator::set_icon(PixelMap* map)
{
    const bool was_loaded = icon_ != nullptr;
    if (map == nullptr || map != icon_.get())
        icon_.reset(map);
    if (icon_ != nullptr)
        save_icon(icon_.get());
    if (was_loaded || icon_ != nullptr)
        modified();
}

const PixelMap* ODB_Mediator::get_icon() const
{
    if (icon_ == nullptr)
        load_icon();
    return icon_.get();
}

void ODB_Mediator::unload_icon()
{
    icon_.reset();
}

bool ODB_Mediator::has_icon() const
{
    return DB_->exist(resource_of_type(ObjectDatabase::ODB_IconResourceType));
}

void ODB_Mediator::save_icon(PixelMap* map)
{
    DB_->put(map, resource_of_type(ObjectDatabase::ODB_IconResourceType), false);
}

void ODB_Mediator::load_icon() const
{
    GStreamable* const stored =
        DB_->get(resource_of_type(ObjectDatabase::ODB_IconResourceType), false);
    auto* const map = zmr::class_cast<PixelMap>(stored);
    if (map == nullptr)
        GStreamable::Destroy(stored);
    icon_.reset(map);
}

ODB_ObjectAttribute* ODB_Mediator::get_attribute(const GMetaClass* attribute_class)
{
    if (attribute_class == nullptr ||
        attribute_class->isKindOf(&ODB_ObjectAttribute::metaclass_) == nullptr)
        return nullptr;
    return get_attribute(GString(attribute_class->name));
}

ODB_ObjectAttribute* ODB_Mediator::get_attribute(const GString& class_name)
{
    GStreamable* const stored = DB_->get(resource_of_type(class_name), false);
    auto* const attribute = zmr::class_cast<ODB_ObjectAttribute>(stored);
    if (attribute == nullptr) {
        GStreamable::Destroy(stored);
        return nullptr;
    }
    attribute->set_mediator(this);
    return attribute;
}

void ODB_Mediator::get_attributes(ODB_AttributesArray& result)
{
    result.empty();
    result.owns_items = 1;
    for (GResourceTypeIterator type(*DB_, DB_resname_.path()); type.index >= 0; --type) {
        zmr::OwnedObject<ODB_ObjectAttribute> attribute(get_attribute(type.element()));
        if (attribute == nullptr)
            continue;
        result.v_insert(attribute.get());
        static_cast<void>(attribute.release());
    }
}

void ODB_Mediator::set_attribute(ODB_ObjectAttribute* attribute, bool delete_it)
{
    if (attribute == nullptr)
        return;
    if (!delete_it) {
        DB_->put(attribute, resource_of_type(GString(attribute->getClassName())), false);
        attribute->set_mediator(this);
        return;
    }
    const zmr::OwnedObject<ODB_ObjectAttribute> taken(attribute);
    DB_->put(attribute, resource_of_type(GString(attribute->getClassName())), false);
}

void ODB_Mediator::remove_attribute(const GMetaClass* attribute_class)
{
    if (attribute_class != nullptr)
        remove_attribute(GString(attribute_class->name));
}

void ODB_Mediator::remove_attribute(const GString& class_name)
{
    DB_->remove(resource_of_type(class_name));
}

void ODB_Mediator::modified()
{
    if (DB_ != nullptr)
        DB_->notify_about_mediator_modification(this);
}
