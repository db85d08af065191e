#pragma once

#include "platform/CObject.h"
#include "platform/PlatformTypes.h"

#include <string>

/// Base of the platform's exceptions. They are thrown and caught by pointer:
///     catch (CException* failure) { failure->ReportError(); failure->Delete(); }
/// Who catches one for good calls Delete; who throws it on with `throw;` does not.
class ZMR_GV_API CException : public CObject {
    DECLARE_DYNAMIC(CException)

public:
    /// Made with new; Delete frees it.
    CException() = default;
    /// False for an object that Delete must leave alone, because it lives elsewhere.
    explicit CException(BOOL auto_delete) : m_bAutoDelete(auto_delete) {}
    ~CException() override = default;

    /// Frees the object unless it lives elsewhere.
    void Delete();
    /// Writes the message, cut to `size` bytes with its closing zero. FALSE, and an empty text,
    /// when there is none. `help`, when given, receives the help context.
    virtual BOOL GetErrorMessage(LPSTR text, UINT size, UINT* help = nullptr) const;
    /// Shows the message through the installed reporter, with `fallback` as the text when there is
    /// none. `type` is a message box's. Returns the box's answer.
    virtual int ReportError(UINT type = 0, UINT fallback = 0);

protected:
    /// The message, empty when there is none.
    [[nodiscard]] virtual std::string message() const { return {}; }

    BOOL m_bAutoDelete = 1;
};

namespace zmr {

/// Shows a failure to the user and returns the answer, as a message box of type `type` does.
using FailureReporter = int (*)(const std::string& text, UINT type, UINT help);
/// Installs the reporter and returns the former one. Until a program installs one, and after null,
/// reports are lines on the standard error output, answered by 1 (OK). Set it before other threads
/// run.
ZMR_GV_API FailureReporter set_failure_reporter(FailureReporter reporter);

}  // namespace zmr
