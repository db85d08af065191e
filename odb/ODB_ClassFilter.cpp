#include "odb/ODB_ClassFilter.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "odb/ODB_Mediator.h"

G_DEFINE_CLASS(ODB_ClassFilter, ODB_ContentsFilter);

ODB_ClassFilter::ODB_ClassFilter(const char* class_name, unsigned char related)
    : class_identifier_(GMetaClass::FindByName(class_name)),
      class_name_(class_name),
      related_(related)
{
}

ODB_ClassFilter::ODB_ClassFilter(const GMetaClass* class_identifier, unsigned char related)
    : class_identifier_(class_identifier),
      class_name_(class_identifier == nullptr ? nullptr : class_identifier->name),
      related_(related)
{
}

void ODB_ClassFilter::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    GString class_name;
    in >> class_name;
    related_ = in.readByte();
    class_name_ = class_name;
    class_identifier_ = GMetaClass::FindByName(class_name_.text);
}

void ODB_ClassFilter::write(opstream& out)
{
    out.writeByte(0);
    out << class_name_;
    out.writeByte(related_);
}

unsigned char ODB_ClassFilter::accept(const ODB_Mediator& mediator)
{
    const GMetaClass* const object_class = mediator.get_object_class_identifier();
    if (object_class == nullptr || class_identifier_ == nullptr)
        return class_name_ == mediator.get_object_class_name() ? 1 : 0;
    if (related_ == 0)
        return object_class == class_identifier_ ? 1 : 0;
    return class_identifier_->isKindOf(object_class) != nullptr ? 1 : 0;
}
