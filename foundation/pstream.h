#pragma once

#include "foundation/GBufferedIO.h"
#include "foundation/GStreamable.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

static_assert(std::endian::native == std::endian::little,
              "values are streamed as they lie in memory");

/// What the readers and writers share: the buffer and the state. The state's bits: kEnd the data
/// ended, kFail an operation failed, kBad the device failed or is missing; 0 is good.
class ZMR_GV_API pstream {
public:
    static constexpr int kEnd = 1;
    static constexpr int kFail = 2;
    static constexpr int kBad = 4;

    virtual ~pstream();
    pstream(const pstream&) = delete;
    pstream& operator=(const pstream&) = delete;

    [[nodiscard]] int state() const { return state_; }
    [[nodiscard]] bool good() const { return state_ == 0; }
    [[nodiscard]] bool eof() const { return (state_ & kEnd) != 0; }
    [[nodiscard]] bool fail() const { return (state_ & (kFail | kBad)) != 0; }
    [[nodiscard]] bool bad() const { return (state_ & kBad) != 0; }
    /// Sets the state. While it holds kBad the typed operations throw.
    void clear(int state = 0);

protected:
    pstream() = default;
    /// Names the buffer, which the derived stream keeps and frees; null makes the stream bad.
    void init(GAbstractBufferedIO* buffer);
    /// Tells readers and writers, who keep it at hand, which buffer to use: that of init, or while
    /// the stream is bad an empty one. Never null.
    virtual void buffer_changed(GAbstractBufferedIO* buffer);
    [[nodiscard]] GAbstractBufferedIO* buffer() const { return buffer_; }
    /// A buffer that is always at its end and refuses to be written. Shared by all threads.
    [[nodiscard]] static GAbstractBufferedIO* ClosedBuffer();

    void add_state(int bits) { clear(state_ | bits); }
    /// Throws when the state holds kBad.
    void require_device() const;
    /// Runs `action` on the device; an exception leaves the stream bad and goes on.
    template <class Action>
    auto on_device(Action&& action)
    {
        try {
            return action();
        } catch (...) {
            add_state(kBad);
            throw;
        }
    }

private:
    int state_ = kBad;
    GAbstractBufferedIO* buffer_ = nullptr;
};
