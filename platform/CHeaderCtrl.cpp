#include "platform/CHeaderCtrl.h"

IMPLEMENT_DYNAMIC(CHeaderCtrl, CWnd)

BOOL CHeaderCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    zmr::load_common_controls();
    return CWnd::Create(WC_HEADER, nullptr, style, rect, parent, id);
}
