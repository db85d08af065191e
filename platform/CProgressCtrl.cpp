#include "platform/CProgressCtrl.h"

IMPLEMENT_DYNAMIC(CProgressCtrl, CWnd)

BOOL CProgressCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    zmr::load_common_controls();
    return CWnd::Create(PROGRESS_CLASS, nullptr, style, rect, parent, id);
}
