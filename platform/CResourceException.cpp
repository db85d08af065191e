#include "platform/CResourceException.h"

IMPLEMENT_DYNAMIC(CResourceException, CException)

std::string CResourceException::message() const
{
    return "A resource that is needed could not be had from the system.";
}

void AfxThrowResourceException()
{
    static CResourceException only(BOOL{0});
    throw &only;
}
