#include "scene_editor/PaneSplitter.h"

BEGIN_MESSAGE_MAP(PaneSplitter, CWnd)
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_MOUSEMOVE()
END_MESSAGE_MAP()

BOOL PaneSplitter::create(CWnd& parent, UINT id)
{
    const LPCTSTR window_class = AfxRegisterWndClass(0, ::LoadCursor(nullptr, IDC_SIZEWE),
                                                     reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1));
    return Create(window_class, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, RECT{}, &parent, id);
}

void PaneSplitter::OnLButtonDown(UINT, CPoint point)
{
    grip_x_ = point.x;
    SetCapture();
}

void PaneSplitter::OnLButtonUp(UINT, CPoint)
{
    if (::GetCapture() == m_hWnd)
        ::ReleaseCapture();
}

void PaneSplitter::OnMouseMove(UINT, CPoint point)
{
    if (::GetCapture() != m_hWnd)
        return;
    const HWND parent = ::GetParent(m_hWnd);
    POINT edge{point.x - grip_x_, point.y};
    ::MapWindowPoints(m_hWnd, parent, &edge, 1);
    ::SendMessage(parent, WM_SPLITTER_DRAGGED, static_cast<WPARAM>(GetDlgCtrlID()), edge.x);
}
