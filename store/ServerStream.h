#pragma once

#include "foundation/GBufferedIO.h"
#include "foundation/iopstream.h"
#include "store/LibraryFile.h"

#include <functional>
#include <memory>

namespace zmr {

/// The window over a library file's bytes. A seek to the start of a compressed content that was
/// handed out makes the reads after it give the content, inflated, until the next seek.
class ServerBuffer : public GAbstractBufferedIO {
public:
    /// Gives the handed-out content that starts at a position, or null.
    using FindBlock = std::function<const LibraryContent*(std::uint64_t position)>;

    ServerBuffer(LibraryFile& library, FindBlock find_block);
    ~ServerBuffer() override;

    long gseek(long offset, GIO::IOSeekDirection direction) override;
    long gtell() override;
    void flush() override;
    void setIO(GIO* io) override;

protected:
    bool readBuffer() override;
    void writeBuffer() override;
    void startRead() override;
    void startWrite() override;
    void stopRead() override;
    void stopWrite() override;

private:
    static constexpr std::size_t kWindowBytes = 16384;

    LibraryFile& library_;
    FindBlock find_block_;
    std::unique_ptr<unsigned char[]> window_;
    std::uint64_t position_ = 0;  ///< Of the byte behind the window.
    std::unique_ptr<GAbstractBufferedIO> inflated_;
};

/// The stream that ResourceFileServer::get_stream gives.
class ServerStream : public iopstream {
public:
    ServerStream(LibraryFile& library, ServerBuffer::FindBlock find_block);
    ~ServerStream() override;

private:
    ServerBuffer window_;
};

}  // namespace zmr
