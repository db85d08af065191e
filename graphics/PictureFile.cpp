#include "graphics/PictureFile.h"

#include "foundation/GException.h"
#include "foundation/GFile.h"
#include "foundation/ipstream.h"
#include "platform/FileDevice.h"

#include <algorithm>
#include <array>
#include <new>
#include <string>

namespace zmr {
namespace {

constexpr std::size_t kHeadBytes = 64;

/// A file that is read from its start to its end.
class WholeFile {
public:
    explicit WholeFile(const char* name)
        : device_(FileSystemDevice::Real().open(name == nullptr ? "" : name, FileAccess::Read,
                                                FileCreate::OpenExisting, FileShare::Read, error_))
    {
        if (device_)
            error_ = device_->length(length_);
    }

    [[nodiscard]] const FileError& error() const { return error_; }
    [[nodiscard]] std::uint64_t length() const { return length_; }
    /// The first `size` bytes; fewer at the end of the file or on an error, which `error` then
    /// tells.
    [[nodiscard]] std::size_t read(unsigned char* to, std::size_t size)
    {
        std::size_t done = 0;
        if (!error_)
            error_ = device_->read_at(0, to, size, done);
        return done;
    }

private:
    FileError error_;
    std::unique_ptr<FileDevice> device_;
    std::uint64_t length_ = 0;
};

TgaHint tga_hint(const char* file)
{
    const ImageCodec* codec = image_codec_of_file(file);
    return codec != nullptr && codec->kind == ImageKind::Tga ? TgaHint::Named : TgaHint::NotNamed;
}

PixelBuffer decode_file(WholeFile& input, const char* file)
{
    if (input.error())
        refuse_image(input.error().text().c_str());
    if (input.length() > kMaxPictureFileBytes)
        refuse_image("the file is too large for a picture");
    const auto size = static_cast<std::size_t>(input.length());
    const auto bytes =
        std::make_unique_for_overwrite<unsigned char[]>(std::max<std::size_t>(size, 1));
    const std::size_t done = input.read(bytes.get(), size);
    if (input.error())
        refuse_image(input.error().text().c_str());
    const std::span<const unsigned char> all(bytes.get(), done);
    const auto kind = recognise_image(all.first(std::min(done, kHeadBytes)), done, tga_hint(file));
    if (!kind)
        refuse_image("it is no picture of a known format");
    return decode_image(*kind, all);
}

/// Writes the bytes beside the file and moves them over it, so that a failure keeps the former one.
bool replace_file(const std::string& file, std::span<const unsigned char> bytes)
{
    FileSystemDevice& files = FileSystemDevice::Real();
    const std::string beside = file + ".tmp~";
    FileError error;
    {
        const auto device = files.open(beside, FileAccess::ReadWrite, FileCreate::CreateOrTruncate,
                                       FileShare::None, error);
        if (!device)
            return false;
        error = device->write_at(0, bytes.data(), bytes.size());
    }
    if (!error)
        error = files.rename(beside, file);
    if (error)
        static_cast<void>(files.remove(beside));  // it is of no use to anybody
    return !error;
}

bool create_file(const std::string& file, std::span<const unsigned char> bytes)
{
    FileSystemDevice& files = FileSystemDevice::Real();
    FileError error;
    {
        const auto device =
            files.open(file, FileAccess::ReadWrite, FileCreate::CreateNew, FileShare::None, error);
        if (!device)
            return false;
        error = device->write_at(0, bytes.data(), bytes.size());
    }
    if (error)
        static_cast<void>(files.remove(file));
    return !error;
}

}  // namespace

std::optional<ImageKind> recognise_picture_file(const char* file)
{
    WholeFile input(file);
    std::array<unsigned char, kHeadBytes> head{};
    const std::size_t done = input.read(head.data(), head.size());
    return recognise_image(std::span(head).first(done), input.length(), tga_hint(file));
}

PixelBuffer load_picture_file(const char* file)
{
    try {
        WholeFile input(file);
        return decode_file(input, file);
    } catch (const OutOfMemory_Exception&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw OutOfMemory_Exception();
    } catch (const GLibraryException& reason) {
        GLibraryException error;
        error.message("The picture \"%s\" can't be read: %s.", file == nullptr ? "" : file,
                      reason.what());
        throw error;
    }
}

PixelBuffer decode_picture(std::span<const unsigned char> bytes)
{
    const auto kind = recognise_image(bytes.first(std::min(bytes.size(), kHeadBytes)), bytes.size(),
                                      TgaHint::Unknown);
    if (!kind)
        throw GLibraryException("This is no picture of a known format.");
    try {
        return decode_image(*kind, bytes);
    } catch (const OutOfMemory_Exception&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw OutOfMemory_Exception();
    } catch (const GLibraryException& reason) {
        GLibraryException error;
        error.message("The picture can't be read: %s.", reason.what());
        throw error;
    }
}

bool save_picture_file(const PixelBuffer& picture, const char* file, bool overwrite)
{
    const ImageCodec* codec = file == nullptr ? nullptr : image_codec_of_file(file);
    if (codec == nullptr || codec->encode == nullptr || picture.is_empty())
        return false;
    try {
        const std::vector<unsigned char> bytes = codec->encode(picture);
        return overwrite ? replace_file(file, bytes) : create_file(file, bytes);
    } catch (const GLibraryException&) {
        return false;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

std::vector<unsigned char> read_to_end(ipstream& in)
{
    constexpr long kPieceBytes = 65536;
    std::vector<unsigned char> bytes;
    if (const long left = in.remaining(); left > 0)
        bytes.reserve(static_cast<std::size_t>(left) + kPieceBytes);
    for (;;) {
        const std::size_t size = bytes.size();
        bytes.resize(size + kPieceBytes);
        const long done = in.readBytes(bytes.data() + size, kPieceBytes);
        bytes.resize(size + static_cast<std::size_t>(std::max(done, 0L)));
        if (done < kPieceBytes)
            break;
        if (bytes.size() > kMaxPictureFileBytes)
            refuse_image("the file is too large for a picture");
    }
    in.clear(in.state() & pstream::kBad);  // the end was meant to be met
    return bytes;
}

}  // namespace zmr
