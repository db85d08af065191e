#include "foundation/CFileIO.h"

#include "foundation/PlatformBlocks.h"

#include "platform/CFile.h"
#include "platform/CFileException.h"

#include <limits>

namespace {

constexpr auto kLastPosition = static_cast<ULONGLONG>(std::numeric_limits<long>::max());

[[nodiscard]] UINT platform_direction(GIO::IOSeekDirection direction)
{
    switch (direction) {
        case GIO::SeekBegin:
            return CFile::begin;
        case GIO::SeekCurrent:
            return CFile::current;
        case GIO::SeekEnd:
            break;
    }
    return CFile::end;
}

[[noreturn]] void throw_beyond(const CFile& file)
{
    AfxThrowFileException(CFileException::badSeek, -1, file.GetFilePath());
}

}  // namespace

CFileIO::CFileIO(CFile& file, IOOpenMode mode) : file_(&file)
{
    store_open_mode(mode);
}

CFileIO::~CFileIO() = default;

long CFileIO::gseek(long offset, IOSeekDirection direction)
{
    try {
        const ULONGLONG former = file_->GetPosition();
        const ULONGLONG reached = file_->Seek(offset, platform_direction(direction));
        if (reached > kLastPosition) {
            file_->Seek(static_cast<LONGLONG>(former), CFile::begin);
            throw_beyond(*file_);
        }
        return static_cast<long>(reached);
    } catch (...) {
        set_error(SeekFailed);
        throw;
    }
}

long CFileIO::gtell()
{
    try {
        const ULONGLONG position = file_->GetPosition();
        if (position > kLastPosition)
            throw_beyond(*file_);
        return static_cast<long>(position);
    } catch (...) {
        set_error(SeekFailed);
        throw;
    }
}

long CFileIO::gwrite(const void* data, long size)
{
    try {
        return zmr::write_blocks(*file_, data, size);
    } catch (...) {
        set_error(WriteFailed);
        throw;
    }
}

long CFileIO::gread(void* data, long size)
{
    try {
        const long count = zmr::read_blocks(*file_, data, size);
        read_to_ = file_->GetPosition();
        return count;
    } catch (...) {
        set_error(ReadFailed);
        throw;
    }
}

void CFileIO::flush()
{
    if ((get_open_mode() & OpenWrite) == 0 || get_error() != NoError)
        return;
    try {
        file_->Flush();
    } catch (...) {
        set_error(WriteFailed);
        throw;
    }
}

std::int64_t CFileIO::gleft()
{
    try {
        const ULONGLONG position = file_->GetPosition();
        const ULONGLONG length = file_->GetLength();
        return length > position ? static_cast<std::int64_t>(length - position) : 0;
    } catch (...) {
        set_error(SeekFailed);
        throw;
    }
}

void CFileIO::give_back(long size)
{
    try {
        if (file_->GetPosition() == read_to_)
            file_->Seek(-LONGLONG{size}, CFile::current);
    } catch (...) {
        set_error(SeekFailed);
        throw;
    }
}
