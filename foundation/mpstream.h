#pragma once

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <span>

/// What the memory streams share: a block of bytes.
class ZMR_GV_API mpbase : public virtual pstream {
public:
    ~mpbase() override;
    /// The start of the block. Of an ompstream it moves as the block grows, so ask again.
    [[nodiscard]] void* data() const;

protected:
    mpbase();
    class MemoryBuffer;
    std::unique_ptr<MemoryBuffer> memory_;
};

/// Reads a block that belongs to the caller and must outlive the stream.
class ZMR_GV_API impstream : public mpbase, public ipstream {
public:
    impstream(void* data, long size, GIO::IOOpenMode mode = GIO::OpenRead);
    explicit impstream(std::span<const unsigned char> data);
    ~impstream() override;
};

/// Writes into a block that grows; `tellp` gives its length.
class ZMR_GV_API ompstream : public mpbase, public opstream {
public:
    ompstream();
    ~ompstream() override;
    /// What was written so far, until the next writing.
    [[nodiscard]] std::span<const unsigned char> bytes() const;
};
