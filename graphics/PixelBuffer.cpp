#include "graphics/PixelBuffer.h"

#include "foundation/GException.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <new>
#include <utility>

namespace zmr {

PixelBuffer::PixelBuffer(int width, int height, int channels)
    : width_(width), height_(height), channels_(channels)
{
    assert(channels == 3 || channels == 4);
    if (!fits(width, height)) {
        GLibraryException error;
        error.message("A picture of %d by %d pixels is too large.", width, height);
        throw error;
    }
    bytes_.reset(new (std::nothrow) unsigned char[std::max<std::size_t>(size_bytes(), 1)]);
    if (!bytes_)
        throw OutOfMemory_Exception();
}

PixelBuffer::PixelBuffer(int width, int height, int channels,
                         std::unique_ptr<unsigned char[]> bytes)
    : bytes_(std::move(bytes)), width_(width), height_(height), channels_(channels)
{
    assert(fits(width, height) && (channels == 3 || channels == 4));
}

bool PixelBuffer::fits(std::int64_t width, std::int64_t height)
{
    constexpr auto kLimit = static_cast<std::int64_t>(kMaxPixels);
    if (width < 0 || height < 0 || width > kLimit || height > kLimit)
        return false;
    return width * height <= kLimit;
}

PixelBuffer PixelBuffer::copy() const
{
    if (is_empty())
        return {};
    PixelBuffer result(width_, height_, channels_);
    std::memcpy(result.data(), data(), size_bytes());
    return result;
}

void PixelBuffer::clear()
{
    if (!is_empty())
        std::memset(data(), 0, size_bytes());
}

PixelBuffer oriented(PixelBuffer picture, int orientation)
{
    if (orientation <= 1 || orientation > 8 || picture.is_empty())
        return picture;
    const bool turned = orientation >= 5;  // rows become columns
    const bool from_right =
        orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool from_bottom =
        orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    const int width = turned ? picture.height() : picture.width();
    const int height = turned ? picture.width() : picture.height();
    PixelBuffer result(width, height, picture.channels());
    const auto step = static_cast<std::size_t>(picture.channels());
    for (int y = 0; y < height; ++y) {
        unsigned char* to = result.row(y);
        for (int x = 0; x < width; ++x, to += step) {
            int source_x = turned ? y : x;
            int source_y = turned ? x : y;
            if (from_right)
                source_x = picture.width() - 1 - source_x;
            if (from_bottom)
                source_y = picture.height() - 1 - source_y;
            std::memcpy(to, picture.pixel(source_x, source_y), step);
        }
    }
    return result;
}

PixelBuffer laid_on_white(const PixelBuffer& picture)
{
    if (!picture.has_alpha())
        return picture.copy();
    PixelBuffer result(picture.width(), picture.height(), 3);
    const unsigned char* from = picture.data();
    unsigned char* to = result.data();
    for (const unsigned char* end = from + picture.size_bytes(); from != end; from += 4, to += 3) {
        const int alpha = from[3];
        for (int part = 0; part < 3; ++part)
            to[part] =
                static_cast<unsigned char>((from[part] * alpha + 255 * (255 - alpha) + 127) / 255);
    }
    return result;
}

PixelBuffer with_channels(const PixelBuffer& picture, int channels)
{
    if (picture.channels() == channels || picture.is_empty())
        return picture.copy();
    PixelBuffer result(picture.width(), picture.height(), channels);
    const unsigned char* from = picture.data();
    const unsigned char* end = from + picture.size_bytes();
    unsigned char* to = result.data();
    for (; from != end; from += picture.channels(), to += channels) {
        std::memcpy(to, from, 3);
        if (channels == 4)
            to[3] = 255;
    }
    return result;
}

void remove_premultiplication(PixelBuffer& picture)
{
    if (!picture.has_alpha())
        return;
    unsigned char* end = picture.data() + picture.size_bytes();
    for (unsigned char* pixel = picture.data(); pixel != end; pixel += 4) {
        const int alpha = pixel[3];
        if (alpha == 0 || alpha == 255)
            continue;
        for (int part = 0; part < 3; ++part)
            pixel[part] =
                static_cast<unsigned char>(std::min((pixel[part] * 255 + alpha / 2) / alpha, 255));
    }
}

}  // namespace zmr
