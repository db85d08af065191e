#pragma once

#include "foundation/GIO.h"

class CFile;

/// The device over a file of the platform, which is the caller's and must outlive it. What the file
/// throws goes through: a platform exception stays one, and the error word tells what failed.
class ZMR_GV_API CFileIO : public GIO {
public:
    /// `mode` tells what the file was opened for; it is not checked.
    CFileIO(CFile& file, IOOpenMode mode);
    ~CFileIO() override;

    [[nodiscard]] CFile* get_CFile() const { return file_; }

    /// A position beyond LONG_MAX is a failed seek (CFileException, badSeek), and the file stays
    /// where it was.
    long gseek(long offset, IOSeekDirection direction) override;
    long gtell() override;
    long gwrite(const void* data, long size) override;
    long gread(void* data, long size) override;
    /// CFile::Flush, which waits for the disk, of a file opened for writing. Nothing once an
    /// operation failed, so that what tidies up behind a failure causes no second one.
    void flush() override;
    /// Counted in 64 bits.
    [[nodiscard]] std::int64_t gleft() override;

    /// Moves the file back over the last `size` bytes read; nothing when it has been moved since
    /// then by someone else.
    void give_back(long size);

private:
    CFile* file_;
    std::uint64_t read_to_ = 0;  ///< Where the last reading ended.
};
