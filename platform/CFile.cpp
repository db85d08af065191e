#include "platform/CFile.h"

#include "platform/CFileException.h"

#include <limits>

namespace {

constexpr UINT kModeMask = 0x3;
constexpr UINT kShareMask = 0x70;

zmr::FileCreate creation(UINT flags)
{
    if ((flags & CFile::modeCreate) == 0)
        return zmr::FileCreate::OpenExisting;
    return (flags & CFile::modeNoTruncate) != 0 ? zmr::FileCreate::OpenOrCreate
                                                : zmr::FileCreate::CreateOrTruncate;
}

zmr::FileShare sharing(UINT flags)
{
    switch (flags & kShareMask) {
        case CFile::shareDenyWrite:
            return zmr::FileShare::Read;
        case CFile::shareDenyNone:
            return zmr::FileShare::ReadWrite;
        default:
            return zmr::FileShare::None;
    }
}

}  // namespace

CFile::CFile(LPCTSTR name, UINT flags)
{
    auto failure = std::make_unique<CFileException>();
    if (!CFile::Open(name, flags, failure.get()))
        throw failure.release();
}

CFile::~CFile()
{
    CFile::Abort();
}

BOOL CFile::Open(LPCTSTR name, UINT flags, CFileException* failure)
{
    const zmr::FileAccess access =
        (flags & kModeMask) == modeRead ? zmr::FileAccess::Read : zmr::FileAccess::ReadWrite;
    zmr::FileError error;
    auto opened =
        zmr::FileSystemDevice::Real().open(name, access, creation(flags), sharing(flags), error);
    if (opened == nullptr) {
        if (failure != nullptr) {
            const CFileException cause(error, name);
            failure->m_cause = cause.m_cause;
            failure->m_lOsError = cause.m_lOsError;
            failure->m_strFileName = name;
        }
        return 0;
    }
    device_ = std::move(opened);
    flags_ = flags;
    position_ = 0;
    m_strFileName = name;
    return 1;
}

void CFile::Close()
{
    device_.reset();
    m_strFileName.Empty();
}

void CFile::Abort()
{
    device_.reset();
    m_strFileName.Empty();
}

UINT CFile::Read(void* buffer, UINT count)
{
    const zmr::FileDevice& file = device();
    if ((flags_ & kModeMask) == modeWrite)
        AfxThrowFileException(CFileException::accessDenied, -1, m_strFileName);
    std::size_t done = 0;
    check(file.read_at(position_, buffer, count, done));
    position_ += done;
    return static_cast<UINT>(done);
}

void CFile::Write(const void* buffer, UINT count)
{
    check(device().write_at(position_, buffer, count));
    position_ += count;
}

ULONGLONG CFile::Seek(LONGLONG offset, UINT from)
{
    position_ = target_of_seek(offset, from, from == end ? GetLength() : 0);
    return position_;
}

ULONGLONG CFile::target_of_seek(LONGLONG offset, UINT from, ULONGLONG length) const
{
    ULONGLONG base = 0;
    if (from == current)
        base = position_;
    else if (from == end)
        base = length;
    constexpr auto kLast = static_cast<ULONGLONG>(std::numeric_limits<LONGLONG>::max());
    const ULONGLONG distance =
        offset < 0 ? ULONGLONG{0} - static_cast<ULONGLONG>(offset) : static_cast<ULONGLONG>(offset);
    if (from > end || (offset < 0 ? distance > base : distance > kLast - base))
        AfxThrowFileException(CFileException::badSeek, -1, m_strFileName);
    return offset < 0 ? base - distance : base + distance;
}

ULONGLONG CFile::GetPosition() const
{
    return position_;
}

ULONGLONG CFile::GetLength() const
{
    std::uint64_t length = 0;
    check(device().length(length));
    return static_cast<ULONGLONG>(length);
}

void CFile::SetLength(ULONGLONG length)
{
    check(device().set_length(length));
}

void CFile::Flush()
{
    if (device_ != nullptr)
        check(device_->sync());
}

CString CFile::GetFileName() const
{
    const std::string_view path = m_strFileName.view();
    return CString(path.substr(path.find_last_of("/\\") + 1));
}

void CFile::Rename(LPCTSTR old_name, LPCTSTR new_name)
{
    const zmr::FileError error = zmr::FileSystemDevice::Real().rename(old_name, new_name);
    if (error)
        throw new CFileException(error, old_name);
}

void CFile::Remove(LPCTSTR name)
{
    const zmr::FileError error = zmr::FileSystemDevice::Real().remove(name);
    if (error)
        throw new CFileException(error, name);
}

zmr::FileDevice& CFile::device() const
{
    if (device_ == nullptr)
        AfxThrowFileException(CFileException::invalidFile, -1, m_strFileName);
    return *device_;
}

void CFile::fail(const zmr::FileError& error) const
{
    throw new CFileException(error, m_strFileName);
}

void CFile::check(const zmr::FileError& error) const
{
    if (error)
        fail(error);
}
