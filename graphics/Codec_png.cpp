#include "graphics/ImageCodecs.h"

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include <png.h>

// The library leaves on errors by longjmp, which runs no destructors: the functions that call
// setjmp hold no object with one, their callers hold them all.

namespace zmr {
namespace {

constexpr png_alloc_size_t kMaxChunkBytes = 8u << 20;  // of texts, profiles and their like

struct PngError {
    char text[96] = "";
};

void keep_error(png_structp png, png_const_charp text)
{
    auto* error = static_cast<PngError*>(png_get_error_ptr(png));
    std::snprintf(error->text, sizeof error->text, "%s", text);
    png_longjmp(png, 1);
}

void ignore_warning(png_structp, png_const_charp) {}

[[noreturn]] void refuse(const char* what, const PngError& error)
{
    refuse_image((std::string(what) + " (" + error.text + ")").c_str());
}

struct PngReader {
    PngError error;
    png_structp png;
    png_infop info = nullptr;
    std::span<const unsigned char> left;

    explicit PngReader(std::span<const unsigned char> bytes)
        : png(png_create_read_struct(PNG_LIBPNG_VER_STRING, &error, keep_error, ignore_warning)),
          left(bytes)
    {
        if (png != nullptr)
            info = png_create_info_struct(png);
    }
    ~PngReader() { png_destroy_read_struct(&png, &info, nullptr); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;
};

void read_bytes(png_structp png, png_bytep to, std::size_t count)
{
    auto* reader = static_cast<PngReader*>(png_get_io_ptr(png));
    if (reader->left.size() < count)
        png_error(png, "the data ends too early");
    std::memcpy(to, reader->left.data(), count);
    reader->left = reader->left.subspan(count);
}

bool read_info(PngReader& reader, int channels)
{
    png_structp png = reader.png;
    if (setjmp(png_jmpbuf(png)) != 0)
        return false;
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_chunk_malloc_max(png, kMaxChunkBytes);
    png_set_read_fn(png, &reader, read_bytes);
    png_read_info(png, reader.info);

    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    png_set_bgr(png);
    png_set_interlace_handling(png);
    if (channels == 4)
        png_set_add_alpha(png, 255, PNG_FILLER_AFTER);
    else
        png_set_strip_alpha(png);
    png_read_update_info(png, reader.info);
    return true;
}

bool read_rows(PngReader& reader, png_bytepp rows)
{
    if (setjmp(png_jmpbuf(reader.png)) != 0)
        return false;
    png_read_image(reader.png, rows);
    png_read_end(reader.png, nullptr);
    return true;
}

struct PngWriter {
    PngError error;
    png_structp png;
    png_infop info = nullptr;
    std::vector<unsigned char> bytes;
    bool no_memory = false;

    PngWriter()
        : png(png_create_write_struct(PNG_LIBPNG_VER_STRING, &error, keep_error, ignore_warning))
    {
        if (png != nullptr)
            info = png_create_info_struct(png);
    }
    ~PngWriter() { png_destroy_write_struct(&png, &info); }
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;
};

void write_bytes(png_structp png, png_bytep from, std::size_t count)
{
    auto* writer = static_cast<PngWriter*>(png_get_io_ptr(png));
    try {
        writer->bytes.insert(writer->bytes.end(), from, from + count);
    } catch (const std::exception&) {  // bad_alloc, or what the application's new-handler throws
        writer->no_memory = true;
    }
    if (writer->no_memory)
        png_error(png, "there is not enough memory");
}

void flush_nothing(png_structp) {}

bool write_all(PngWriter& writer, const PixelBuffer& picture, png_bytepp rows)
{
    png_structp png = writer.png;
    if (setjmp(png_jmpbuf(png)) != 0)
        return false;
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_write_fn(png, &writer, write_bytes, flush_nothing);
    png_set_IHDR(png, writer.info, static_cast<png_uint_32>(picture.width()),
                 static_cast<png_uint_32>(picture.height()), 8,
                 picture.has_alpha() ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, writer.info);
    png_set_bgr(png);
    png_write_image(png, rows);
    png_write_end(png, writer.info);
    return true;
}

std::vector<png_bytep> row_pointers(PixelBuffer& picture)
{
    std::vector<png_bytep> rows(static_cast<std::size_t>(picture.height()));
    for (int y = 0; y < picture.height(); ++y)
        rows[static_cast<std::size_t>(y)] = picture.row(y);
    return rows;
}

}  // namespace

PixelBuffer decode_png(std::span<const unsigned char> bytes, const ImageHead& head)
{
    PngReader reader(bytes);
    if (reader.info == nullptr)
        refuse_image("there is not enough memory");
    PixelBuffer picture(static_cast<int>(head.width), static_cast<int>(head.height),
                        head.alpha ? 4 : 3);
    std::vector<png_bytep> rows = row_pointers(picture);
    if (!read_info(reader, picture.channels()))
        refuse("the PNG data is damaged", reader.error);
    // The rows were made for the head that was read by our own rules.
    if (png_get_image_width(reader.png, reader.info) != head.width ||
        png_get_image_height(reader.png, reader.info) != head.height ||
        png_get_rowbytes(reader.png, reader.info) != picture.row_bytes())
        refuse_image("the PNG data is damaged");
    if (!read_rows(reader, rows.data()))
        refuse("the PNG data is damaged", reader.error);
    return picture;
}

std::vector<unsigned char> encode_png(const PixelBuffer& picture)
{
    PngWriter writer;
    if (writer.info == nullptr)
        refuse_image("there is not enough memory");
    std::vector<png_bytep> rows(static_cast<std::size_t>(picture.height()));
    for (int y = 0; y < picture.height(); ++y)  // only read through
        rows[static_cast<std::size_t>(y)] = const_cast<png_bytep>(picture.row(y));
    if (!write_all(writer, picture, rows.data()))
        refuse("the PNG data can't be written", writer.error);
    return std::move(writer.bytes);
}

}  // namespace zmr
