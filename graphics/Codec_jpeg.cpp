#include "graphics/ImageCodecs.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <jpeglib.h>

#include <jerror.h>

// As with PNG, the library leaves by longjmp: the functions that call setjmp hold no object with a
// destructor.

namespace zmr {
namespace {

constexpr int kMaxScans = 200;  // honest progressive files have about ten

struct JpegError : jpeg_error_mgr {
    std::jmp_buf jump;
    char text[JMSG_LENGTH_MAX] = "";
};

[[noreturn]] void leave(j_common_ptr codec)
{
    auto* error = static_cast<JpegError*>(codec->err);
    error->format_message(codec, error->text);
    std::longjmp(error->jump, 1);
}

/// Warnings that harm no pixel.
bool is_harmless(int warning)
{
    return warning == JWRN_EXTRANEOUS_DATA || warning == JWRN_NOT_SEQUENTIAL ||
           warning == JWRN_JFIF_MAJOR || warning == JWRN_ADOBE_XFORM || warning == JWRN_BOGUS_ICC;
}

/// The other warnings tell of data that is missing or makes no sense. A picture with a part in grey
/// is of no use, so they are errors here.
void judge_message(j_common_ptr codec, int level)
{
    if (level < 0 && !is_harmless(codec->err->msg_code))
        leave(codec);
}

void init_error(JpegError& error)
{
    jpeg_std_error(&error);
    error.error_exit = leave;
    error.emit_message = judge_message;
}

[[noreturn]] void refuse(const char* what, const JpegError& error)
{
    refuse_image((std::string(what) + " (" + error.text + ")").c_str());
}

struct JpegReader {
    JpegError error;
    jpeg_decompress_struct codec{};
    jpeg_progress_mgr progress{};

    JpegReader() { init_error(error); }
    ~JpegReader() { jpeg_destroy_decompress(&codec); }
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;
};

/// Each scan of a progressive picture costs as much as the picture, and a few bytes make a scan.
void count_scans(j_common_ptr codec)
{
    auto* decoder = reinterpret_cast<j_decompress_ptr>(codec);
    if (decoder->input_scan_number > kMaxScans)
        ERREXIT(codec, JERR_BAD_PROGRESSION);
}

bool start(JpegReader& reader, std::span<const unsigned char> bytes)
{
    reader.codec.err = &reader.error;
    if (setjmp(reader.error.jump) != 0)
        return false;
    jpeg_create_decompress(&reader.codec);
    reader.progress.progress_monitor = count_scans;
    reader.codec.progress = &reader.progress;
    jpeg_mem_src(&reader.codec, bytes.data(), static_cast<unsigned long>(bytes.size()));
    jpeg_read_header(&reader.codec, TRUE);
    const bool inks =
        reader.codec.jpeg_color_space == JCS_CMYK || reader.codec.jpeg_color_space == JCS_YCCK;
    reader.codec.out_color_space = inks ? JCS_CMYK : JCS_EXT_BGR;
    jpeg_start_decompress(&reader.codec);
    return true;
}

bool read_rows(JpegReader& reader, unsigned char* rows, std::size_t row_bytes)
{
    if (setjmp(reader.error.jump) != 0)
        return false;
    while (reader.codec.output_scanline < reader.codec.output_height) {
        JSAMPROW row = rows + reader.codec.output_scanline * row_bytes;
        jpeg_read_scanlines(&reader.codec, &row, 1);
    }
    jpeg_finish_decompress(&reader.codec);
    return true;
}

/// Reads rows of four inks, through one row of room, into colours.
bool read_ink_rows(JpegReader& reader, PixelBuffer& picture, unsigned char* room)
{
    if (setjmp(reader.error.jump) != 0)
        return false;
    // Adobe's programs store the light that is left in place of the ink.
    const unsigned char flip = reader.codec.saw_Adobe_marker ? 255 : 0;
    while (reader.codec.output_scanline < reader.codec.output_height) {
        unsigned char* to = picture.row(static_cast<int>(reader.codec.output_scanline));
        JSAMPROW row = room;
        jpeg_read_scanlines(&reader.codec, &row, 1);
        for (int x = 0; x < picture.width(); ++x, row += 4, to += 3) {
            for (int part = 0; part < 4; ++part)
                row[part] ^= flip;
            ink_to_color(row, to);
        }
    }
    jpeg_finish_decompress(&reader.codec);
    return true;
}

struct JpegWriter {
    JpegError error;
    jpeg_compress_struct codec{};
    unsigned char* bytes = nullptr;
    unsigned long size = 0;

    JpegWriter() { init_error(error); }
    ~JpegWriter()
    {
        jpeg_destroy_compress(&codec);
        std::free(bytes);  // the library allocates it so
    }
    JpegWriter(const JpegWriter&) = delete;
    JpegWriter& operator=(const JpegWriter&) = delete;
};

bool write_all(JpegWriter& writer, const PixelBuffer& picture)
{
    jpeg_compress_struct& codec = writer.codec;
    codec.err = &writer.error;
    if (setjmp(writer.error.jump) != 0)
        return false;
    jpeg_create_compress(&codec);
    jpeg_mem_dest(&codec, &writer.bytes, &writer.size);
    codec.image_width = static_cast<JDIMENSION>(picture.width());
    codec.image_height = static_cast<JDIMENSION>(picture.height());
    codec.input_components = 3;
    codec.in_color_space = JCS_EXT_BGR;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, kJpegQuality, TRUE);
    jpeg_start_compress(&codec, TRUE);
    while (codec.next_scanline < codec.image_height) {
        // Only read through.
        auto* row = const_cast<JSAMPROW>(picture.row(static_cast<int>(codec.next_scanline)));
        jpeg_write_scanlines(&codec, &row, 1);
    }
    jpeg_finish_compress(&codec);
    return true;
}

}  // namespace

PixelBuffer decode_jpeg(std::span<const unsigned char> bytes, const ImageHead& head)
{
    constexpr const char* kDamaged = "the JPEG data is damaged";
    PixelBuffer picture(static_cast<int>(head.width), static_cast<int>(head.height), 3);
    JpegReader reader;
    if (!start(reader, bytes))
        refuse(kDamaged, reader.error);
    if (reader.codec.output_width != head.width || reader.codec.output_height != head.height)
        refuse_image(kDamaged);
    if (reader.codec.output_components == 4) {
        std::vector<unsigned char> room(std::size_t{head.width} * 4);
        if (!read_ink_rows(reader, picture, room.data()))
            refuse(kDamaged, reader.error);
        return picture;
    }
    if (!read_rows(reader, picture.data(), picture.row_bytes()))
        refuse(kDamaged, reader.error);
    return picture;
}

std::vector<unsigned char> encode_jpeg(const PixelBuffer& picture)
{
    const PixelBuffer opaque = laid_on_white(picture);
    JpegWriter writer;
    if (!write_all(writer, opaque))
        refuse("the JPEG data can't be written", writer.error);
    return {writer.bytes, writer.bytes + writer.size};
}

}  // namespace zmr
