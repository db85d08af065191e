#include "platform/CWindowDC.h"

#include "platform/CResourceException.h"
#include "platform/CWnd.h"

IMPLEMENT_DYNAMIC(CWindowDC, CDC)

CWindowDC::CWindowDC(CWnd* window)
    : owned_(window != nullptr ? window->m_hWnd : nullptr, zmr::WindowDC::kWholeWindow)
{
    if (!Attach(owned_.get()))
        AfxThrowResourceException();
}

CWindowDC::~CWindowDC()
{
    Detach();
}
