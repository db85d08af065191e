#pragma once

#include "foundation/GIO.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

/// A buffer in front of a device: a window of bytes that readers take from and writers add to
/// without a call. It owns and frees what stands under it.
///
/// In the reading state `cursor_` to `limit_` are bytes that can be taken; in the writing state
/// they are room that can be filled; in neither state they are equal. A derived class moves between
/// the states with startRead, stopRead, startWrite and stopWrite, refills with readBuffer and
/// empties with writeBuffer. Positions are 64 bits wide inside; one that does not fit a `long`
/// throws GStreamException where it is asked for.
class ZMR_GV_API GAbstractBufferedIO {
public:
    GAbstractBufferedIO() = default;
    virtual ~GAbstractBufferedIO();
    GAbstractBufferedIO(const GAbstractBufferedIO&) = delete;
    GAbstractBufferedIO& operator=(const GAbstractBufferedIO&) = delete;

    /// Reads up to `size` bytes; fewer only at the end.
    virtual long gread(void* data, long size);
    /// Writes all bytes and returns `size`.
    virtual long gwrite(const void* data, long size);
    /// Moves to a position and returns it, -1 when what stands below can't seek.
    virtual long gseek(long offset, GIO::IOSeekDirection direction) = 0;
    /// The position of the next byte. Of a device that can't tell, counted from where it was taken
    /// over.
    virtual long gtell() = 0;
    /// Hands what was written to the device and flushes it.
    virtual void flush() = 0;
    /// Puts another device under the buffer, which must be flushed; the former one is freed.
    virtual void setIO(GIO* io) = 0;
    /// How many bytes are left to read, or -1 when only reading on will tell.
    virtual long remaining() { return -1; }

    /// The next `size` bytes when all of them are in the window, which moves behind them; otherwise
    /// null and nothing happens.
    [[nodiscard]] const unsigned char* take(std::size_t size)
    {
        return holds(size) ? pass(size) : nullptr;
    }
    /// True when the next `size` bytes are in the window.
    [[nodiscard]] bool holds(std::size_t size) const
    {
        return reading_ && static_cast<std::size_t>(limit_ - cursor_) >= size;
    }
    /// Takes the next `size` bytes, which the window holds.
    const unsigned char* pass(std::size_t size) { return std::exchange(cursor_, cursor_ + size); }
    /// Room for the next `size` bytes, to be filled at once, when the window has it; otherwise
    /// null.
    [[nodiscard]] unsigned char* room(std::size_t size)
    {
        return has_room(size) ? fill(size) : nullptr;
    }
    /// True when the window has room for the next `size` bytes.
    [[nodiscard]] bool has_room(std::size_t size) const
    {
        return writing_ && static_cast<std::size_t>(limit_ - cursor_) >= size;
    }
    /// The room for the next `size` bytes, which the window has; to be filled at once.
    [[nodiscard]] unsigned char* fill(std::size_t size)
    {
        return std::exchange(cursor_, cursor_ + size);
    }

protected:
    /// Fills the window, whose bytes are all taken, with at least one byte; false at the end.
    /// Called in the reading state.
    virtual bool readBuffer() = 0;
    /// Empties the window so that there is room for at least one byte. Called in the writing state.
    virtual void writeBuffer() = 0;
    /// Enter and leave the states: they set the window and the two flags below. The start functions
    /// are called in neither state, the stop functions in their own.
    virtual void startRead() = 0;
    virtual void startWrite() = 0;
    virtual void stopRead() = 0;
    virtual void stopWrite() = 0;

    /// Bring the buffer into the state, whatever state it is in.
    void enter_reading();
    void enter_writing();
    /// A position as the interface gives it; throws when it does not fit.
    [[nodiscard]] static long as_position(std::int64_t position);

    unsigned char* cursor_ = nullptr;
    unsigned char* limit_ = nullptr;
    bool reading_ = false;
    bool writing_ = false;
};

/// The plain buffer over a device.
class ZMR_GV_API GBufferedIO : public GAbstractBufferedIO {
public:
    /// Takes `io` over. `buffer_size` in bytes, at least 64.
    GBufferedIO(GIO* io, long buffer_size);
    /// Writes what is left; a failure here is dropped, so flush first.
    ~GBufferedIO() override;

    long gread(void* data, long size) override;
    long gwrite(const void* data, long size) override;
    long gseek(long offset, GIO::IOSeekDirection direction) override;
    long gtell() override;
    void flush() override;
    void setIO(GIO* io) override;
    long remaining() override;

protected:
    bool readBuffer() override;
    void writeBuffer() override;
    void startRead() override;
    void startWrite() override;
    void stopRead() override;
    void stopWrite() override;

private:
    [[nodiscard]] std::int64_t position() const;
    void locate();
    void set_window(long bytes);
    long read_device(void* data, long size);
    void write_device(const void* data, long size);

    std::unique_ptr<GIO> io_;
    long buffer_size_;
    std::unique_ptr<unsigned char[]> buffer_;
    std::int64_t base_ = 0;  ///< The device's position of the first byte of `buffer_`.
};
