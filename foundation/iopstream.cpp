#include "foundation/iopstream.h"

iopstream::~iopstream() = default;

void iopstream::buffer_changed(GAbstractBufferedIO* buffer)
{
    ipstream::buffer_changed(buffer);
    opstream::buffer_changed(buffer);
}
