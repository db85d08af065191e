#include "graphics/BmpHeader.h"
#include "graphics/ImageCodecs.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace zmr {
namespace {

/// One part of a pixel of 16 or 32 bits, widened or narrowed to eight.
class BitField {
public:
    explicit BitField(std::uint32_t mask)
        : mask_(mask), shift_(mask == 0 ? 0 : std::countr_zero(mask))
    {
        const int bits = std::popcount(mask);
        if (bits > 8)
            shift_ += bits - 8;
        const std::uint32_t most = bits >= 8 ? 255u : (1u << bits) - 1;
        for (std::uint32_t value = 0; value <= most && most != 0; ++value)
            table_[value] = static_cast<unsigned char>((value * 255 + most / 2) / most);
    }
    [[nodiscard]] unsigned char of(std::uint32_t pixel) const
    {
        return table_[(pixel & mask_) >> shift_ & 0xff];
    }

private:
    std::uint32_t mask_;
    int shift_;
    std::array<unsigned char, 256> table_{};
};

std::uint32_t load32(const unsigned char* from)
{
    std::uint32_t value = 0;
    std::memcpy(&value, from, sizeof value);
    return value;
}

/// Drops the fourth byte of each pixel. Two pixels a step: eight bytes are read, and eight are
/// written of which six count.
void drop_fourth(const unsigned char* from, unsigned char* to, std::size_t count)
{
    for (; count > 2; count -= 2, from += 8, to += 6) {
        const std::uint64_t pixels = (load32(from) & 0xffffffu) |
                                     static_cast<std::uint64_t>(load32(from + 4) & 0xffffffu) << 24;
        std::memcpy(to, &pixels, sizeof pixels);
    }
    for (; count > 0; --count, from += 4, to += 3)
        std::memcpy(to, from, 3);
}

/// Rows of pixels of one bit field per part.
class FieldRows {
public:
    explicit FieldRows(const BmpHeader& header)
        : fields_{BitField(header.masks[0]), BitField(header.masks[1]), BitField(header.masks[2]),
                  BitField(header.masks[3])},
          width_(header.width),
          stored_bytes_(header.depth / 8),
          channels_(header.has_alpha() ? 4 : 3),
          plain_(header.depth == 32 && header.masks[0] == 0xff && header.masks[1] == 0xff00 &&
                 header.masks[2] == 0xff0000 &&
                 (header.masks[3] == 0 || header.masks[3] == 0xff000000))
    {
    }

    void convert(const unsigned char* from, unsigned char* to) const
    {
        if (plain_ && channels_ == 4) {
            std::memcpy(to, from, width_ * 4);
            return;
        }
        if (plain_) {
            drop_fourth(from, to, width_);
            return;
        }
        for (std::size_t x = 0; x < width_; ++x, from += stored_bytes_, to += channels_) {
            const std::uint32_t pixel = stored_bytes_ == 2 ? from[0] | from[1] << 8u : load32(from);
            for (std::size_t part = 0; part < channels_; ++part)
                to[part] = fields_[part].of(pixel);
        }
    }

private:
    std::array<BitField, 4> fields_;
    std::size_t width_;
    std::size_t stored_bytes_;
    std::size_t channels_;
    bool plain_;
};

using Palette = std::array<std::array<unsigned char, 3>, 256>;

/// Indices beyond the stored colours are black.
Palette read_palette(const BmpHeader& header, ByteView bytes)
{
    Palette palette{};
    for (std::uint32_t index = 0; index < header.palette_count; ++index) {
        const std::uint64_t place =
            header.palette_at + std::uint64_t{index} * header.palette_entry_bytes;
        std::memcpy(palette[index].data(), bytes.at(place), 3);
    }
    return palette;
}

void convert_indexed(const Palette& palette, std::uint32_t depth, const unsigned char* from,
                     unsigned char* to, std::size_t width)
{
    const std::uint32_t per_byte = 8 / depth;
    const std::uint32_t mask = (1u << depth) - 1;
    for (std::size_t x = 0; x < width; ++x, to += 3) {
        const auto within = static_cast<std::uint32_t>(x % per_byte);
        const std::uint32_t index = from[x / per_byte] >> (8 - depth * (within + 1)) & mask;
        std::memcpy(to, palette[index].data(), 3);
    }
}

/// Walks the run lengths: pairs of count and index, and after a 0 the escapes end of row, end of
/// picture, skip, and literal indices. Skipped pixels have index 0.
class RunReader {
public:
    RunReader(const BmpHeader& header, std::span<const unsigned char> from, const Palette& palette,
              PixelBuffer& picture)
        : nibbles_(header.packing == BmpHeader::Packing::Runs4),
          from_(from),
          palette_(palette),
          picture_(picture)
    {
    }

    void run()
    {
        for (std::size_t pixel = 0; pixel < picture_.size_bytes(); pixel += 3)
            std::memcpy(picture_.data() + pixel, palette_[0].data(), 3);
        while (y_ < picture_.height() && !is_complete()) {
            const std::uint32_t count = next();
            const std::uint32_t value = next();
            if (count > 0)
                put_run(count, value);
            else if (value >= 3)
                put_literals(value);
            else if (!escape(value))
                return;
        }
    }

private:
    /// A picture that is all there may lack its closing mark.
    [[nodiscard]] bool is_complete() const
    {
        return position_ == from_.size() && y_ == picture_.height() - 1 && x_ == picture_.width();
    }
    std::uint32_t next()
    {
        if (position_ == from_.size())
            refuse_image("the BMP data ends too early");
        return from_[position_++];
    }
    void put(std::uint32_t index)
    {
        if (x_ == picture_.width())
            return;
        std::memcpy(picture_.pixel(x_, picture_.height() - 1 - y_), palette_[index].data(), 3);
        ++x_;
    }
    void put_run(std::uint32_t count, std::uint32_t value)
    {
        for (std::uint32_t pixel = 0; pixel < count; ++pixel)
            put(nibbles_ ? (pixel % 2 == 0 ? value >> 4 : value & 15) : value);
    }
    void put_literals(std::uint32_t count)
    {
        const std::uint32_t bytes = nibbles_ ? (count + 1) / 2 : count;
        std::uint32_t value = 0;
        for (std::uint32_t pixel = 0; pixel < count; ++pixel) {
            if (!nibbles_ || pixel % 2 == 0)
                value = next();
            put(nibbles_ ? (pixel % 2 == 0 ? value >> 4 : value & 15) : value);
        }
        if (bytes % 2 != 0)  // kept to 16 bits
            static_cast<void>(next());
    }
    /// False at the end of the picture.
    bool escape(std::uint32_t value)
    {
        if (value == 1)
            return false;
        if (value == 0) {
            x_ = 0;
            ++y_;
            return true;
        }
        x_ = std::min(x_ + static_cast<int>(next()), picture_.width());
        y_ += static_cast<int>(next());
        return true;
    }

    bool nibbles_;
    std::span<const unsigned char> from_;
    const Palette& palette_;
    PixelBuffer& picture_;
    std::size_t position_ = 0;
    int x_ = 0;
    int y_ = 0;
};

void put16(std::vector<unsigned char>& bytes, std::uint32_t value)
{
    bytes.push_back(static_cast<unsigned char>(value & 0xff));
    bytes.push_back(static_cast<unsigned char>(value >> 8 & 0xff));
}

void put32(std::vector<unsigned char>& bytes, std::uint32_t value)
{
    put16(bytes, value & 0xffff);
    put16(bytes, value >> 16);
}

}  // namespace

ImageHead read_bmp_head(ByteView bytes)
{
    const BmpHeader header(bytes);
    ImageHead head;
    head.width = header.width;
    head.height = header.height;
    head.alpha = header.has_alpha();
    const std::uint64_t left = bytes.size() - header.pixels_at;
    if (header.has_runs()) {
        head.max_pixels = left * 1024;  // eight times what runs alone reach, for skipped parts
        return head;
    }
    if (header.width == 0 || header.height == 0)
        return head;
    // The last row may lack the bytes that fill it up to 32 bits.
    const std::uint64_t last_row = (std::uint64_t{header.width} * header.depth + 7) / 8;
    if (left < last_row || (left - last_row) / header.row_bytes() < header.height - 1)
        refuse_image("the BMP data ends too early");
    head.max_pixels = PixelBuffer::kMaxPixels;
    return head;
}

PixelBuffer decode_bmp(std::span<const unsigned char> bytes, const ImageHead& head)
{
    const ByteView view(bytes);
    const BmpHeader header(view);
    PixelBuffer picture(static_cast<int>(head.width), static_cast<int>(head.height),
                        head.alpha ? 4 : 3);
    const auto stored = bytes.subspan(static_cast<std::size_t>(header.pixels_at));
    if (header.has_runs()) {
        const Palette palette = read_palette(header, view);
        RunReader(header, stored, palette, picture).run();
        return picture;
    }
    const auto for_each_row = [&](auto convert) {
        for (int y = 0; y < picture.height(); ++y) {
            const int row = header.from_top ? y : picture.height() - 1 - y;
            convert(stored.data() + static_cast<std::size_t>(y) * header.row_bytes(),
                    picture.row(row));
        }
    };
    if (header.depth <= 8) {
        const Palette palette = read_palette(header, view);
        for_each_row([&](const unsigned char* from, unsigned char* to) {
            convert_indexed(palette, header.depth, from, to, header.width);
        });
    } else if (header.depth == 24) {
        for_each_row([&](const unsigned char* from, unsigned char* to) {
            std::memcpy(to, from, picture.row_bytes());
        });
    } else {
        const FieldRows rows(header);
        for_each_row([&](const unsigned char* from, unsigned char* to) { rows.convert(from, to); });
    }
    return picture;
}

std::vector<unsigned char> encode_bmp(const PixelBuffer& picture)
{
    // With alpha the header that has a mask for it, else the one that everybody reads.
    const std::uint32_t header_bytes = picture.has_alpha() ? 108 : 40;
    const std::size_t padding = (4 - picture.row_bytes() % 4) % 4;
    const std::uint32_t pixels_at = 14 + header_bytes;
    const auto pixel_bytes = static_cast<std::uint32_t>((picture.row_bytes() + padding) *
                                                        static_cast<std::size_t>(picture.height()));
    std::vector<unsigned char> bytes;
    bytes.reserve(pixels_at + pixel_bytes);
    put16(bytes, 'B' | 'M' << 8);
    put32(bytes, pixels_at + pixel_bytes);
    put32(bytes, 0);
    put32(bytes, pixels_at);
    put32(bytes, header_bytes);
    put32(bytes, static_cast<std::uint32_t>(picture.width()));
    put32(bytes, static_cast<std::uint32_t>(picture.height()));
    put16(bytes, 1);
    put16(bytes, static_cast<std::uint32_t>(picture.channels() * 8));
    put32(bytes, picture.has_alpha() ? 3 : 0);  // bit fields, or none
    put32(bytes, pixel_bytes);
    put32(bytes, 2835);  // pixels per metre: 72 per inch
    put32(bytes, 2835);
    put32(bytes, 0);
    put32(bytes, 0);
    if (picture.has_alpha()) {
        for (const std::uint32_t mask : {0xff0000u, 0xff00u, 0xffu, 0xff000000u})
            put32(bytes, mask);
        put32(bytes, 0x73524742);  // the sRGB colour space; what follows is for others
        bytes.resize(pixels_at);
    }
    for (int y = picture.height() - 1; y >= 0; --y) {
        bytes.insert(bytes.end(), picture.row(y), picture.row(y) + picture.row_bytes());
        bytes.resize(bytes.size() + padding);
    }
    return bytes;
}

}  // namespace zmr
