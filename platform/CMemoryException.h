#pragma once

#include "platform/CException.h"

/// Memory has run out.
class ZMR_GV_API CMemoryException : public CException {
    DECLARE_DYNAMIC(CMemoryException)

public:
    using CException::CException;

protected:
    [[nodiscard]] std::string message() const override;
};

/// Throws the process's one object of the class, which Delete leaves alone; so nothing is
/// allocated.
[[noreturn]] ZMR_GV_API void AfxThrowMemoryException();
