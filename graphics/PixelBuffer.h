#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace zmr {

/// Rows of pixels, the top one first, without gaps: 3 bytes a pixel (blue, green, red) or 4 (and
/// alpha, 0 transparent, not multiplied in). Movable; an empty one has no pixels.
class ZMR_GV_API PixelBuffer {
public:
    /// The most pixels of any picture: 1 GiB with alpha. Larger ones are refused wherever they come
    /// from.
    static constexpr std::uint64_t kMaxPixels = std::uint64_t{1} << 28;

    PixelBuffer() = default;
    /// Pixels of undefined content. `channels` is 3 or 4. Throws GLibraryException when a side is
    /// negative or the picture has more than kMaxPixels, OutOfMemory_Exception without memory.
    PixelBuffer(int width, int height, int channels);
    /// Takes over `bytes`, which hold just the rows.
    PixelBuffer(int width, int height, int channels, std::unique_ptr<unsigned char[]> bytes);

    /// True when width and height are sides of a picture that may be made.
    [[nodiscard]] static bool fits(std::int64_t width, std::int64_t height);

    [[nodiscard]] PixelBuffer copy() const;
    /// Sets all bytes to 0: black, transparent where there is alpha.
    void clear();

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] int channels() const { return channels_; }
    [[nodiscard]] bool has_alpha() const { return channels_ == 4; }
    [[nodiscard]] bool is_empty() const { return width_ == 0 || height_ == 0; }
    [[nodiscard]] std::size_t row_bytes() const
    {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(channels_);
    }
    [[nodiscard]] std::size_t size_bytes() const
    {
        return row_bytes() * static_cast<std::size_t>(height_);
    }
    [[nodiscard]] unsigned char* data() { return bytes_.get(); }
    [[nodiscard]] const unsigned char* data() const { return bytes_.get(); }
    /// Row `y` counts from the top.
    [[nodiscard]] unsigned char* row(int y)
    {
        return bytes_.get() + static_cast<std::size_t>(y) * row_bytes();
    }
    [[nodiscard]] const unsigned char* row(int y) const
    {
        return bytes_.get() + static_cast<std::size_t>(y) * row_bytes();
    }
    [[nodiscard]] unsigned char* pixel(int x, int y)
    {
        return row(y) + static_cast<std::size_t>(x) * static_cast<std::size_t>(channels_);
    }
    [[nodiscard]] const unsigned char* pixel(int x, int y) const
    {
        return row(y) + static_cast<std::size_t>(x) * static_cast<std::size_t>(channels_);
    }

private:
    std::unique_ptr<unsigned char[]> bytes_;
    int width_ = 0;
    int height_ = 0;
    int channels_ = 3;
};

/// The picture turned as the orientation of TIFF and EXIF tells (1 to 8, 1 is upright; other values
/// count as 1).
[[nodiscard]] PixelBuffer oriented(PixelBuffer picture, int orientation);
/// The picture laid on white, without alpha.
[[nodiscard]] PixelBuffer laid_on_white(const PixelBuffer& picture);
/// The picture in 3 or 4 channels: alpha is dropped, or added as opaque. An equal count copies.
[[nodiscard]] PixelBuffer with_channels(const PixelBuffer& picture, int channels);
/// Divides the colours of a 4-channel picture by their alpha; colours above it become full.
void remove_premultiplication(PixelBuffer& picture);

}  // namespace zmr
