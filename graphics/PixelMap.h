#pragma once

#include "foundation/GStreamable.h"
#include "graphics/AbstractImage.h"
#include "graphics/PixelBuffer.h"
#include "platform/PlatformTypes.h"

#include <memory>
#include <optional>
#include <span>

/// A picture in memory: 24 bits a pixel, or 32 with alpha. At most PixelBuffer::kMaxPixels (2^28).
/// Streamed as raw rows, so that small pictures in large files load without a codec; docs/images.md
/// tells the bytes. Pictures with transparent parts keep it through loading, resizing, streaming
/// and the file formats that have it. Not for two threads at once, but for reading.
class ZMR_GV_API PixelMap : public GStreamable, public AbstractImage {
    G_DECLARE_CLASS(PixelMap)

public:
    /// Black, and transparent where the format has alpha. (0, 0, Format24, null) is the empty map,
    /// to be loaded. A copy is kept of `palette`, which may be null. Throws GLibraryException for a
    /// negative or too large size and for a format that is none.
    PixelMap(int width, int height, MapFormat format, const GPalette* palette);
    /// Takes over the pixels.
    explicit PixelMap(zmr::PixelBuffer pixels);
    /// The empty map, for reading.
    explicit PixelMap(StreamableInit init);
    /// A copy has pixels of its own and no handle.
    PixelMap(const PixelMap& other);
    PixelMap& operator=(const PixelMap& other);
    ~PixelMap() override;

    /// Reads a picture file of any known format; the map takes over its size, and Format32 exactly
    /// when the file has alpha. Throws GLibraryException, whose message names the file and what is
    /// wrong, and then leaves the map as it was.
    void load(const char* file);
    /// Reads a picture from the bytes of a file. As above, but the message names no file.
    void load(std::span<const unsigned char> bytes);
    /// Changes the size. The upper left part stays, what is new is as in a new map. See
    /// PixelMapTools::Resize for a scaled picture. Throws as the constructor does.
    void resize(int width, int height);

    /// Sets a pixel's colour, with full alpha. Outside the map nothing happens.
    void set_pixel(int x, int y, const RGB_Color& color);
    /// The colour of a pixel; black outside the map.
    [[nodiscard]] RGB_Color get_pixel(int x, int y) const;
    /// Sets a pixel's alpha. Outside the map, and without alpha, nothing happens.
    void set_alpha(int x, int y, unsigned char alpha);
    /// The alpha of a pixel: 255 without alpha, 0 outside the map.
    [[nodiscard]] unsigned char get_alpha(int x, int y) const;

    /// A flag for the map's user: whether the pixels are what they should be. Set when a map that
    /// is not empty is made, loaded or read; not streamed.
    [[nodiscard]] bool isValid() const { return valid_; }
    void setValid(bool valid) { valid_ = valid; }

    [[nodiscard]] int get_width() const override { return pixels_.width(); }
    [[nodiscard]] int get_height() const override { return pixels_.height(); }
    [[nodiscard]] MapFormat get_format() const override;
    [[nodiscard]] const GPalette* get_palette() const override;
    [[nodiscard]] MapFormat get_buffer_format() const override { return get_format(); }
    bool start_read() override;
    void stop_read() override;
    bool start_write() override;
    /// Drops the handle, whose pixels are the former ones.
    void stop_write() override;
    void get_color_line(int y, RGB_Color* line) const override;
    void set_color_line(int y, const RGB_Color* line) override;
    /// The pixels themselves.
    [[nodiscard]] const zmr::PixelBuffer& pixels() const { return pixels_; }
    /// The pixels for writing: call before each round of changes, because it drops the handle.
    [[nodiscard]] zmr::PixelBuffer& edit_pixels();

    /// Draws the part of the map at (`x`, `y`), `width` by `height` pixels, into the rectangle from
    /// (`left`, `top`) to (`right`, `bottom`), scaled by the device context's stretch mode. A map
    /// with alpha is blended over what is there. What lies outside the map is left out, with its
    /// share of the rectangle; an empty part or rectangle draws nothing. Natively there is nothing
    /// to draw on: throws CNotSupportedException.
    void stretch(HDC dc, int x, int y, int width, int height, int left, int top, int right,
                 int bottom) const;
    /// A bitmap with the pixels as they are now, kept and freed by the map and made anew after a
    /// change. Null for an empty map, and natively.
    HBITMAP create_handle();

    [[nodiscard]] GStreamable* clone(bool deep) override;
    void read(ipstream& in) override;
    void write(opstream& out) override;

    static constexpr unsigned char kVersion = 1;

private:
    /// Frees a bitmap; natively there is none.
    struct CloseBitmap {
        void operator()(HBITMAP bitmap) const noexcept;
    };

    void take(zmr::PixelBuffer pixels);
    [[nodiscard]] bool contains(int x, int y) const
    {
        return x >= 0 && y >= 0 && x < pixels_.width() && y < pixels_.height();
    }

    zmr::PixelBuffer pixels_;
    std::optional<GPalette> palette_;
    std::unique_ptr<HBITMAP__, CloseBitmap> handle_;
    bool valid_ = false;
};
