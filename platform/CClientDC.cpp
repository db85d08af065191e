#include "platform/CClientDC.h"

#include "platform/CResourceException.h"
#include "platform/CWnd.h"

IMPLEMENT_DYNAMIC(CClientDC, CDC)

CClientDC::CClientDC(CWnd* window) : owned_(window != nullptr ? window->m_hWnd : nullptr)
{
    if (!Attach(owned_.get()))
        AfxThrowResourceException();
}

CClientDC::~CClientDC()
{
    Detach();
}
