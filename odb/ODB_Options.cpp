#include "odb/ODB_Options.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "odb/ODB_InternalObject.h"

G_DEFINE_CLASS(ODB_Options, GStreamable);

ODB_Options::ODB_Options() : default_mediator(&ODB_InternalObject::metaclass_) {}

void ODB_Options::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    in >> default_mediator;
}

void ODB_Options::write(opstream& out)
{
    out.writeByte(0);
    out << default_mediator;
}
