#pragma once

#include "foundation/GBufferedIO.h"

/// A compressing layer over another buffer: a zlib stream (RFC 1950) that begins where the lower
/// buffer stands when the first byte is read or written. It reads or writes, not both; reading can
/// move forward, and back by starting again, but not from the end; writing can't seek. Data is
/// packed and unpacked in pieces of 64 KiB, whatever its length. Malformed data and data that is
/// cut off throw GStreamException. `flush` makes all that was written readable and costs a few
/// bytes; the stream ends with the destructor or `setIO`.
class ZMR_GV_API GFlateBufferedIO : public GAbstractBufferedIO {
public:
    /// Takes `lower` over. `level` is the deflate level, 0 to 9; others count as 6.
    GFlateBufferedIO(GAbstractBufferedIO* lower, int level);
    /// Ends the compressed stream; a failure here is dropped, so flush first.
    ~GFlateBufferedIO() override;

    long gseek(long offset, GIO::IOSeekDirection direction) override;
    long gtell() override;
    void flush() override;
    void setIO(GIO* io) override;

    /// When all that was written has been read: how many bytes behind the end of the compressed
    /// stream were taken from the lower buffer with it. -1 while there is more to read; 0 when
    /// nothing is being read. Unpacks a window at most; damaged data throws.
    [[nodiscard]] long read_behind_end();

protected:
    bool readBuffer() override;
    void writeBuffer() override;
    void startRead() override;
    void startWrite() override;
    void stopRead() override;
    void stopWrite() override;

private:
    enum class Phase : unsigned char { Fresh, Reading, Writing, Ended };

    [[nodiscard]] std::int64_t position() const;
    bool rewind_reading();
    void skip_to(std::int64_t target);
    void deflate_window(int flush_kind);
    void finish();
    void reset();

    struct State;
    std::unique_ptr<State> state_;
};
