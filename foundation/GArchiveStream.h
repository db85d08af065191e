#pragma once

#include "foundation/iopstream.h"

#include <functional>
#include <memory>

class CArchive;
class CFile;
class GFlateBufferedIO;

/// The typed streams over a file or an archive of the platform, so that a document which is saved
/// by the platform's serialisation can hold persistent data. The file or archive is the caller's
/// and must outlive the stream; nobody else may move it meanwhile. What it throws goes through as
/// it is, a CException by pointer, and leaves the stream bad.
///
/// Data begins where the file or archive stands and may have other data before and behind it: at
/// the end of its life a stream that was read moves the file or archive back to behind the last
/// byte that was taken from it. Of a compressed stream that is known once all that was written to
/// it has been read; otherwise the file or archive stays at some place further on. An archive's
/// file must be able to seek for this; if it can't, it stays there as well.
class ZMR_GV_API GArchiveStream : public iopstream {
public:
    GArchiveStream(CFile& file, GIO::IOOpenMode mode, bool compressed);
    /// Reads from a loading archive and writes to a storing one.
    GArchiveStream(CArchive& archive, bool compressed);
    /// Hands on what is left to be written and drops a failure of it: call `flush` to see one.
    ~GArchiveStream() override;

private:
    class ReadAhead;
    static constexpr long kBufferBytes = 4096;
    static constexpr int kDeflateLevel = 4;

    void init(std::unique_ptr<GIO> io, bool compressed);
    void return_what_was_not_taken();

    std::unique_ptr<GAbstractBufferedIO> buffer;  ///< The top of what stands on the device.
    ReadAhead* lowest_ = nullptr;                 ///< In `buffer`, or it.
    GFlateBufferedIO* packing_ = nullptr;         ///< `buffer`, when it compresses.
    std::function<void(long)> give_back_;         ///< Moves the device back over so many bytes.
};
