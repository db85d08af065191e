#include "store/GObjectPlacement.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

G_DEFINE_CLASS(GObjectPlacement, GStreamable);

void GObjectPlacement::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    GStreamable::read(in);
}

void GObjectPlacement::write(opstream& out)
{
    out.writeByte(0);
    GStreamable::write(out);
}

bool GObjectPlacement::put_object(GObject* object, bool shared)
{
    if (shared)
        set_shared_object(object);
    return true;
}

void GObjectPlacement::set_shared_object(GObject* object)
{
    shared_ = object;
}
