#include "foundation/GFileIO.h"

#include "foundation/GException.h"
#include "foundation/PathSyntax.h"

#include <limits>

namespace {

[[nodiscard]] zmr::FileCreate device_create(GFileIO::IOCreateMode create)
{
    switch (create) {
        case GFileIO::OpenOrCreate:
            return zmr::FileCreate::OpenOrCreate;
        case GFileIO::CreateNew:
            return zmr::FileCreate::CreateNew;
        case GFileIO::CreateOrTruncate:
            return zmr::FileCreate::CreateOrTruncate;
        case GFileIO::OpenExisting:
            break;
    }
    return zmr::FileCreate::OpenExisting;
}

[[nodiscard]] zmr::FileShare device_share(GFileIO::IOShareMode share)
{
    if ((share & GFileIO::ShareWrite) != 0)
        return zmr::FileShare::ReadWrite;
    return share == GFileIO::ShareRead ? zmr::FileShare::Read : zmr::FileShare::None;
}

constexpr zmr::FileError kNotOpenFor = {zmr::FileErrorKind::AccessDenied, 0};
constexpr zmr::FileError kOutside = {zmr::FileErrorKind::Other, 0};

}  // namespace

GFileIO::GFileIO(const char* name, IOOpenMode mode, IOCreateMode create, IOShareMode share,
                 zmr::FileSystemDevice* files)
    : name_(name == nullptr ? "" : name)
{
    store_open_mode(mode);
    if (files == nullptr)
        files = &zmr::FileSystemDevice::Real();
    const auto access =
        (mode & OpenWrite) != 0 ? zmr::FileAccess::ReadWrite : zmr::FileAccess::Read;
    device_ = files->open(zmr::system_path(name_), access, device_create(create),
                          device_share(share), open_error_);
}

GFileIO::~GFileIO() = default;

long GFileIO::gseek(long offset, IOSeekDirection direction)
{
    std::uint64_t from = 0;
    if (direction == SeekCurrent)
        from = position_;
    else if (direction != SeekBegin)
        from = length();
    std::int64_t target = 0;
    if (__builtin_add_overflow(static_cast<std::int64_t>(from), std::int64_t{offset}, &target) ||
        target < 0 || target > std::numeric_limits<long>::max())
        fail(SeekFailed, "positioned", kOutside);
    position_ = static_cast<std::uint64_t>(target);
    return static_cast<long>(target);
}

long GFileIO::gtell()
{
    if (position_ > static_cast<std::uint64_t>(std::numeric_limits<long>::max()))
        fail(SeekFailed, "positioned", kOutside);
    return static_cast<long>(position_);
}

long GFileIO::gwrite(const void* data, long size)
{
    if (size <= 0)
        return 0;
    if (device_ == nullptr || (get_open_mode() & OpenWrite) == 0)
        fail(WriteFailed, "written", device_ == nullptr ? open_error_ : kNotOpenFor);
    const auto bytes = static_cast<std::size_t>(size);
    if (const zmr::FileError error = device_->write_at(position_, data, bytes))
        fail(WriteFailed, "written", error);
    position_ += bytes;
    return size;
}

long GFileIO::gread(void* data, long size)
{
    if (size <= 0)
        return 0;
    if (device_ == nullptr || (get_open_mode() & OpenRead) == 0)
        fail(ReadFailed, "read", device_ == nullptr ? open_error_ : kNotOpenFor);
    std::size_t done = 0;
    if (const zmr::FileError error =
            device_->read_at(position_, data, static_cast<std::size_t>(size), done))
        fail(ReadFailed, "read", error);
    position_ += done;
    return static_cast<long>(done);
}

void GFileIO::flush() {}

std::int64_t GFileIO::gleft()
{
    const std::uint64_t bytes = length();
    return bytes > position_ ? static_cast<std::int64_t>(bytes - position_) : 0;
}

std::uint64_t GFileIO::length()
{
    std::uint64_t bytes = 0;
    if (device_ == nullptr)
        fail(SeekFailed, "positioned", open_error_);
    if (const zmr::FileError error = device_->length(bytes))
        fail(SeekFailed, "positioned", error);
    return bytes;
}

void GFileIO::fail(IOError error, const char* action, const zmr::FileError& reason)
{
    set_error(error);
    GStreamException failure("");
    failure.message("The file %s can't be %s: %s.", name_.c_str(), action, reason.text().c_str());
    throw failure;
}
