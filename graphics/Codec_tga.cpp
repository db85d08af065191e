#include "graphics/ImageCodecs.h"
#include "graphics/TgaHeader.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace zmr {
namespace {

/// Five bits to eight.
unsigned char widen5(std::uint32_t part)
{
    return static_cast<unsigned char>(((part & 31) * 255 + 15) / 31);
}

/// How stored pixels become 3 or 4 bytes.
class TgaPixels {
public:
    TgaPixels(const TgaHeader& header, ByteView bytes, bool alpha)
        : colors_(header.colors()), stored_bytes_(header.pixel_bytes()), channels_(alpha ? 4 : 3)
    {
        if (colors_ != TgaHeader::Colors::Palette)
            return;
        map_first_ = header.map_first;
        map_.resize(header.map_count);
        const std::uint64_t width = (header.map_bits + 7) / 8;
        const unsigned char* entry = bytes.at(18 + header.id_bytes);
        for (Entry& color : map_) {
            convert_true(entry, static_cast<std::uint32_t>(width), color.data());
            entry += width;
        }
    }

    [[nodiscard]] std::uint32_t stored_bytes() const { return stored_bytes_; }
    [[nodiscard]] std::uint32_t channels() const { return channels_; }
    /// Stored pixels are the map's own.
    [[nodiscard]] bool is_plain() const
    {
        return colors_ == TgaHeader::Colors::True && stored_bytes_ == channels_;
    }

    void convert(const unsigned char* from, unsigned char* to) const
    {
        if (colors_ == TgaHeader::Colors::True) {
            convert_true(from, stored_bytes_, to);
            return;
        }
        if (colors_ == TgaHeader::Colors::Grey) {
            to[0] = to[1] = to[2] = from[0];
            if (channels_ == 4)
                to[3] = from[1];
            return;
        }
        const std::uint32_t index = stored_bytes_ == 2 ? from[0] | from[1] << 8u : from[0];
        static constexpr Entry kBlack = {0, 0, 0, 255};
        const std::uint32_t place = index - map_first_;  // wraps below the first
        const Entry& color = place < map_.size() ? map_[place] : kBlack;
        std::memcpy(to, color.data(), channels_);
    }

private:
    using Entry = std::array<unsigned char, 4>;

    void convert_true(const unsigned char* from, std::uint32_t width, unsigned char* to) const
    {
        if (width == 2) {
            const std::uint32_t value = from[0] | from[1] << 8u;
            to[0] = widen5(value);
            to[1] = widen5(value >> 5);
            to[2] = widen5(value >> 10);
            if (channels_ == 4)
                to[3] = (value & 0x8000) != 0 ? 255 : 0;
            return;
        }
        std::memcpy(to, from, 3);
        if (channels_ == 4)
            to[3] = width == 4 ? from[3] : 255;
    }

    TgaHeader::Colors colors_;
    std::uint32_t stored_bytes_;
    std::uint32_t channels_;
    std::uint32_t map_first_ = 0;
    std::vector<Entry> map_;
};

void convert_run(const TgaPixels& pixels, const unsigned char* from, std::size_t count,
                 unsigned char* to)
{
    if (pixels.is_plain()) {
        std::memcpy(to, from, count * pixels.channels());
        return;
    }
    for (std::size_t index = 0; index < count; ++index) {
        pixels.convert(from, to);
        from += pixels.stored_bytes();
        to += pixels.channels();
    }
}

/// Packets of a count byte and either one pixel to repeat or that many pixels. Runs may cross rows,
/// as some writers' do.
void unpack_runs(const TgaPixels& pixels, std::span<const unsigned char> from, PixelBuffer& picture)
{
    const std::size_t stored = pixels.stored_bytes();
    const std::size_t channels = pixels.channels();
    unsigned char* to = picture.data();
    std::size_t left = picture.size_bytes() / channels;
    while (left > 0) {
        if (from.empty())
            refuse_image("the TGA data ends too early");
        const bool repeated = (from[0] & 0x80) != 0;
        const std::size_t count = std::min<std::size_t>((from[0] & 0x7fu) + 1, left);
        const std::size_t needed = stored * (repeated ? 1 : count);
        if (from.size() - 1 < needed)
            refuse_image("the TGA data ends too early");
        if (repeated) {
            pixels.convert(from.data() + 1, to);
            for (std::size_t index = 1; index < count; ++index)
                std::memcpy(to + index * channels, to, channels);
        } else {
            convert_run(pixels, from.data() + 1, count, to);
        }
        to += count * channels;
        left -= count;
        from = from.subspan(1 + needed);
    }
}

void mirror_rows(PixelBuffer& picture)
{
    const int channels = picture.channels();
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width() / 2; ++x)
            std::swap_ranges(picture.pixel(x, y), picture.pixel(x, y) + channels,
                             picture.pixel(picture.width() - 1 - x, y));
}

void reverse_rows(PixelBuffer& picture)
{
    for (int y = 0; y < picture.height() / 2; ++y)
        std::swap_ranges(picture.row(y), picture.row(y) + picture.row_bytes(),
                         picture.row(picture.height() - 1 - y));
}

}  // namespace

ImageHead read_tga_head(ByteView bytes)
{
    const TgaHeader header(bytes);
    if (!bytes.has(0, 18))
        refuse_image("the TGA data ends too early");
    if (!header.is_plausible())
        refuse_image("the TGA header is damaged or of an unknown kind");
    if (!bytes.has(0, header.pixels_at()))
        refuse_image("the TGA data ends too early");
    const std::uint64_t left = bytes.size() - header.pixels_at();
    ImageHead head;
    head.width = header.width;
    head.height = header.height;
    const TgaHeader::Alpha alpha = header.alpha(bytes);
    head.alpha = alpha != TgaHeader::Alpha::None;
    head.premultiplied = alpha == TgaHeader::Alpha::Premultiplied;
    head.max_pixels = header.run_lengths() ? left / (1 + header.pixel_bytes()) * 128 + 128
                                           : left / header.pixel_bytes();
    if (!header.run_lengths() && head.max_pixels < header.pixel_count())
        refuse_image("the TGA data ends too early");
    return head;
}

PixelBuffer decode_tga(std::span<const unsigned char> bytes, const ImageHead& head)
{
    const ByteView view(bytes);
    const TgaHeader header(view);
    const TgaPixels pixels(header, view, head.alpha);
    PixelBuffer picture(static_cast<int>(head.width), static_cast<int>(head.height),
                        head.alpha ? 4 : 3);
    const auto stored = bytes.subspan(static_cast<std::size_t>(header.pixels_at()));
    if (header.run_lengths()) {
        unpack_runs(pixels, stored, picture);
        if (!header.from_top())
            reverse_rows(picture);
    } else {
        const std::size_t row_bytes = std::size_t{header.width} * pixels.stored_bytes();
        for (int y = 0; y < picture.height(); ++y) {
            const int row = header.from_top() ? y : picture.height() - 1 - y;
            convert_run(pixels, stored.data() + static_cast<std::size_t>(y) * row_bytes,
                        header.width, picture.row(row));
        }
    }
    if (header.from_right())
        mirror_rows(picture);
    return picture;
}

std::vector<unsigned char> encode_tga(const PixelBuffer& picture)
{
    constexpr int kLargestSide = 0xffff;
    if (picture.width() > kLargestSide || picture.height() > kLargestSide)
        refuse_image("a TGA file holds at most 65,535 pixels in each direction");
    std::vector<unsigned char> bytes(18);
    bytes[2] = static_cast<unsigned char>(TgaHeader::Colors::True);
    bytes[12] = static_cast<unsigned char>(picture.width() & 0xff);
    bytes[13] = static_cast<unsigned char>(picture.width() >> 8);
    bytes[14] = static_cast<unsigned char>(picture.height() & 0xff);
    bytes[15] = static_cast<unsigned char>(picture.height() >> 8);
    bytes[16] = static_cast<unsigned char>(picture.channels() * 8);
    bytes[17] = picture.has_alpha() ? 8 : 0;  // alpha bits; the bottom row comes first
    bytes.reserve(bytes.size() + picture.size_bytes());
    for (int y = picture.height() - 1; y >= 0; --y)
        bytes.insert(bytes.end(), picture.row(y), picture.row(y) + picture.row_bytes());
    return bytes;
}

}  // namespace zmr
