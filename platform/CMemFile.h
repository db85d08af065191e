#pragma once

#include "platform/CFile.h"

/// A file in memory. The block is from malloc, so that Detach can give it away; it grows by steps
/// of `grow_bytes`. Growing fails with CMemoryException*.
class ZMR_GV_API CMemFile : public CFile {
public:
    /// Empty. With `grow_bytes` 0 it can't be written.
    explicit CMemFile(UINT grow_bytes = 1024) : grow_bytes_(grow_bytes) {}
    CMemFile(BYTE* buffer, UINT size, UINT grow_bytes = 0) { Attach(buffer, size, grow_bytes); }
    ~CMemFile() override;

    /// Works on the caller's block. With `grow_bytes` 0 the block stays the caller's, its content
    /// is the file, and it can't grow. Otherwise it must be from malloc, is taken over and counts
    /// as free space: the file is empty.
    void Attach(BYTE* buffer, UINT size, UINT grow_bytes = 0);
    /// Gives the block to the caller, who frees it unless it was his, and ends empty.
    [[nodiscard]] BYTE* Detach();

    void Close() override;
    void Abort() override;
    UINT Read(void* buffer, UINT count) override;
    void Write(const void* buffer, UINT count) override;
    ULONGLONG Seek(LONGLONG offset, UINT from) override;
    [[nodiscard]] ULONGLONG GetLength() const override { return size_; }
    void SetLength(ULONGLONG length) override;
    void Flush() override {}

private:
    /// Makes room for `bytes` in all.
    void reserve(ULONGLONG bytes);
    /// What lies between the end and `bytes` becomes zeros of the file.
    void extend(ULONGLONG bytes);

    BYTE* block_ = nullptr;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
    UINT grow_bytes_ = 0;
    bool owned_ = true;
};
