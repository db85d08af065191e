#include "foundation/CArchiveIO.h"

#include "foundation/PlatformBlocks.h"

#include "platform/CArchive.h"
#include "platform/CFile.h"

CArchiveIO::CArchiveIO(CArchive& archive) : archive_(&archive)
{
    store_open_mode(archive.IsLoading() ? OpenRead : OpenWrite);
}

CArchiveIO::~CArchiveIO() = default;

long CArchiveIO::gseek(long, IOSeekDirection)
{
    return -1;
}

long CArchiveIO::gwrite(const void* data, long size)
{
    try {
        return zmr::write_blocks(*archive_, data, size);
    } catch (...) {
        set_error(WriteFailed);
        throw;
    }
}

long CArchiveIO::gread(void* data, long size)
{
    try {
        return zmr::read_blocks(*archive_, data, size);
    } catch (...) {
        set_error(ReadFailed);
        throw;
    }
}

void CArchiveIO::flush()
{
    if ((get_open_mode() & OpenWrite) == 0 || get_error() != NoError)
        return;
    try {
        archive_->Flush();
    } catch (...) {
        set_error(WriteFailed);
        throw;
    }
}

void CArchiveIO::give_back(long size)
{
    try {
        archive_->Flush();  // of a loading archive: the file stands behind what was read
        if (CFile* file = archive_->GetFile())
            file->Seek(-LONGLONG{size}, CFile::current);
    } catch (...) {
        set_error(SeekFailed);
        throw;
    }
}
