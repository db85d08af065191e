#include "scene_editor/PaneSplitter.h"

BEGIN_MESSAGE_MAP(PaneSplitter, CWnd)
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_MOUSEMOVE()
END_MESSAGE_MAP()

BOOL PaneSplitter::create(CWnd& parent, UINT id, Between between)
{
    between_ = between;
    const HCURSOR cursor =
        ::LoadCursor(nullptr, between == Between::LeftAndRight ? IDC_SIZEWE : IDC_SIZENS);
    const LPCTSTR window_class =
        AfxRegisterWndClass(0, cursor, reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1));
    return Create(window_class, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, RECT{}, &parent, id);
}

void PaneSplitter::OnLButtonDown(UINT, CPoint point)
{
    grip_ = point;
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
    POINT edge{point.x - grip_.x, point.y - grip_.y};
    ::MapWindowPoints(m_hWnd, parent, &edge, 1);
    ::SendMessage(parent, WM_SPLITTER_DRAGGED, static_cast<WPARAM>(GetDlgCtrlID()),
                  between_ == Between::LeftAndRight ? edge.x : edge.y);
}
