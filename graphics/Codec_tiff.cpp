#include "graphics/ImageCodecs.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include <tiffio.h>

namespace zmr {
namespace {

struct CloseTiff {
    void operator()(TIFF* file) const noexcept { TIFFClose(file); }
};
using OwnedTiff = std::unique_ptr<TIFF, CloseTiff>;
struct FreeOptions {
    void operator()(TIFFOpenOptions* options) const noexcept { TIFFOpenOptionsFree(options); }
};

/// The file in memory, and the first complaint about it.
struct TiffInput {
    std::span<const unsigned char> bytes;
    std::uint64_t position = 0;
    std::string error;
};

TiffInput& input_of(thandle_t handle)
{
    return *static_cast<TiffInput*>(handle);
}

tmsize_t read_bytes(thandle_t handle, void* to, tmsize_t count)
{
    TiffInput& input = input_of(handle);
    if (input.position >= input.bytes.size() || count <= 0)
        return 0;
    const std::size_t given =
        std::min(static_cast<std::size_t>(count),
                 input.bytes.size() - static_cast<std::size_t>(input.position));
    std::memcpy(to, input.bytes.data() + input.position, given);
    input.position += given;
    return static_cast<tmsize_t>(given);
}

tmsize_t write_nothing(thandle_t, void*, tmsize_t)
{
    return 0;
}

toff_t seek(thandle_t handle, toff_t offset, int from)
{
    TiffInput& input = input_of(handle);
    const std::uint64_t base = from == SEEK_CUR   ? input.position
                               : from == SEEK_END ? input.bytes.size()
                                                  : 0;
    input.position = base + offset;
    return input.position;
}

int close_nothing(thandle_t)
{
    return 0;
}

toff_t size_of(thandle_t handle)
{
    return input_of(handle).bytes.size();
}

/// Lends the file's bytes, so that strips are decoded in place.
int map_bytes(thandle_t handle, void** base, toff_t* size)
{
    *base = const_cast<unsigned char*>(input_of(handle).bytes.data());  // only read through
    *size = input_of(handle).bytes.size();
    return 1;
}

void unmap_nothing(thandle_t, void*, toff_t) {}

int keep_error(TIFF*, void* user, const char*, const char* format, va_list arguments)
{
    auto* input = static_cast<TiffInput*>(user);
    char text[160];
    std::vsnprintf(text, sizeof text, format, arguments);
    if (input->error.empty())
        input->error = text;
    return 1;
}

int ignore_warning(TIFF*, void*, const char*, const char*, va_list)
{
    return 1;
}

/// `pixels` bounds what the library may allocate at a time: strips and tiles may be larger than the
/// picture, but not by much.
OwnedTiff open(TiffInput& input, std::size_t pixels)
{
    constexpr std::size_t kBaseBytes = 64u << 20;
    constexpr std::size_t kMostBytesPerPixel = 16;
    const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
    if (!options)
        refuse_image("there is not enough memory");
    TIFFOpenOptionsSetMaxSingleMemAlloc(
        options.get(), static_cast<tmsize_t>(kBaseBytes + pixels * kMostBytesPerPixel));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keep_error, &input);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), ignore_warning, nullptr);
    return OwnedTiff(TIFFClientOpenExt("picture", "r", &input, read_bytes, write_nothing, seek,
                                       close_nothing, size_of, map_bytes, unmap_nothing,
                                       options.get()));
}

[[noreturn]] void refuse(const TiffInput& input)
{
    std::string reason = "the TIFF data is damaged or of an unknown kind";
    if (!input.error.empty())
        reason = reason + " (" + input.error + ")";
    refuse_image(reason.c_str());
}

/// The converter of the library, ended with its scope.
class RgbaImage {
public:
    explicit RgbaImage(TIFF* file)
    {
        char reason[1024] = "";
        begun_ =
            TIFFRGBAImageOK(file, reason) != 0 && TIFFRGBAImageBegin(&image_, file, 1, reason) != 0;
        reason_ = reason;
    }
    ~RgbaImage()
    {
        if (begun_)
            TIFFRGBAImageEnd(&image_);
    }
    RgbaImage(const RgbaImage&) = delete;
    RgbaImage& operator=(const RgbaImage&) = delete;

    [[nodiscard]] bool begun() const { return begun_; }
    [[nodiscard]] const std::string& reason() const { return reason_; }
    [[nodiscard]] TIFFRGBAImage& get() { return image_; }

private:
    TIFFRGBAImage image_{};
    bool begun_ = false;
    std::string reason_;
};

template <class T>
T field_of(TIFF* file, std::uint32_t tag)
{
    T value = 0;
    TIFFGetFieldDefaulted(file, tag, &value);
    return value;
}

/// Grey of 16 bits with alpha, whose alpha the converter drops.
bool is_wide_grey_alpha(TIFF* file)
{
    const auto kind = field_of<std::uint16_t>(file, TIFFTAG_PHOTOMETRIC);
    return field_of<std::uint16_t>(file, TIFFTAG_SAMPLESPERPIXEL) == 2 &&
           field_of<std::uint16_t>(file, TIFFTAG_BITSPERSAMPLE) == 16 &&
           (kind == PHOTOMETRIC_MINISBLACK || kind == PHOTOMETRIC_MINISWHITE);
}

unsigned char narrowed(std::uint16_t value)
{
    return static_cast<unsigned char>((value * 255u + 32895u) >> 16);
}

PixelBuffer decode_wide_grey_alpha(TIFF* file, const TiffInput& input, const ImageHead& head)
{
    const std::size_t row_bytes = std::size_t{head.width} * 4;
    if (field_of<std::uint16_t>(file, TIFFTAG_PLANARCONFIG) != PLANARCONFIG_CONTIG ||
        TIFFIsTiled(file) != 0 || static_cast<std::size_t>(TIFFScanlineSize(file)) != row_bytes)
        refuse(input);
    const bool inverted =
        field_of<std::uint16_t>(file, TIFFTAG_PHOTOMETRIC) == PHOTOMETRIC_MINISWHITE;
    PixelBuffer picture(static_cast<int>(head.width), static_cast<int>(head.height), 4);
    std::vector<std::uint16_t> row(std::size_t{head.width} * 2);
    for (std::uint32_t y = 0; y < head.height; ++y) {
        if (TIFFReadScanline(file, row.data(), y, 0) < 0 || !input.error.empty())
            refuse(input);
        unsigned char* to = picture.row(static_cast<int>(y));
        for (std::size_t part = 0; part < row.size(); part += 2, to += 4) {
            const unsigned char grey = narrowed(row[part]);
            to[0] = to[1] = to[2] = inverted ? static_cast<unsigned char>(255 - grey) : grey;
            to[3] = narrowed(row[part + 1]);
        }
    }
    return picture;
}

}  // namespace

PixelBuffer decode_tiff(std::span<const unsigned char> bytes, const ImageHead& head)
{
    TiffInput input{bytes, 0, {}};
    const std::size_t count = std::size_t{head.width} * head.height;
    const OwnedTiff file = open(input, count);
    if (!file)
        refuse(input);
    std::uint16_t extra_count = 0;
    std::uint16_t* extra = nullptr;
    TIFFGetFieldDefaulted(file.get(), TIFFTAG_EXTRASAMPLES, &extra_count, &extra);
    if (extra_count == 1 && extra[0] == EXTRASAMPLE_UNASSALPHA) {
        // Said to be multiplied in already, the colours come as they are stored.
        std::uint16_t kind = EXTRASAMPLE_ASSOCALPHA;
        TIFFSetField(file.get(), TIFFTAG_EXTRASAMPLES, 1, &kind);
    }
    if (head.alpha && is_wide_grey_alpha(file.get()))
        return decode_wide_grey_alpha(file.get(), input, head);
    // Rows are wanted as they are stored; the picture is turned later.
    TIFFSetField(file.get(), TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);

    RgbaImage image(file.get());
    if (!image.begun()) {
        if (input.error.empty())
            input.error = image.reason();
        refuse(input);
    }
    if (image.get().width != head.width || image.get().height != head.height)
        refuse_image("the TIFF data is damaged");
    image.get().req_orientation = ORIENTATION_TOPLEFT;
    const auto raster = std::make_unique_for_overwrite<std::uint32_t[]>(count);
    if (TIFFRGBAImageGet(&image.get(), raster.get(), head.width, head.height) == 0 ||
        !input.error.empty())
        refuse(input);

    PixelBuffer picture(static_cast<int>(head.width), static_cast<int>(head.height),
                        head.alpha ? 4 : 3);
    unsigned char* to = picture.data();
    for (std::size_t index = 0; index < count; ++index, to += picture.channels()) {
        const std::uint32_t pixel = raster[index];
        to[0] = static_cast<unsigned char>(TIFFGetB(pixel));
        to[1] = static_cast<unsigned char>(TIFFGetG(pixel));
        to[2] = static_cast<unsigned char>(TIFFGetR(pixel));
        if (head.alpha)
            to[3] = static_cast<unsigned char>(TIFFGetA(pixel));
    }
    return picture;
}

}  // namespace zmr
