#pragma once

#include "platform/CException.h"

/// The system refused a resource: a device context, a drawing object, a window class.
class ZMR_GV_API CResourceException : public CException {
    DECLARE_DYNAMIC(CResourceException)

public:
    using CException::CException;

protected:
    [[nodiscard]] std::string message() const override;
};

/// Throws the process's one object of the class, which Delete leaves alone; so nothing is
/// allocated.
[[noreturn]] ZMR_GV_API void AfxThrowResourceException();
