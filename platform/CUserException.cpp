#include "platform/CUserException.h"

IMPLEMENT_DYNAMIC(CUserException, CException)

std::string CUserException::message() const
{
    return {};
}

void AfxThrowUserException()
{
    static CUserException only(BOOL{0});
    throw &only;
}
