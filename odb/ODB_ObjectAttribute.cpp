#include "odb/ODB_ObjectAttribute.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "odb/ODB_Mediator.h"
#include "odb/ObjectDatabase.h"

G_DEFINE_CLASS(ODB_ObjectAttribute, GStreamable);

void ODB_ObjectAttribute::read(ipstream& in)
{
    static_cast<void>(in.readByte());
}

void ODB_ObjectAttribute::write(opstream& out)
{
    out.writeByte(0);
}

void ODB_ObjectAttribute::modified()
{
    GResourceFullName name;
    get_DB_resname(name);
    get_DB()->put(this, name, false);
}

ObjectDatabase* ODB_ObjectAttribute::get_DB() const
{
    return mediator_->get_DB();
}

void ODB_ObjectAttribute::get_DB_resname(GResourceFullName& name) const
{
    name = mediator_->get_DB_resname();
    name.type = getClassName();
}

void ODB_ObjectAttribute::set_mediator(ODB_Mediator* mediator)
{
    mediator_ = mediator;
}
