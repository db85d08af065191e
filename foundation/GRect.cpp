#include "foundation/GRect.h"

#include "foundation/ipstream.h"

#include "platform/PlatformRecordsOfLane.h"

namespace {

std::int32_t read_side(ipstream& in)
{
    return static_cast<std::int16_t>(in.readWord());
}

}  // namespace

GRect::GRect(const RECT& rectangle)
    : GRect(rectangle.left, rectangle.top, rectangle.right, rectangle.bottom)
{
}

void GRect::read_old(ipstream& in)
{
    GRect read;
    read.x0 = read_side(in);
    read.y0 = read_side(in);
    read.x1 = read_side(in);
    read.y1 = read_side(in);
    *this = read;
}
