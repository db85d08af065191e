#include "graphics/PixelMap.h"

#include "foundation/GException.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "graphics/PictureFile.h"

#include <algorithm>
#include <cstring>
#include <utility>

G_DEFINE_CLASS(PixelMap, GStreamable);

namespace {

int channels_of(AbstractImage::MapFormat format)
{
    if (format == AbstractImage::Format24)
        return 3;
    if (format == AbstractImage::Format32)
        return 4;
    throw GLibraryException("A picture can't be made in this format.");
}

/// Black, and transparent where there is alpha; without memory for an empty one.
zmr::PixelBuffer blank_pixels(int width, int height, int channels)
{
    zmr::PixelBuffer pixels(width, height, channels);
    pixels.clear();
    return pixels;
}

}  // namespace

PixelMap::PixelMap(int width, int height, MapFormat format, const GPalette* palette)
    : pixels_(blank_pixels(width, height, channels_of(format))), valid_(!pixels_.is_empty())
{
    if (palette != nullptr)
        palette_ = *palette;
}

PixelMap::PixelMap(zmr::PixelBuffer pixels)
    : pixels_(std::move(pixels)), valid_(!pixels_.is_empty())
{
}

PixelMap::PixelMap(StreamableInit) {}

PixelMap::PixelMap(const PixelMap& other)
    : GStreamable(other),
      AbstractImage(other),
      pixels_(other.pixels_.copy()),
      palette_(other.palette_),
      valid_(other.valid_)
{
}

PixelMap& PixelMap::operator=(const PixelMap& other)
{
    if (this == &other)
        return *this;
    zmr::PixelBuffer pixels = other.pixels_.copy();
    palette_ = other.palette_;
    take(std::move(pixels));
    valid_ = other.valid_;
    GStreamable::operator=(other);
    return *this;
}

PixelMap::~PixelMap() = default;

void PixelMap::load(const char* file)
{
    take(zmr::load_picture_file(file));
}

void PixelMap::load(std::span<const unsigned char> bytes)
{
    take(zmr::decode_picture(bytes));
}

void PixelMap::resize(int width, int height)
{
    zmr::PixelBuffer pixels = blank_pixels(width, height, pixels_.channels());
    const int rows = std::min(height, pixels_.height());
    const std::size_t row_bytes = std::min(pixels.row_bytes(), pixels_.row_bytes());
    for (int y = 0; y < rows && row_bytes > 0; ++y)
        std::memcpy(pixels.row(y), pixels_.row(y), row_bytes);
    take(std::move(pixels));
}

void PixelMap::set_pixel(int x, int y, const RGB_Color& color)
{
    if (!contains(x, y))
        return;
    handle_.reset();
    unsigned char* pixel = pixels_.pixel(x, y);
    std::memcpy(pixel, &color, sizeof color);
    if (pixels_.has_alpha())
        pixel[3] = 255;
}

RGB_Color PixelMap::get_pixel(int x, int y) const
{
    RGB_Color color;
    if (contains(x, y))
        std::memcpy(&color, pixels_.pixel(x, y), sizeof color);
    return color;
}

void PixelMap::set_alpha(int x, int y, unsigned char alpha)
{
    if (!contains(x, y) || !pixels_.has_alpha())
        return;
    handle_.reset();
    pixels_.pixel(x, y)[3] = alpha;
}

unsigned char PixelMap::get_alpha(int x, int y) const
{
    if (!contains(x, y))
        return 0;
    return pixels_.has_alpha() ? pixels_.pixel(x, y)[3] : 255;
}

AbstractImage::MapFormat PixelMap::get_format() const
{
    return pixels_.has_alpha() ? Format32 : Format24;
}

const GPalette* PixelMap::get_palette() const
{
    return palette_ ? &*palette_ : nullptr;
}

bool PixelMap::start_read()
{
    return !pixels_.is_empty();
}

void PixelMap::stop_read() {}

bool PixelMap::start_write()
{
    return !pixels_.is_empty();
}

void PixelMap::stop_write()
{
    handle_.reset();
}

void PixelMap::get_color_line(int y, RGB_Color* line) const
{
    if (y < 0 || y >= pixels_.height())
        return;
    for (int x = 0; x < pixels_.width(); ++x)
        std::memcpy(&line[x], pixels_.pixel(x, y), sizeof *line);
}

void PixelMap::set_color_line(int y, const RGB_Color* line)
{
    for (int x = 0; x < pixels_.width(); ++x)
        set_pixel(x, y, line[x]);
}

zmr::PixelBuffer& PixelMap::edit_pixels()
{
    handle_.reset();
    return pixels_;
}

GStreamable* PixelMap::clone(bool deep)
{
    if (!hasTheSameClassAs(&metaclass_))  // a derived class has more to copy
        return GStreamable::clone(deep);
    return new PixelMap(*this);
}

void PixelMap::read(ipstream& in)
{
    const unsigned char version = in.readByte();
    if (version > kVersion)
        throw GLibraryException("This picture was written by a newer program.");
    GStreamable::read(in);
    std::int32_t width = 0;
    std::int32_t height = 0;
    in >> width >> height;
    const unsigned char format = in.readByte();
    if ((format != Format24 && format != Format32) || !zmr::PixelBuffer::fits(width, height))
        throw GStreamException("The picture in this file is damaged.");
    const int channels = format == Format32 ? 4 : 3;
    const std::size_t size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                             static_cast<std::size_t>(channels);
    zmr::PixelBuffer pixels(width, height, channels, in.read_block(size));
    palette_.reset();
    take(std::move(pixels));
}

void PixelMap::write(opstream& out)
{
    out.writeByte(kVersion);
    GStreamable::write(out);
    out << static_cast<std::int32_t>(pixels_.width());
    out << static_cast<std::int32_t>(pixels_.height());
    out.writeByte(static_cast<unsigned char>(get_format()));
    // Row by row: a `long` may hold 31 bits only.
    for (int y = 0; y < pixels_.height() && !pixels_.is_empty(); ++y)
        out.writeBytes(pixels_.row(y), static_cast<long>(pixels_.row_bytes()));
}

void PixelMap::take(zmr::PixelBuffer pixels)
{
    pixels_ = std::move(pixels);
    handle_.reset();
    valid_ = !pixels_.is_empty();
}
