#include "platform/CSpinButtonCtrl.h"

IMPLEMENT_DYNAMIC(CSpinButtonCtrl, CWnd)

BOOL CSpinButtonCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    zmr::load_common_controls();
    return CWnd::Create(UPDOWN_CLASS, nullptr, style, rect, parent, id);
}
