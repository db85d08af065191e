#include "foundation/GIO.h"

GIO::~GIO() = default;

long GIO::gtell()
{
    return gseek(0, SeekCurrent);
}

std::int64_t GIO::gleft()
{
    const long position = gtell();
    if (position < 0)
        return -1;
    const long end = gseek(0, SeekEnd);
    if (end < 0)
        return -1;
    gseek(position, SeekBegin);
    return end > position ? std::int64_t{end} - position : 0;
}
