#include "responder/GView.h"

#include "foundation/GRect.h"
#include "foundation/GString.h"
#include "foundation/ipstream.h"

G_DEFINE_CLASS(GView, GResponder);

GView::~GView()
{
    GResponder::shut_down();
}

void GView::write(opstream&) {}

void GView::read(ipstream& in)
{
    const bool forced = ForceReadSubobjects();
    ForceReadSubobjects(false);
    old_read(in);
    const unsigned char version = in.readByte();
    GRect place;
    place.read_old(in);
    static_cast<void>(in.readWord());
    if (version >= kWithChildren || forced)
        read_subobjects(in);
    if (version == kWithText || version == kWithText + 1)
        gfreestr(in.readString());
    if (version >= kWithFont && in.readByte() != 0)
        ReadOldGFont(in);
}

void GView::ReadOldGFont(ipstream& in)
{
    static_cast<void>(in.readByte());
    gfreestr(in.readString());
    static_cast<void>(in.readWord());
    static_cast<void>(in.readWord());
}
