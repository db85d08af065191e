#include "foundation/GBufferedIO.h"

#include "foundation/GException.h"

#include "platform/CException.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <limits>

namespace {

constexpr long kMinBufferBytes = 64;

}  // namespace

GBufferedIO::GBufferedIO(GIO* io, long buffer_size)
    : io_(io),
      buffer_size_(std::max(buffer_size, kMinBufferBytes)),
      buffer_(
          std::make_unique_for_overwrite<unsigned char[]>(static_cast<std::size_t>(buffer_size_)))
{
    assert(io != nullptr);
    set_window(0);
}

GBufferedIO::~GBufferedIO()
{
    if (!writing_)
        return;
    try {
        flush();
    } catch (CException* failure) {  // a destructor has no one to tell; `flush` before it does
        failure->Delete();
    } catch (...) {
    }
}

long GBufferedIO::gread(void* data, long size)
{
    enter_reading();
    auto* bytes = static_cast<unsigned char*>(data);
    long done = 0;
    while (done < size) {
        const long left = size - done;
        if (cursor_ == limit_ && left >= buffer_size_) {  // past the buffer
            base_ = position();
            set_window(0);
            const long count = read_device(bytes + done, left);
            if (count == 0)
                break;
            base_ += count;
            done += count;
            continue;
        }
        if (cursor_ == limit_ && !readBuffer())
            break;
        const long part = std::min(left, static_cast<long>(limit_ - cursor_));
        std::memcpy(bytes + done, cursor_, static_cast<std::size_t>(part));
        cursor_ += part;
        done += part;
    }
    return done;
}

long GBufferedIO::gwrite(const void* data, long size)
{
    enter_writing();
    if (size <= 0)
        return 0;
    if (size > limit_ - cursor_)
        writeBuffer();
    if (size >= buffer_size_) {  // past the buffer
        write_device(data, size);
        base_ += size;
        return size;
    }
    std::memcpy(cursor_, data, static_cast<std::size_t>(size));
    cursor_ += size;
    return size;
}

long GBufferedIO::gseek(long offset, GIO::IOSeekDirection direction)
{
    if (writing_)
        stopWrite();
    if (direction == GIO::SeekBegin || direction == GIO::SeekCurrent) {
        if (!reading_)
            locate();
        std::int64_t target = offset;
        if (direction == GIO::SeekCurrent &&
            __builtin_add_overflow(position(), std::int64_t{offset}, &target))
            return -1;
        if (target < 0 || target > std::numeric_limits<long>::max())
            return -1;
        if (reading_ && target >= base_ && target <= base_ + (limit_ - buffer_.get())) {
            cursor_ = buffer_.get() + (target - base_);
            return static_cast<long>(target);
        }
        offset = static_cast<long>(target);
        direction = GIO::SeekBegin;
    }
    const long reached = io_->gseek(offset, direction);
    if (reached < 0)
        return -1;
    base_ = reached;
    set_window(0);
    return reached;
}

long GBufferedIO::gtell()
{
    if (!reading_ && !writing_)
        locate();
    return as_position(position());
}

void GBufferedIO::flush()
{
    if (writing_)
        writeBuffer();
    io_->flush();
}

void GBufferedIO::setIO(GIO* io)
{
    assert(io != nullptr);
    assert(!writing_ || cursor_ == buffer_.get());
    reading_ = false;
    writing_ = false;
    base_ = 0;
    set_window(0);
    io_.reset(io);
}

long GBufferedIO::remaining()
{
    enter_reading();
    const std::int64_t below = io_->gleft();
    if (below < 0)
        return -1;
    return static_cast<long>(
        std::min<std::int64_t>(below + (limit_ - cursor_), std::numeric_limits<long>::max()));
}

bool GBufferedIO::readBuffer()
{
    base_ = position();
    set_window(0);
    set_window(read_device(buffer_.get(), buffer_size_));
    return cursor_ != limit_;
}

void GBufferedIO::writeBuffer()
{
    // A failed write is not tried again: what the device took of it nobody knows.
    const auto pending = static_cast<long>(cursor_ - buffer_.get());
    cursor_ = buffer_.get();
    if (pending == 0)
        return;
    write_device(buffer_.get(), pending);
    base_ += pending;
}

void GBufferedIO::startRead()
{
    locate();
    reading_ = true;
    set_window(0);
}

void GBufferedIO::startWrite()
{
    locate();
    writing_ = true;
    set_window(buffer_size_);
}

void GBufferedIO::stopRead()
{
    const auto ahead = static_cast<long>(limit_ - cursor_);
    const std::int64_t here = position();
    if (ahead > 0 && io_->gseek(-ahead, GIO::SeekCurrent) < 0)
        throw GStreamException("A device that can't seek was read and can't be written now.");
    reading_ = false;
    base_ = here;
    set_window(0);
}

void GBufferedIO::stopWrite()
{
    writeBuffer();
    writing_ = false;
    set_window(0);
}

std::int64_t GBufferedIO::position() const
{
    return base_ + (cursor_ - buffer_.get());
}

/// Asks the device where it stands; one that can't tell stands where it was left.
void GBufferedIO::locate()
{
    const long position = io_->gtell();
    if (position >= 0)
        base_ = position;
}

void GBufferedIO::set_window(long bytes)
{
    cursor_ = buffer_.get();
    limit_ = buffer_.get() + bytes;
}

long GBufferedIO::read_device(void* data, long size)
{
    const long count = io_->gread(data, size);
    if (count < 0 || count > size)
        throw GStreamException("A device could not be read.");
    return count;
}

void GBufferedIO::write_device(const void* data, long size)
{
    if (io_->gwrite(data, size) != size)
        throw GStreamException("A device could not be written.");
}
