#include "platform/CUserException.h"

std::string CUserException::message() const
{
    return {};
}

void AfxThrowUserException()
{
    static CUserException only(BOOL{0});
    throw &only;
}
