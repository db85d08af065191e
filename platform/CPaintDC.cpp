#include "platform/CPaintDC.h"

#include "platform/CResourceException.h"
#include "platform/CWnd.h"

IMPLEMENT_DYNAMIC(CPaintDC, CDC)

CPaintDC::CPaintDC(CWnd* window) : owned_(window->m_hWnd)
{
    m_ps = owned_.record();
    if (!Attach(owned_.get()))
        AfxThrowResourceException();
}

CPaintDC::~CPaintDC()
{
    Detach();
}
