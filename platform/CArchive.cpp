#include "platform/CArchive.h"

#include "platform/CArchiveException.h"
#include "platform/CException.h"
#include "platform/CFile.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int kSmallestBuffer = 128;

}  // namespace

CArchive::CArchive(CFile* file, UINT mode, int buffer_size)
    : file_(file),
      mode_(mode),
      buffer_(static_cast<std::size_t>(std::max(buffer_size, kSmallestBuffer)))
{
}

CArchive::~CArchive()
{
    if ((mode_ & bNoFlushOnDelete) != 0)
        return;
    try {
        Close();
    } catch (CException* failure) {
        failure->Delete();
    }
}

UINT CArchive::Read(void* buffer, UINT count)
{
    check_mode(true);
    auto* target = static_cast<BYTE*>(buffer);
    UINT done = 0;
    while (done < count) {
        if (next_ == filled_) {
            if (count - done >= buffer_.size())
                return done + read_directly(target + done, count - done);
            next_ = 0;
            filled_ = 0;
            filled_ = file_->Read(buffer_.data(), static_cast<UINT>(buffer_.size()));
            if (filled_ == 0)
                break;
        }
        const auto part = std::min<std::size_t>(count - done, filled_ - next_);
        std::memcpy(target + done, buffer_.data() + next_, part);
        next_ += part;
        done += static_cast<UINT>(part);
    }
    return done;
}

UINT CArchive::read_directly(BYTE* target, UINT count)
{
    UINT done = 0;
    while (done < count) {
        const UINT part = file_->Read(target + done, count - done);
        if (part == 0)
            break;
        done += part;
    }
    return done;
}

void CArchive::Write(const void* buffer, UINT count)
{
    check_mode(false);
    if (count > buffer_.size() - next_)
        Flush();
    if (count >= buffer_.size()) {
        file_->Write(buffer, count);
        return;
    }
    if (count != 0)
        std::memcpy(buffer_.data() + next_, buffer, count);
    next_ += count;
}

void CArchive::Flush()
{
    if (file_ == nullptr)
        return;
    if (IsLoading()) {
        const auto unread = static_cast<LONGLONG>(filled_ - next_);
        if (unread != 0)
            file_->Seek(-unread, CFile::current);
        next_ = 0;
        filled_ = 0;
        return;
    }
    if (next_ != 0)
        file_->Write(buffer_.data(), static_cast<UINT>(next_));
    next_ = 0;
}

void CArchive::Close()
{
    Flush();
    file_ = nullptr;
}

void CArchive::Abort()
{
    file_ = nullptr;
}

void CArchive::check_mode(bool loading) const
{
    if (file_ == nullptr)
        AfxThrowArchiveException(CArchiveException::genericException);
    if (loading != (IsLoading() != 0))
        AfxThrowArchiveException(
            loading ? CArchiveException::writeOnly : CArchiveException::readOnly,
            file_->GetFilePath());
}
