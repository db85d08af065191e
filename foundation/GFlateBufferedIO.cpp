#include "foundation/GFlateBufferedIO.h"

#include "foundation/GException.h"

#include "platform/CException.h"

#include <zlib.h>
#include <algorithm>
#include <cassert>
#include <new>

namespace {

constexpr long kWindowBytes = 64 * 1024;
constexpr long kPackedBytes = 16 * 1024;
constexpr int kDefaultLevel = 6;
constexpr int kHighestLevel = 9;

[[noreturn]] void throw_zlib(int result)
{
    if (result == Z_MEM_ERROR)
        throw OutOfMemory_Exception();
    throw GStreamException("Compressed data is damaged.");
}

}  // namespace

struct GFlateBufferedIO::State {
    std::unique_ptr<GAbstractBufferedIO> lower;
    int level = kDefaultLevel;
    Phase phase = Phase::Fresh;
    bool at_end = false;    ///< The end of the compressed stream was read.
    std::int64_t base = 0;  ///< Unpacked position of the window's first byte.
    long start = -1;        ///< Where the compressed stream begins in `lower`.
    z_stream stream = {};
    unsigned char window[kWindowBytes];
    unsigned char packed[kPackedBytes];
};

GFlateBufferedIO::GFlateBufferedIO(GAbstractBufferedIO* lower, int level)
{
    assert(lower != nullptr);
    std::unique_ptr<GAbstractBufferedIO> taken(lower);
    state_ = std::make_unique_for_overwrite<State>();
    state_->lower = std::move(taken);
    state_->level = level >= 0 && level <= kHighestLevel ? level : kDefaultLevel;
    cursor_ = limit_ = state_->window;
}

GFlateBufferedIO::~GFlateBufferedIO()
{
    try {
        finish();
    } catch (CException* failure) {  // a destructor has no one to tell; `flush` before it does
        failure->Delete();
    } catch (...) {
    }
    reset();
}

long GFlateBufferedIO::gseek(long offset, GIO::IOSeekDirection direction)
{
    if (direction != GIO::SeekBegin && direction != GIO::SeekCurrent)
        return -1;
    std::int64_t target = offset;
    if (direction == GIO::SeekCurrent &&
        __builtin_add_overflow(position(), std::int64_t{offset}, &target))
        return -1;
    if (target == position())
        return as_position(target);
    if (target < 0 || writing_)
        return -1;

    enter_reading();
    if (target < state_->base && !rewind_reading())
        return -1;
    skip_to(target);
    return as_position(position());
}

long GFlateBufferedIO::gtell()
{
    return as_position(position());
}

void GFlateBufferedIO::flush()
{
    if (writing_)
        deflate_window(Z_SYNC_FLUSH);
    state_->lower->flush();
}

void GFlateBufferedIO::setIO(GIO* io)
{
    finish();
    state_->lower->flush();
    reset();
    state_->lower->setIO(io);
    state_->phase = Phase::Fresh;
}

long GFlateBufferedIO::read_behind_end()
{
    if (!reading_)
        return 0;
    if (cursor_ != limit_ || readBuffer())
        return -1;
    return static_cast<long>(state_->stream.avail_in);
}

bool GFlateBufferedIO::readBuffer()
{
    State& state = *state_;
    z_stream& stream = state.stream;
    state.base = position();
    cursor_ = limit_ = state.window;
    stream.next_out = state.window;
    stream.avail_out = kWindowBytes;
    while (!state.at_end && stream.avail_out == kWindowBytes) {
        if (stream.avail_in == 0) {
            const long count = state.lower->gread(state.packed, kPackedBytes);
            if (count == 0 && stream.total_in == 0)
                state.at_end = true;  // nothing was ever written
            else if (count == 0)
                throw GStreamException("Compressed data ends too early.");
            stream.next_in = state.packed;
            stream.avail_in = static_cast<uInt>(count);
            continue;
        }
        const int result = ::inflate(&stream, Z_NO_FLUSH);
        if (result == Z_STREAM_END)
            state.at_end = true;
        else if (result != Z_OK && result != Z_BUF_ERROR)
            throw_zlib(result);
    }
    limit_ = stream.next_out;
    return cursor_ != limit_;
}

void GFlateBufferedIO::writeBuffer()
{
    deflate_window(Z_NO_FLUSH);
}

void GFlateBufferedIO::startRead()
{
    State& state = *state_;
    if (state.phase != Phase::Fresh)
        throw GStreamException("A compressed stream was written and can't be read now.");
    state.start = state.lower->gtell();
    state.stream = {};
    if (const int result = ::inflateInit(&state.stream); result != Z_OK)
        throw_zlib(result);
    state.phase = Phase::Reading;
    reading_ = true;
}

void GFlateBufferedIO::startWrite()
{
    State& state = *state_;
    if (state.phase != Phase::Fresh)
        throw GStreamException("A compressed stream was read or has ended and can't be written.");
    state.stream = {};
    if (const int result = ::deflateInit(&state.stream, state.level); result != Z_OK)
        throw_zlib(result);
    state.phase = Phase::Writing;
    writing_ = true;
    cursor_ = state.window;
    limit_ = state.window + kWindowBytes;
}

void GFlateBufferedIO::stopRead()
{
    throw GStreamException("A compressed stream was read and can't be written now.");
}

void GFlateBufferedIO::stopWrite()
{
    deflate_window(Z_FINISH);
    state_->phase = Phase::Ended;
    writing_ = false;
    limit_ = cursor_;
}

std::int64_t GFlateBufferedIO::position() const
{
    return state_->base + (cursor_ - state_->window);
}

/// Starts again at the beginning of the compressed stream; false when the device can't go back.
bool GFlateBufferedIO::rewind_reading()
{
    State& state = *state_;
    if (state.start < 0 || state.lower->gseek(state.start, GIO::SeekBegin) < 0)
        return false;
    ::inflateReset(&state.stream);
    state.stream.avail_in = 0;
    state.at_end = false;
    state.base = 0;
    cursor_ = limit_ = state.window;
    return true;
}

/// Moves to `target`, which is not before the window, or to the end of the data.
void GFlateBufferedIO::skip_to(std::int64_t target)
{
    while (state_->base + (limit_ - state_->window) < target) {
        cursor_ = limit_;
        if (!readBuffer())
            break;
    }
    cursor_ =
        state_->window + std::min<std::int64_t>(target - state_->base, limit_ - state_->window);
}

void GFlateBufferedIO::deflate_window(int flush_kind)
{
    State& state = *state_;
    z_stream& stream = state.stream;
    stream.next_in = state.window;
    stream.avail_in = static_cast<uInt>(cursor_ - state.window);
    state.base = position();
    cursor_ = state.window;
    try {
        do {
            stream.next_out = state.packed;
            stream.avail_out = kPackedBytes;
            const int result = ::deflate(&stream, flush_kind);
            if (result == Z_STREAM_ERROR)
                throw_zlib(result);
            const auto packed = static_cast<long>(stream.next_out - state.packed);
            if (packed > 0)
                state.lower->gwrite(state.packed, packed);
        } while (stream.avail_out == 0);
    } catch (...) {
        // What the device took nobody knows: the compressed stream can't go on.
        state.phase = Phase::Ended;
        writing_ = false;
        limit_ = cursor_;
        throw;
    }
}

/// Ends the compressed stream when one is being written.
void GFlateBufferedIO::finish()
{
    if (writing_)
        stopWrite();
}

/// Frees what zlib holds.
void GFlateBufferedIO::reset()
{
    State& state = *state_;
    if (state.phase == Phase::Reading)
        ::inflateEnd(&state.stream);
    else if (state.phase != Phase::Fresh)
        ::deflateEnd(&state.stream);
    state.stream = {};
    state.phase = Phase::Fresh;
    state.at_end = false;
    state.base = 0;
    reading_ = false;
    writing_ = false;
    cursor_ = limit_ = state.window;
}
