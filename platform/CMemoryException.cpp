#include "platform/CMemoryException.h"

IMPLEMENT_DYNAMIC(CMemoryException, CException)

std::string CMemoryException::message() const
{
    return "There is not enough memory.";
}

void AfxThrowMemoryException()
{
    static CMemoryException only(BOOL{0});
    throw &only;
}
