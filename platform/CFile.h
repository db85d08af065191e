#pragma once

#include "platform/CString.h"
#include "platform/Export.h"
#include "platform/FileDevice.h"
#include "platform/PlatformTypes.h"

#include <cstdint>
#include <memory>

class CFileException;

/// A file with a position, unbuffered. Positions and lengths are 64 bits wide. Operations fail by a
/// thrown CFileException*. Not to be used by two threads at once.
class ZMR_GV_API CFile {
public:
    enum OpenFlags : UINT {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,      ///< Makes the file; one that is there is cut to nothing.
        modeNoTruncate = 0x2000,  ///< With modeCreate: one that is there is kept.
        typeText = 0x4000,
        typeBinary = 0x8000
    };
    enum SeekPosition : UINT { begin = 0, current = 1, end = 2 };

    CFile() = default;
    /// Opens the file of that UTF-8 name.
    CFile(LPCTSTR name, UINT flags);
    /// Closes; a failure of that is lost here.
    virtual ~CFile();
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    /// Opens the file of that UTF-8 name. FALSE on failure, with its cause in `failure` when given.
    /// The object must be closed.
    virtual BOOL Open(LPCTSTR name, UINT flags, CFileException* failure = nullptr);
    /// Nothing when it is closed.
    virtual void Close();
    /// Closes and ignores what fails at it.
    virtual void Abort();

    /// Reads up to `count` bytes and returns how many there were; fewer only at the end of the
    /// file.
    virtual UINT Read(void* buffer, UINT count);
    virtual void Write(const void* buffer, UINT count);
    /// Moves to `offset` from `from` and returns the new position. A position before the start
    /// fails with badSeek and moves nothing; one behind the end is allowed.
    virtual ULONGLONG Seek(LONGLONG offset, UINT from);
    void SeekToBegin() { Seek(0, begin); }
    ULONGLONG SeekToEnd() { return Seek(0, end); }
    [[nodiscard]] virtual ULONGLONG GetPosition() const;
    [[nodiscard]] virtual ULONGLONG GetLength() const;
    /// Cuts or extends the file. The position stays.
    virtual void SetLength(ULONGLONG length);
    /// Returns when what was written is on the disk.
    virtual void Flush();

    /// The name it was opened by; the part behind its last slash.
    [[nodiscard]] virtual CString GetFilePath() const { return m_strFileName; }
    [[nodiscard]] virtual CString GetFileName() const;

    static void Rename(LPCTSTR old_name, LPCTSTR new_name);
    static void Remove(LPCTSTR name);

protected:
    /// Where `offset` from `from` leads, with a file of `length` bytes; throws badSeek when that is
    /// no position.
    [[nodiscard]] ULONGLONG target_of_seek(LONGLONG offset, UINT from, ULONGLONG length) const;

    CString m_strFileName;
    ULONGLONG position_ = 0;

private:
    [[nodiscard]] zmr::FileDevice& device() const;
    [[noreturn]] void fail(const zmr::FileError& error) const;
    void check(const zmr::FileError& error) const;

    std::unique_ptr<zmr::FileDevice> device_;
    UINT flags_ = 0;
};
