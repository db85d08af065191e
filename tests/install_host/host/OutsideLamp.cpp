#include "OutsideLamp.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

G_DEFINE_CLASS(OutsideLamp, GStreamable);

void OutsideLamp::read(ipstream& in)
{
    GStreamable::read(in);
    brightness_ = in.readByte();
}

void OutsideLamp::write(opstream& out)
{
    GStreamable::write(out);
    out.writeByte(brightness_);
}
