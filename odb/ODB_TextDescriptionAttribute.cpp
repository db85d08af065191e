#include "odb/ODB_TextDescriptionAttribute.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

G_DEFINE_CLASS(ODB_TextDescriptionAttribute, ODB_ObjectAttribute);

void ODB_TextDescriptionAttribute::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    ODB_ObjectAttribute::read(in);
    in >> text_;
}

void ODB_TextDescriptionAttribute::write(opstream& out)
{
    out.writeByte(0);
    ODB_ObjectAttribute::write(out);
    out << text_;
}

void ODB_TextDescriptionAttribute::set_text(const char* text)
{
    text_ = text;
    modified();
}
