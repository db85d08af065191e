#include "foundation/pstream.h"

#include "foundation/GException.h"
#include "foundation/Immortal.h"

namespace {

/// Holds no state, so that all streams and threads can share the one of the process.
class ClosedIO final : public GAbstractBufferedIO {
public:
    constexpr ClosedIO() = default;
    ~ClosedIO() override = default;

    long gread(void*, long) override { return 0; }
    long gwrite(const void*, long) override
    {
        throw GStreamException("A stream without a device was written.");
    }
    long gseek(long, GIO::IOSeekDirection) override { return -1; }
    long gtell() override { return 0; }
    void flush() override {}
    void setIO(GIO*) override {}
    long remaining() override { return 0; }

protected:
    bool readBuffer() override { return false; }
    void writeBuffer() override {}
    void startRead() override {}
    void startWrite() override {}
    void stopRead() override {}
    void stopWrite() override {}
};

}  // namespace

pstream::~pstream() = default;

void pstream::clear(int state)
{
    state_ = state;
    buffer_changed((state & kBad) != 0 || buffer_ == nullptr ? ClosedBuffer() : buffer_);
}

void pstream::init(GAbstractBufferedIO* buffer)
{
    buffer_ = buffer;
    clear(buffer == nullptr ? kBad : 0);
}

void pstream::buffer_changed(GAbstractBufferedIO*) {}

GAbstractBufferedIO* pstream::ClosedBuffer()
{
    static zmr::Immortal<ClosedIO> closed;
    return &*closed;
}

void pstream::require_device() const
{
    if (bad())
        throw GStreamException("A stream whose device failed or is missing was used.");
}
