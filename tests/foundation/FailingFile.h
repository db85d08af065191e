#pragma once

#include "platform/CFileException.h"
#include "platform/CMemFile.h"

#include <string>
#include <string_view>

/// A file in memory whose operations can be made to fail, and which counts its flushes.
class FailingFile : public CMemFile {
public:
    FailingFile() = default;
    explicit FailingFile(std::string_view content)
    {
        CMemFile::Write(content.data(), static_cast<UINT>(content.size()));
        SeekToBegin();
    }

    UINT Read(void* buffer, UINT count) override
    {
        fail_if(fails || fails_reading);
        return CMemFile::Read(buffer, count);
    }
    void Write(const void* buffer, UINT count) override
    {
        fail_if(fails || writes_left == 0);
        --writes_left;
        CMemFile::Write(buffer, count);
    }
    ULONGLONG Seek(LONGLONG offset, UINT from) override
    {
        fail_if(fails);
        return CMemFile::Seek(offset, from);
    }
    [[nodiscard]] ULONGLONG GetPosition() const override
    {
        fail_if(fails);
        return CMemFile::GetPosition();
    }
    [[nodiscard]] ULONGLONG GetLength() const override
    {
        fail_if(fails);
        return CMemFile::GetLength();
    }
    void Flush() override
    {
        fail_if(fails);
        ++flushes;
    }

    /// All that is in it.
    [[nodiscard]] std::string content()
    {
        const ULONGLONG at = CMemFile::GetPosition();
        std::string bytes(static_cast<std::size_t>(CMemFile::GetLength()), '\0');
        CMemFile::Seek(0, begin);
        CMemFile::Read(bytes.data(), static_cast<UINT>(bytes.size()));
        CMemFile::Seek(static_cast<LONGLONG>(at), begin);
        return bytes;
    }

    bool fails = false;
    bool fails_reading = false;
    int writes_left = -1;  ///< After so many writings one fails; below 0 none does.
    int flushes = 0;
    static constexpr LONG kCode = 4711;  ///< The system's code in what it throws.

private:
    static void fail_if(bool failing)
    {
        if (failing)
            AfxThrowFileException(CFileException::hardIO, kCode, "a failing file");
    }
};

/// The code in the CFileException* that `action` throws; -1 when it throws none, -2 when it is not
/// the one that a FailingFile threw.
template <class Action>
int code_of(Action action)
{
    try {
        action();
    } catch (CFileException* failure) {
        const bool same = failure->m_cause == CFileException::hardIO;
        const auto code = static_cast<int>(failure->m_lOsError);
        failure->Delete();
        return same ? code : -2;
    }
    return -1;
}
