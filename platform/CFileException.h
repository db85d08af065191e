#pragma once

#include "platform/CException.h"
#include "platform/CString.h"
#include "platform/FileDevice.h"

/// A failed operation on a file.
class ZMR_GV_API CFileException : public CException {
    DECLARE_DYNAMIC(CFileException)

public:
    enum Cause {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    explicit CFileException(int cause = none, LONG os_error = -1, LPCTSTR name = nullptr)
        : m_cause(cause), m_lOsError(os_error), m_strFileName(name)
    {
    }
    /// What a file device reported about the file `name`.
    CFileException(const zmr::FileError& error, LPCTSTR name);

    int m_cause;
    LONG m_lOsError;  ///< The system's own code; -1 when there is none.
    CString m_strFileName;

protected:
    [[nodiscard]] std::string message() const override;
};

[[noreturn]] ZMR_GV_API void AfxThrowFileException(int cause, LONG os_error = -1,
                                                   LPCTSTR name = nullptr);
