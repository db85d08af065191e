#pragma once

#include "platform/CException.h"

/// Ends an operation after the user has been told why: nobody reports it again.
class ZMR_GV_API CUserException : public CException {
    DECLARE_DYNAMIC(CUserException)

public:
    using CException::CException;

protected:
    [[nodiscard]] std::string message() const override;
};

/// Throws the process's one object of the class, which Delete leaves alone.
[[noreturn]] ZMR_GV_API void AfxThrowUserException();
