#include "foundation/mpstream.h"

#include "foundation/GException.h"
#include "foundation/HeapBlock.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

/// A window that is the whole block: of the caller's bytes, or of a block of its own that grows.
class mpbase::MemoryBuffer final : public GAbstractBufferedIO {
public:
    MemoryBuffer() = default;
    ~MemoryBuffer() override { std::free(own_); }

    void read_from(const unsigned char* data, std::size_t size)
    {
        // The bytes are only read: the window's pointers are shared with the writing state.
        start_ = cursor_ = const_cast<unsigned char*>(data);
        limit_ = end_ = start_ + size;
        reading_ = true;
    }
    void write_own() { writing_ = true; }

    [[nodiscard]] unsigned char* start() const { return start_; }
    [[nodiscard]] std::size_t length() const
    {
        return static_cast<std::size_t>(std::max(cursor_, end_) - start_);
    }

    long gwrite(const void* data, long size) override
    {
        enter_writing();
        if (size <= 0)
            return 0;
        if (size > limit_ - cursor_)
            grow(static_cast<std::size_t>(size));
        std::memcpy(cursor_, data, static_cast<std::size_t>(size));
        cursor_ += size;
        return size;
    }
    long gseek(long offset, GIO::IOSeekDirection direction) override
    {
        std::int64_t from = 0;
        if (direction == GIO::SeekCurrent)
            from = cursor_ - start_;
        else if (direction != GIO::SeekBegin)
            from = static_cast<std::int64_t>(length());
        std::int64_t target = 0;
        if (__builtin_add_overflow(from, std::int64_t{offset}, &target))
            return -1;
        if (target < 0 || target > static_cast<std::int64_t>(length()))
            return -1;
        end_ = std::max(cursor_, end_);
        cursor_ = start_ + target;
        return as_position(target);
    }
    long gtell() override { return as_position(cursor_ - start_); }
    void flush() override {}
    /// There is no device below; none is needed.
    void setIO(GIO* io) override { delete io; }
    long remaining() override
    {
        const auto left = static_cast<std::int64_t>(length()) - (cursor_ - start_);
        return static_cast<long>(std::min<std::int64_t>(left, std::numeric_limits<long>::max()));
    }

protected:
    bool readBuffer() override { return false; }
    void writeBuffer() override { grow(1); }
    void startRead() override { throw GStreamException("A memory stream is for writing only."); }
    void startWrite() override { throw GStreamException("A memory stream is for reading only."); }
    void stopRead() override {}
    void stopWrite() override {}

private:
    static constexpr std::size_t kFirstBytes = 256;

    /// Makes room for `size` more bytes.
    void grow(std::size_t size)
    {
        constexpr std::size_t kMost = std::numeric_limits<long>::max();
        const auto used = static_cast<std::size_t>(cursor_ - start_);
        if (size > kMost - used)
            throw GStreamException("A memory stream is too long.");
        const auto room = static_cast<std::size_t>(limit_ - start_);
        const std::size_t wanted = std::max({used + size, std::min(2 * room, kMost), kFirstBytes});
        const std::size_t written = length();
        own_ = static_cast<unsigned char*>(zmr::resize_block(own_, wanted));
        start_ = own_;
        cursor_ = start_ + used;
        end_ = start_ + written;
        limit_ = start_ + wanted;
    }

    unsigned char* start_ = nullptr;
    unsigned char* end_ = nullptr;  ///< Behind the last byte, unless the cursor is further on.
    unsigned char* own_ = nullptr;
};

mpbase::mpbase() : memory_(std::make_unique<MemoryBuffer>()) {}

mpbase::~mpbase() = default;

void* mpbase::data() const
{
    return memory_->start();
}

impstream::impstream(void* data, long size, GIO::IOOpenMode mode)
{
    if (data != nullptr && size > 0)
        memory_->read_from(static_cast<const unsigned char*>(data), static_cast<std::size_t>(size));
    else
        memory_->read_from(nullptr, 0);
    init((mode & GIO::OpenRead) != 0 ? memory_.get() : nullptr);
}

impstream::impstream(std::span<const unsigned char> data)
{
    memory_->read_from(data.data(), data.size());
    init(memory_.get());
}

impstream::~impstream() = default;

ompstream::ompstream()
{
    memory_->write_own();
    init(memory_.get());
}

ompstream::~ompstream() = default;

std::span<const unsigned char> ompstream::bytes() const
{
    return {memory_->start(), memory_->length()};
}
