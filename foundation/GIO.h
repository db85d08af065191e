#pragma once

#include "platform/Export.h"

#include <cstdint>

/// A device that moves bytes at a position. Abstract but for gtell. Failures leave their number in
/// the error word and leave as an exception (GStreamException, or the platform's own where a device
/// stands on the platform's classes).
class ZMR_GV_API GIO {
public:
    enum IOSeekDirection { SeekBegin = 0, SeekCurrent = 1, SeekEnd = 2 };
    /// Bits: 1 reading, 2 writing.
    enum IOOpenMode { OpenNone = 0, OpenRead = 1, OpenWrite = 2, OpenReadWrite = 3 };
    /// Values of the error word.
    enum IOError { NoError = 0, WriteFailed = 4, ReadFailed = 5, SeekFailed = 6 };

    GIO() = default;
    virtual ~GIO();
    GIO(const GIO&) = delete;
    GIO& operator=(const GIO&) = delete;

    /// Moves the position; returns it counted from the beginning, -1 when the device can't seek.
    virtual long gseek(long offset, IOSeekDirection direction) = 0;
    /// The position. Here: gseek by nothing from the current one.
    virtual long gtell();
    /// Writes all `size` bytes and returns `size`.
    virtual long gwrite(const void* data, long size) = 0;
    /// Reads up to `size` bytes; returns the count, 0 at the end.
    virtual long gread(void* data, long size) = 0;
    virtual void flush() = 0;
    /// How many bytes lie between the position and the end, -1 when the device can't tell. Here:
    /// found by seeking to the end and back.
    [[nodiscard]] virtual std::int64_t gleft();

    [[nodiscard]] IOOpenMode get_open_mode() const { return open_mode_; }
    [[nodiscard]] int get_error() const { return error_; }

protected:
    void store_open_mode(IOOpenMode mode) { open_mode_ = mode; }
    void set_error(int error) { error_ = error; }

private:
    IOOpenMode open_mode_ = OpenNone;
    int error_ = NoError;
};
