#pragma once

#include "platform/Export.h"
#include "platform/PlatformTypes.h"

#include <vector>

class CFile;

/// A buffer over a file for reading it through or writing it through. The file is the caller's and
/// must outlive the archive or its Close. Failures of the file pass through; those of the archive
/// itself are thrown as CArchiveException*.
class ZMR_GV_API CArchive {
public:
    enum Mode : UINT {
        store = 0,
        load = 1,
        bNoFlushOnDelete = 2,  ///< The destructor does not close.
        bNoByteSwap = 4
    };

    CArchive(CFile* file, UINT mode, int buffer_size = 4096);
    /// Closes; a failure of that is lost here, so call Close where it matters.
    ~CArchive();
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    [[nodiscard]] BOOL IsLoading() const { return (mode_ & load) != 0; }
    [[nodiscard]] BOOL IsStoring() const { return (mode_ & load) == 0; }
    /// Null once it is closed.
    [[nodiscard]] CFile* GetFile() const { return file_; }

    /// Reads up to `count` bytes and returns how many there were; fewer only at the file's end.
    UINT Read(void* buffer, UINT count);
    void Write(const void* buffer, UINT count);
    /// Storing: hands the buffer to the file, which is not flushed itself. Loading: moves the file
    /// back to behind what was read.
    void Flush();
    /// Flushes and lets the file go.
    void Close();
    /// Lets the file go; what is in the buffer is lost.
    void Abort();

private:
    /// Throws when the archive is closed or works the other way.
    void check_mode(bool loading) const;
    UINT read_directly(BYTE* target, UINT count);

    CFile* file_;
    UINT mode_;
    std::vector<BYTE> buffer_;
    std::size_t next_ = 0;    ///< Loading: what is read next. Storing: what is written next.
    std::size_t filled_ = 0;  ///< Loading: where the buffer's content ends.
};
