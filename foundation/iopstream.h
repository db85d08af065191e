#pragma once

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

/// Reader and writer over one buffer.
class ZMR_GV_API iopstream : public ipstream, public opstream {
public:
    ~iopstream() override;

protected:
    iopstream() = default;
    void buffer_changed(GAbstractBufferedIO* buffer) override;
};
