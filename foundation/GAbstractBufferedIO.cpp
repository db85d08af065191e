#include "foundation/GBufferedIO.h"

#include "foundation/GException.h"

#include <algorithm>
#include <cstring>
#include <limits>

GAbstractBufferedIO::~GAbstractBufferedIO() = default;

long GAbstractBufferedIO::gread(void* data, long size)
{
    enter_reading();
    auto* bytes = static_cast<unsigned char*>(data);
    long done = 0;
    while (done < size) {
        if (cursor_ == limit_ && !readBuffer())
            break;
        const long part = std::min<long>(size - done, static_cast<long>(limit_ - cursor_));
        std::memcpy(bytes + done, cursor_, static_cast<std::size_t>(part));
        cursor_ += part;
        done += part;
    }
    return done;
}

long GAbstractBufferedIO::gwrite(const void* data, long size)
{
    enter_writing();
    const auto* bytes = static_cast<const unsigned char*>(data);
    long done = 0;
    while (done < size) {
        if (cursor_ == limit_)
            writeBuffer();
        const long part = std::min<long>(size - done, static_cast<long>(limit_ - cursor_));
        std::memcpy(cursor_, bytes + done, static_cast<std::size_t>(part));
        cursor_ += part;
        done += part;
    }
    return done;
}

void GAbstractBufferedIO::enter_reading()
{
    if (reading_)
        return;
    if (writing_)
        stopWrite();
    startRead();
}

void GAbstractBufferedIO::enter_writing()
{
    if (writing_)
        return;
    if (reading_)
        stopRead();
    startWrite();
}

long GAbstractBufferedIO::as_position(std::int64_t position)
{
    if (position > std::numeric_limits<long>::max())
        throw GStreamException("A position in a stream is beyond what this system can count.");
    return static_cast<long>(position);
}
