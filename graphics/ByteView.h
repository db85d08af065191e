#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zmr {

/// Numbers at places of a block of bytes from anywhere. What lies beyond the end reads as 0; `has`
/// tells the difference. Positions are 64 bits wide, so that sums of 32-bit fields don't wrap.
class ByteView {
public:
    explicit ByteView(std::span<const unsigned char> bytes) : bytes_(bytes) {}

    [[nodiscard]] std::uint64_t size() const { return bytes_.size(); }
    [[nodiscard]] bool has(std::uint64_t position, std::uint64_t count) const
    {
        return position <= bytes_.size() && count <= bytes_.size() - position;
    }
    [[nodiscard]] const unsigned char* at(std::uint64_t position) const
    {
        return bytes_.data() + position;
    }
    [[nodiscard]] std::span<const unsigned char> all() const { return bytes_; }

    [[nodiscard]] std::uint32_t u8(std::uint64_t position) const
    {
        return has(position, 1) ? bytes_[static_cast<std::size_t>(position)] : 0u;
    }
    [[nodiscard]] std::uint32_t le16(std::uint64_t position) const
    {
        return has(position, 2) ? u8(position) | u8(position + 1) << 8 : 0u;
    }
    [[nodiscard]] std::uint32_t le32(std::uint64_t position) const
    {
        return has(position, 4) ? le16(position) | le16(position + 2) << 16 : 0u;
    }
    [[nodiscard]] std::uint32_t be16(std::uint64_t position) const
    {
        return has(position, 2) ? u8(position) << 8 | u8(position + 1) : 0u;
    }
    [[nodiscard]] std::uint32_t be32(std::uint64_t position) const
    {
        return has(position, 4) ? be16(position) << 16 | be16(position + 2) : 0u;
    }

private:
    std::span<const unsigned char> bytes_;
};

}  // namespace zmr
