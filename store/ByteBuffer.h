#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace zmr {

/// Bytes to read into. Unlike a string's they are not zeroed first, and the memory is used again:
/// touching fresh pages takes longer than reading into them does.
class ByteBuffer {
public:
    ByteBuffer() = default;
    ByteBuffer(const ByteBuffer&) = delete;
    ByteBuffer& operator=(const ByteBuffer&) = delete;
    ByteBuffer(ByteBuffer&& other) noexcept
        : bytes_(std::move(other.bytes_)),
          size_(std::exchange(other.size_, 0)),
          capacity_(std::exchange(other.capacity_, 0))
    {
    }
    ByteBuffer& operator=(ByteBuffer&& other) noexcept
    {
        bytes_ = std::move(other.bytes_);
        size_ = std::exchange(other.size_, 0);
        capacity_ = std::exchange(other.capacity_, 0);
        return *this;
    }

    /// Makes room for `size` bytes, whose values are then undetermined.
    void reset(std::size_t size)
    {
        if (size > capacity_) {
            bytes_.reset();
            capacity_ = 0;
            bytes_ = std::make_unique_for_overwrite<char[]>(size);
            capacity_ = size;
        }
        size_ = size;
    }
    [[nodiscard]] char* data() { return bytes_.get(); }
    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] std::size_t capacity() const { return capacity_; }
    [[nodiscard]] std::string_view view() const { return {bytes_.get(), size_}; }

private:
    std::unique_ptr<char[]> bytes_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace zmr
