#include "graphics/ImageCodecs.h"

#include "platform/Windows.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include <objbase.h>
#include <wincodec.h>

// PNG, JPEG, GIF and TIFF by the system's own codecs.

namespace zmr {
namespace {

struct ReleaseInterface {
    void operator()(IUnknown* object) const noexcept { object->Release(); }
};
template <class Interface>
using Com = std::unique_ptr<Interface, ReleaseInterface>;

/// The component library, for a scope. A thread that runs it already keeps its own kind.
class ComScope {
public:
    ComScope() : begun_(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
    ~ComScope()
    {
        if (begun_)
            ::CoUninitialize();
    }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;

private:
    bool begun_;
};

/// Calls `make`, which fills its argument, and owns what it made; null when it failed.
template <class Interface, class Make>
Com<Interface> made(Make make)
{
    Interface* object = nullptr;
    return SUCCEEDED(make(&object)) ? Com<Interface>(object) : Com<Interface>();
}

Com<IWICImagingFactory> make_factory()
{
    auto factory = made<IWICImagingFactory>([](IWICImagingFactory** to) {
        return ::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                  IID_IWICImagingFactory, reinterpret_cast<void**>(to));
    });
    if (!factory)
        refuse_image("the system has no picture codecs");
    return factory;
}

struct Container {
    const GUID& format;
    const char* damaged;
};

constexpr Container kPng = {GUID_ContainerFormatPng, "the PNG data is damaged"};
constexpr Container kJpeg = {GUID_ContainerFormatJpeg, "the JPEG data is damaged"};
constexpr Container kGif = {GUID_ContainerFormatGif, "the GIF data is damaged"};
constexpr Container kTiff = {GUID_ContainerFormatTiff,
                             "the TIFF data is damaged or of an unknown kind"};

/// The first frame of a picture and all that it stands on.
class Frame {
public:
    Frame(const Container& container, std::span<const unsigned char> bytes)
        : damaged_(container.damaged), factory_(make_factory())
    {
        stream_ = made<IWICStream>([&](IWICStream** to) { return factory_->CreateStream(to); });
        // Only read through.
        auto* data = const_cast<unsigned char*>(bytes.data());
        if (!stream_ ||
            FAILED(stream_->InitializeFromMemory(data, static_cast<DWORD>(bytes.size()))))
            refuse_image("the system's picture codec could not start");
        decoder_ = made<IWICBitmapDecoder>([&](IWICBitmapDecoder** to) {
            return factory_->CreateDecoder(container.format, nullptr, to);
        });
        if (!decoder_)
            refuse_image("the system has no codec for this picture");
        if (FAILED(decoder_->Initialize(stream_.get(), WICDecodeMetadataCacheOnDemand)))
            refuse_image(damaged_);
        frame_ = made<IWICBitmapFrameDecode>(
            [&](IWICBitmapFrameDecode** to) { return decoder_->GetFrame(0, to); });
        if (!frame_ || FAILED(frame_->GetPixelFormat(&format_)))
            refuse_image(damaged_);
    }

    [[nodiscard]] const WICPixelFormatGUID& format() const { return format_; }
    [[nodiscard]] bool has_size(std::uint32_t width, std::uint32_t height) const
    {
        UINT own_width = 0;
        UINT own_height = 0;
        return SUCCEEDED(frame_->GetSize(&own_width, &own_height)) && own_width == width &&
               own_height == height;
    }
    /// The pixels in the picture's channels; colours that are stored multiplied by alpha stay so.
    void copy_pixels(PixelBuffer& picture) const
    {
        if (!picture.has_alpha() && format_ == GUID_WICPixelFormat24bppBGR) {
            if (FAILED(frame_->CopyPixels(nullptr, static_cast<UINT>(picture.row_bytes()),
                                          static_cast<UINT>(picture.size_bytes()), picture.data())))
                refuse_image(damaged_);
            return;
        }
        // Everything converts to the formats with alpha, but not to those without.
        const bool multiplied = picture.has_alpha() && (format_ == GUID_WICPixelFormat32bppPBGRA ||
                                                        format_ == GUID_WICPixelFormat32bppPRGBA ||
                                                        format_ == GUID_WICPixelFormat64bppPRGBA);
        const auto converter =
            convert_to(multiplied ? GUID_WICPixelFormat32bppPBGRA : GUID_WICPixelFormat32bppBGRA);
        constexpr int kBandPixels = 1 << 16;
        const int rows = std::clamp(kBandPixels / picture.width(), 1, picture.height());
        PixelBuffer band(picture.width(), rows, 4);
        for (int y = 0; y < picture.height(); y += rows) {
            const WICRect part = {0, y, picture.width(), std::min(rows, picture.height() - y)};
            if (FAILED(converter->CopyPixels(&part, static_cast<UINT>(band.row_bytes()),
                                             static_cast<UINT>(band.size_bytes()), band.data())))
                refuse_image(damaged_);
            for (int row = 0; row < part.Height; ++row)
                copy_row_pixels(band.row(row), picture, y + row);
        }
    }
    /// The bytes of one row as they are decoded.
    void copy_row(int y, int width, std::span<unsigned char> to) const
    {
        const WICRect row = {0, y, width, 1};
        const auto size = static_cast<UINT>(to.size());
        if (FAILED(frame_->CopyPixels(&row, size, size, to.data())))
            refuse_image(damaged_);
    }

private:
    [[nodiscard]] Com<IWICFormatConverter> convert_to(const WICPixelFormatGUID& wanted) const
    {
        auto converter = made<IWICFormatConverter>(
            [this](IWICFormatConverter** to) { return factory_->CreateFormatConverter(to); });
        if (!converter ||
            FAILED(converter->Initialize(frame_.get(), wanted, WICBitmapDitherTypeNone, nullptr, 0,
                                         WICBitmapPaletteTypeCustom)))
            refuse_image(damaged_);
        return converter;
    }
    static void copy_row_pixels(const unsigned char* from, PixelBuffer& picture, int y)
    {
        unsigned char* to = picture.row(y);
        if (picture.has_alpha()) {
            std::memcpy(to, from, picture.row_bytes());
            return;
        }
        for (int x = 0; x < picture.width(); ++x, from += 4, to += 3)
            std::memcpy(to, from, 3);
    }

    ComScope scope_;  // first, so that it ends last
    const char* damaged_;
    Com<IWICImagingFactory> factory_;
    Com<IWICStream> stream_;
    Com<IWICBitmapDecoder> decoder_;
    Com<IWICBitmapFrameDecode> frame_;
    WICPixelFormatGUID format_{};
};

PixelBuffer decode(const Container& container, std::span<const unsigned char> bytes,
                   const ImageHead& head)
{
    const Frame frame(container, bytes);
    if (!frame.has_size(head.width, head.height))
        refuse_image(container.damaged);
    PixelBuffer picture(static_cast<int>(head.width), static_cast<int>(head.height),
                        head.alpha ? 4 : 3);
    frame.copy_pixels(picture);
    return picture;
}

/// Pixels of the transparent colour are those of the empty screen.
void clear_transparent(PixelBuffer& picture)
{
    if (!picture.has_alpha())
        return;
    unsigned char* end = picture.data() + picture.size_bytes();
    for (unsigned char* pixel = picture.data(); pixel != end; pixel += 4)
        if (pixel[3] == 0)
            std::memset(pixel, 0, 4);
}

PixelBuffer decode_inks(const Frame& frame, const ImageHead& head)
{
    PixelBuffer picture(static_cast<int>(head.width), static_cast<int>(head.height), 3);
    std::vector<unsigned char> row(std::size_t{head.width} * 4);
    for (int y = 0; y < picture.height(); ++y) {
        frame.copy_row(y, picture.width(), row);
        unsigned char* to = picture.row(y);
        for (std::size_t x = 0; x < row.size(); x += 4, to += 3)
            ink_to_color(row.data() + x, to);
    }
    return picture;
}

/// What is needed to encode one picture into memory.
class Encoder {
public:
    explicit Encoder(const Container& container) : factory_(make_factory())
    {
        IStream* stream = nullptr;
        if (SUCCEEDED(::CreateStreamOnHGlobal(nullptr, TRUE, &stream)))
            stream_.reset(stream);
        encoder_ = made<IWICBitmapEncoder>([&](IWICBitmapEncoder** to) {
            return factory_->CreateEncoder(container.format, nullptr, to);
        });
        if (!stream_ || !encoder_ ||
            FAILED(encoder_->Initialize(stream_.get(), WICBitmapEncoderNoCache)))
            refuse_image(kFailed);
        IWICBitmapFrameEncode* frame = nullptr;
        IPropertyBag2* options = nullptr;
        if (FAILED(encoder_->CreateNewFrame(&frame, &options)))
            refuse_image(kFailed);
        frame_.reset(frame);
        options_.reset(options);
    }

    void set_quality(float quality)
    {
        wchar_t name[] = L"ImageQuality";
        PROPBAG2 option{};
        option.pstrName = name;
        VARIANT value{};
        value.vt = VT_R4;
        value.fltVal = quality;
        if (!options_ || FAILED(options_->Write(1, &option, &value)))
            refuse_image(kFailed);
    }
    std::vector<unsigned char> run(const PixelBuffer& picture)
    {
        WICPixelFormatGUID format =
            picture.has_alpha() ? GUID_WICPixelFormat32bppBGRA : GUID_WICPixelFormat24bppBGR;
        const WICPixelFormatGUID wanted = format;
        if (FAILED(frame_->Initialize(options_.get())) ||
            FAILED(frame_->SetSize(static_cast<UINT>(picture.width()),
                                   static_cast<UINT>(picture.height()))) ||
            FAILED(frame_->SetPixelFormat(&format)) || format != wanted)
            refuse_image(kFailed);
        // Only read through.
        auto* pixels = const_cast<unsigned char*>(picture.data());
        if (FAILED(frame_->WritePixels(static_cast<UINT>(picture.height()),
                                       static_cast<UINT>(picture.row_bytes()),
                                       static_cast<UINT>(picture.size_bytes()), pixels)) ||
            FAILED(frame_->Commit()) || FAILED(encoder_->Commit()))
            refuse_image(kFailed);
        return written();
    }

private:
    static constexpr const char* kFailed = "the system's picture codec can't write this picture";

    [[nodiscard]] std::vector<unsigned char> written() const
    {
        LARGE_INTEGER start{};
        STATSTG state{};
        if (FAILED(stream_->Stat(&state, STATFLAG_NONAME)) ||
            FAILED(stream_->Seek(start, STREAM_SEEK_SET, nullptr)))
            refuse_image(kFailed);
        std::vector<unsigned char> bytes(static_cast<std::size_t>(state.cbSize.QuadPart));
        ULONG done = 0;
        if (FAILED(stream_->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &done)) ||
            done != bytes.size())
            refuse_image(kFailed);
        return bytes;
    }

    ComScope scope_;  // first, so that it ends last
    Com<IWICImagingFactory> factory_;
    Com<IStream> stream_;
    Com<IWICBitmapEncoder> encoder_;
    Com<IWICBitmapFrameEncode> frame_;
    Com<IPropertyBag2> options_;
};

}  // namespace

PixelBuffer decode_png(std::span<const unsigned char> bytes, const ImageHead& head)
{
    return decode(kPng, bytes, head);
}

PixelBuffer decode_jpeg(std::span<const unsigned char> bytes, const ImageHead& head)
{
    const Frame frame(kJpeg, bytes);
    if (!frame.has_size(head.width, head.height))
        refuse_image(kJpeg.damaged);
    if (frame.format() == GUID_WICPixelFormat32bppCMYK)
        return decode_inks(frame, head);
    PixelBuffer picture(static_cast<int>(head.width), static_cast<int>(head.height), 3);
    frame.copy_pixels(picture);
    return picture;
}

PixelBuffer decode_gif(std::span<const unsigned char> bytes, const ImageHead& head)
{
    ImageHead frame_head = head;
    frame_head.width = head.frame_width;
    frame_head.height = head.frame_height;
    PixelBuffer frame = decode(kGif, bytes, frame_head);
    clear_transparent(frame);
    if (frame.width() == static_cast<int>(head.width) &&
        frame.height() == static_cast<int>(head.height))
        return frame;
    PixelBuffer picture(static_cast<int>(head.width), static_cast<int>(head.height), 4);
    picture.clear();
    for (int y = 0; y < frame.height(); ++y)
        std::memcpy(
            picture.pixel(static_cast<int>(head.frame_left), static_cast<int>(head.frame_top) + y),
            frame.row(y), frame.row_bytes());
    return picture;
}

PixelBuffer decode_tiff(std::span<const unsigned char> bytes, const ImageHead& head)
{
    return decode(kTiff, bytes, head);
}

std::vector<unsigned char> encode_png(const PixelBuffer& picture)
{
    return Encoder(kPng).run(picture);
}

std::vector<unsigned char> encode_jpeg(const PixelBuffer& picture)
{
    Encoder encoder(kJpeg);
    encoder.set_quality(kJpegQuality / 100.0f);
    return encoder.run(laid_on_white(picture));
}

}  // namespace zmr
