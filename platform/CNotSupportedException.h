#pragma once

#include "platform/CException.h"

/// An operation that this lane or this object does not have.
class ZMR_GV_API CNotSupportedException : public CException {
    DECLARE_DYNAMIC(CNotSupportedException)

public:
    using CException::CException;

protected:
    [[nodiscard]] std::string message() const override;
};

/// Throws the process's one object of the class, which Delete leaves alone.
[[noreturn]] ZMR_GV_API void AfxThrowNotSupportedException();
