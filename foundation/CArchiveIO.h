#pragma once

#include "foundation/GIO.h"

class CArchive;

/// The device over an archive of the platform, which is the caller's and must outlive it. It reads
/// when the archive is loading and writes when it is storing, from and to where the archive stands,
/// and has no positions. What the archive throws goes through: a platform exception stays one, and
/// the error word tells what failed.
class ZMR_GV_API CArchiveIO : public GIO {
public:
    explicit CArchiveIO(CArchive& archive);
    ~CArchiveIO() override;

    /// Does not move; always -1. So are gtell and gleft.
    long gseek(long offset, IOSeekDirection direction) override;
    long gwrite(const void* data, long size) override;
    long gread(void* data, long size) override;
    /// CArchive::Flush, which hands the archive's buffer to its file, of an archive that is
    /// storing. Nothing once an operation failed, so that what tidies up behind a failure causes no
    /// second one.
    void flush() override;

    /// Moves a loading archive back over the last `size` bytes read, by way of its file, which must
    /// be able to seek.
    void give_back(long size);

private:
    CArchive* archive_;
};
