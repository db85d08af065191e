#include "platform/CMemFile.h"

#include "platform/CFileException.h"
#include "platform/CMemoryException.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

CMemFile::~CMemFile()
{
    CMemFile::Close();
}

void CMemFile::Attach(BYTE* buffer, UINT size, UINT grow_bytes)
{
    CMemFile::Close();
    block_ = buffer;
    capacity_ = size;
    size_ = grow_bytes == 0 ? size : 0;
    grow_bytes_ = grow_bytes;
    owned_ = grow_bytes != 0;
}

BYTE* CMemFile::Detach()
{
    capacity_ = 0;
    size_ = 0;
    position_ = 0;
    owned_ = true;
    return std::exchange(block_, nullptr);
}

void CMemFile::Close()
{
    if (owned_)
        std::free(block_);
    static_cast<void>(Detach());
}

void CMemFile::Abort()
{
    CMemFile::Close();
}

UINT CMemFile::Read(void* buffer, UINT count)
{
    if (position_ >= size_ || count == 0)
        return 0;
    const std::size_t there = std::min<std::size_t>(count, size_ - position_);
    std::memcpy(buffer, block_ + position_, there);
    position_ += there;
    return static_cast<UINT>(there);
}

void CMemFile::Write(const void* buffer, UINT count)
{
    if (count == 0)
        return;
    extend(position_);
    reserve(position_ + count);
    std::memcpy(block_ + position_, buffer, count);
    position_ += count;
    size_ = std::max<std::size_t>(size_, position_);
}

ULONGLONG CMemFile::Seek(LONGLONG offset, UINT from)
{
    position_ = target_of_seek(offset, from, size_);
    return position_;
}

void CMemFile::SetLength(ULONGLONG length)
{
    extend(length);
    size_ = static_cast<std::size_t>(length);
}

void CMemFile::reserve(ULONGLONG bytes)
{
    if (bytes <= capacity_)
        return;
    constexpr ULONGLONG kLargest = PTRDIFF_MAX;
    if (grow_bytes_ == 0 || bytes > kLargest - grow_bytes_)
        AfxThrowMemoryException();
    // By steps, but at least by an eighth, so that many small writes stay linear.
    const ULONGLONG wanted = std::max<ULONGLONG>(bytes, capacity_ + capacity_ / 8);
    const std::size_t rounded =
        static_cast<std::size_t>((wanted + grow_bytes_ - 1) / grow_bytes_ * grow_bytes_);
    void* const grown = std::realloc(block_, rounded);
    if (grown == nullptr)
        AfxThrowMemoryException();
    block_ = static_cast<BYTE*>(grown);
    capacity_ = rounded;
}

void CMemFile::extend(ULONGLONG bytes)
{
    if (bytes <= size_)
        return;
    reserve(bytes);
    std::memset(block_ + size_, 0, static_cast<std::size_t>(bytes) - size_);
    size_ = static_cast<std::size_t>(bytes);
}
