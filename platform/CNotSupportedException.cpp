#include "platform/CNotSupportedException.h"

std::string CNotSupportedException::message() const
{
    return "The operation is not supported.";
}

void AfxThrowNotSupportedException()
{
    static CNotSupportedException only(BOOL{0});
    throw &only;
}
