#pragma once

#include "platform/CException.h"
#include "platform/CString.h"

/// A failed operation on an archive that is not its file's fault.
class ZMR_GV_API CArchiveException : public CException {
    DECLARE_DYNAMIC(CArchiveException)

public:
    enum Cause {
        none,
        genericException,
        readOnly,   ///< Written to an archive that is loading.
        endOfFile,  ///< The file ended inside what was read.
        writeOnly,  ///< Read from an archive that is storing.
        badIndex,
        badClass,
        badSchema,
        bufferFull
    };

    explicit CArchiveException(int cause = none, LPCTSTR name = nullptr)
        : m_cause(cause), m_strFileName(name)
    {
    }

    int m_cause;
    CString m_strFileName;

protected:
    [[nodiscard]] std::string message() const override;
};

[[noreturn]] ZMR_GV_API void AfxThrowArchiveException(int cause, LPCTSTR name = nullptr);
