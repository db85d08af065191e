#include "platform/CEvent.h"

#include "platform/CResourceException.h"

IMPLEMENT_DYNAMIC(CEvent, CObject)

CEvent::CEvent(BOOL initially_set, BOOL manual_reset, LPCTSTR name, LPSECURITY_ATTRIBUTES security)
    : m_hObject(::CreateEvent(security, manual_reset, initially_set, name)), owned_(m_hObject)
{
    if (m_hObject == nullptr)
        AfxThrowResourceException();
}

BOOL CEvent::Lock(DWORD milliseconds)
{
    return ::WaitForSingleObject(m_hObject, milliseconds) == WAIT_OBJECT_0;
}
