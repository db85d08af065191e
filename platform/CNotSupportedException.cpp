#include "platform/CNotSupportedException.h"

IMPLEMENT_DYNAMIC(CNotSupportedException, CException)

std::string CNotSupportedException::message() const
{
    return "The operation is not supported.";
}

void AfxThrowNotSupportedException()
{
    static CNotSupportedException only(BOOL{0});
    throw &only;
}
