#include "foundation/GArchiveStream.h"

#include "foundation/CArchiveIO.h"
#include "foundation/CFileIO.h"
#include "foundation/GFlateBufferedIO.h"

#include "platform/CException.h"

/// The buffer over the device.
class GArchiveStream::ReadAhead final : public GBufferedIO {
public:
    explicit ReadAhead(GIO* io) : GBufferedIO(io, kBufferBytes) {}

    /// How many bytes were read from the device and not taken from here.
    [[nodiscard]] long ahead() const { return reading_ ? static_cast<long>(limit_ - cursor_) : 0; }
};

GArchiveStream::GArchiveStream(CFile& file, GIO::IOOpenMode mode, bool compressed)
{
    auto io = std::make_unique<CFileIO>(file, mode);
    give_back_ = [device = io.get()](long size) { device->give_back(size); };
    init(std::move(io), compressed);
}

GArchiveStream::GArchiveStream(CArchive& archive, bool compressed)
{
    auto io = std::make_unique<CArchiveIO>(archive);
    give_back_ = [device = io.get()](long size) { device->give_back(size); };
    init(std::move(io), compressed);
}

GArchiveStream::~GArchiveStream()
{
    try {
        return_what_was_not_taken();
    } catch (CException* failure) {  // a destructor has no one to tell
        failure->Delete();
    } catch (...) {
    }
}

void GArchiveStream::init(std::unique_ptr<GIO> io, bool compressed)
{
    lowest_ = new ReadAhead(io.release());  // released once there is room for its owner
    buffer.reset(lowest_);
    if (compressed) {
        auto packing = std::make_unique<GFlateBufferedIO>(buffer.get(), kDeflateLevel);
        static_cast<void>(buffer.release());
        packing_ = packing.get();
        buffer = std::move(packing);
    }
    pstream::init(buffer.get());
}

void GArchiveStream::return_what_was_not_taken()
{
    if (fail())
        return;
    const long packed = packing_ == nullptr ? 0 : packing_->read_behind_end();
    if (packed < 0)
        return;
    if (const long size = packed + lowest_->ahead(); size > 0)
        give_back_(size);
}
