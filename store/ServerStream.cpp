#include "store/ServerStream.h"

#include "foundation/GException.h"
#include "foundation/GFlateBufferedIO.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zmr {

namespace {

/// The stored bytes of one content as a device that can only be read on.
class ContentIO : public GIO {
public:
    ContentIO(const LibraryFile& library, LibraryContent content)
        : library_(library), content_(std::move(content))
    {
        store_open_mode(OpenRead);
    }

    long gseek(long, IOSeekDirection) override { return -1; }
    long gtell() override { return static_cast<long>(done_); }
    long gwrite(const void*, long) override
    {
        set_error(WriteFailed);
        throw GStreamException("A library's stream is for reading only.");
    }
    long gread(void* data, long size) override
    {
        if (size <= 0)
            return 0;
        const std::size_t count =
            library_.read_at(content_, done_, data, static_cast<std::size_t>(size));
        done_ += count;
        return static_cast<long>(count);
    }
    void flush() override {}

private:
    const LibraryFile& library_;
    LibraryContent content_;
    std::uint64_t done_ = 0;
};

constexpr long kContentBufferBytes = 4096;

}  // namespace

ServerBuffer::ServerBuffer(LibraryFile& library, FindBlock find_block)
    : library_(library),
      find_block_(std::move(find_block)),
      window_(std::make_unique<unsigned char[]>(kWindowBytes))
{
}

ServerBuffer::~ServerBuffer() = default;

long ServerBuffer::gseek(long offset, GIO::IOSeekDirection direction)
{
    std::uint64_t base = 0;
    if (direction == GIO::SeekCurrent)
        base = static_cast<std::uint64_t>(gtell());
    else if (direction != GIO::SeekBegin)
        base = library_.extent();
    if (offset < 0 && static_cast<std::uint64_t>(-(offset + 1)) >= base)
        return -1;
    const std::uint64_t target = base + static_cast<std::uint64_t>(offset);
    if (target > static_cast<std::uint64_t>(std::numeric_limits<long>::max()))
        return -1;
    stopRead();
    position_ = target;
    inflated_.reset();
    const LibraryContent* const block = find_block_(target);
    if (block != nullptr && block->compressed)
        // Each takes the next one over, once the memory of all is there.
        inflated_.reset(new GFlateBufferedIO(
            new GBufferedIO(new ContentIO(library_, *block), kContentBufferBytes), 0));
    return static_cast<long>(target);
}

long ServerBuffer::gtell()
{
    return static_cast<long>(position_ - static_cast<std::uint64_t>(limit_ - cursor_));
}

void ServerBuffer::flush() {}

void ServerBuffer::setIO(GIO* io)
{
    delete io;  // the file is the only thing that can stand under it
}

bool ServerBuffer::readBuffer()
{
    std::size_t count = 0;
    if (inflated_ != nullptr)
        count = static_cast<std::size_t>(
            std::max(0L, inflated_->gread(window_.get(), static_cast<long>(kWindowBytes))));
    else
        count = library_.read_position(position_, window_.get(), kWindowBytes);
    position_ += count;
    cursor_ = window_.get();
    limit_ = cursor_ + count;
    return count > 0;
}

void ServerBuffer::writeBuffer()
{
    throw GStreamException("A library's stream is for reading only.");
}

void ServerBuffer::startRead()
{
    reading_ = true;
}

void ServerBuffer::startWrite()
{
    writeBuffer();
}

void ServerBuffer::stopRead()
{
    reading_ = false;
    cursor_ = limit_ = window_.get();
}

void ServerBuffer::stopWrite() {}

ServerStream::ServerStream(LibraryFile& library, ServerBuffer::FindBlock find_block)
    : window_(library, std::move(find_block))
{
    init(&window_);
}

ServerStream::~ServerStream() = default;

}  // namespace zmr
