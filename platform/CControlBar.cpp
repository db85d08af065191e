#include "platform/CControlBar.h"

#include "platform/BarLayout.h"
#include "platform/CBrush.h"
#include "platform/CFrameWnd.h"
#include "platform/CPaintDC.h"
#include "platform/SizeParent.h"

#include <windowsx.h>

#include <utility>

IMPLEMENT_DYNAMIC(CControlBar, CWnd)

BEGIN_MESSAGE_MAP(CControlBar, CWnd)
    ON_WM_CREATE()
    ON_WM_PAINT()
    ON_WM_TIMER()
    ON_WM_CTLCOLOR()
    ON_WM_WINDOWPOSCHANGING()
    ON_MESSAGE(WM_SIZEPARENT, &CControlBar::OnSizeParent)
    ON_MESSAGE(WM_IDLEUPDATECMDUI, &CControlBar::OnIdleUpdateCmdUI)
    ON_MESSAGE(WM_HELPHITTEST, &CControlBar::OnHelpHitTest)
END_MESSAGE_MAP()

namespace {

constexpr int kEndless = 32767;
constexpr int kGripperWidth = 3;
constexpr UINT_PTR kPromptTimer = 0xE001;  // looks whether the mouse has left the bar
constexpr UINT kPromptTimerMs = 100;

int line_width(DWORD style)
{
    return (style & CBRS_BORDER_3D) != 0 ? 2 : 1;
}

zmr::BarEdge edge_of(DWORD style)
{
    if ((style & CBRS_ALIGN_TOP) != 0)
        return zmr::BarEdge::top;
    if ((style & CBRS_ALIGN_BOTTOM) != 0)
        return zmr::BarEdge::bottom;
    return (style & CBRS_ALIGN_LEFT) != 0 ? zmr::BarEdge::left : zmr::BarEdge::right;
}

/// What the bar's owner is told about by the bar's controls.
bool is_for_owner(UINT message)
{
    switch (message) {
        case WM_NOTIFY:
        case WM_COMMAND:
        case WM_DRAWITEM:
        case WM_MEASUREITEM:
        case WM_DELETEITEM:
        case WM_COMPAREITEM:
        case WM_VKEYTOITEM:
        case WM_CHARTOITEM:
            return true;
        default:
            return false;
    }
}

}  // namespace

CControlBar::~CControlBar()
{
    if (m_hWnd != nullptr)
        CControlBar::DestroyWindow();
}

int CControlBar::OnCreate(LPCREATESTRUCT creation)
{
    if (CWnd::OnCreate(creation) == -1)
        return -1;
    EnableToolTips((m_dwStyle & CBRS_TOOLTIPS) != 0);
    return 0;
}

BOOL CControlBar::DestroyWindow()
{
    m_bDelayHide = m_bDelayShow = FALSE;
    return CWnd::DestroyWindow();
}

void CControlBar::PostNcDestroy()
{
    if (m_bAutoDelete)
        delete this;
}

BOOL CControlBar::PreTranslateMessage(MSG* message)
{
    if (CWnd::PreTranslateMessage(message))
        return TRUE;
    if ((m_dwStyle & CBRS_FLYBY) != 0 && message->message == WM_MOUSEMOVE)
        show_prompt_under_mouse();
    return FALSE;
}

void CControlBar::OnTimer(UINT_PTR id)
{
    if (id == kPromptTimer)
        show_prompt_under_mouse();
    else
        CWnd::OnTimer(id);
}

void CControlBar::show_prompt_under_mouse()
{
    CPoint mouse;
    ::GetCursorPos(&mouse);
    const HWND under = ::WindowFromPoint(mouse);
    int tool = -1;
    if (under != nullptr && (under == m_hWnd || ::IsChild(m_hWnd, under))) {
        ScreenToClient(&mouse);
        tool = OnToolHitTest(mouse, nullptr);
    }
    const CFrameWnd* const frame = GetDockingFrame();
    if (tool == prompted_ || frame == nullptr)
        return;
    prompted_ = tool;
    if (tool != -1) {
        SetTimer(kPromptTimer, kPromptTimerMs);
        frame->SendMessage(WM_SETMESSAGESTRING, static_cast<WPARAM>(tool));
    } else {
        KillTimer(kPromptTimer);
        frame->SendMessage(WM_POPMESSAGESTRING, AFX_IDS_IDLEMESSAGE);
    }
}

DWORD CControlBar::take_bar_style(DWORD style)
{
    m_dwStyle = style & CBRS_ALL;
    return style & ~CBRS_ALL;
}

void CControlBar::SetBarStyle(DWORD style)
{
    const DWORD former = m_dwStyle;
    if (former == style)
        return;
    m_dwStyle = style;
    OnBarStyleChange(former, style);
}

void CControlBar::OnBarStyleChange(DWORD former, DWORD style)
{
    if (((former ^ style) & CBRS_TOOLTIPS) != 0 && m_hWnd != nullptr)
        EnableToolTips((style & CBRS_TOOLTIPS) != 0);
}

void CControlBar::SetBorders(int left, int top, int right, int bottom)
{
    m_cxLeftBorder = left;
    m_cyTopBorder = top;
    m_cxRightBorder = right;
    m_cyBottomBorder = bottom;
}

CRect CControlBar::GetBorders() const
{
    return {m_cxLeftBorder, m_cyTopBorder, m_cxRightBorder, m_cyBottomBorder};
}

CFrameWnd* CControlBar::GetDockingFrame() const
{
    CWnd* const owner = GetOwner();
    if (owner != nullptr && owner->IsFrameWnd())
        return static_cast<CFrameWnd*>(owner);
    return GetParentFrame();
}

BOOL CControlBar::IsVisible() const
{
    if (m_bDelayHide)
        return FALSE;
    return m_bDelayShow || (m_hWnd != nullptr && (GetStyle() & WS_VISIBLE) != 0);
}

void CControlBar::DelayShow(BOOL show)
{
    const bool shown = (GetStyle() & WS_VISIBLE) != 0;
    m_bDelayShow = show && !shown;
    m_bDelayHide = !show && shown;
}

CSize CControlBar::CalcFixedLayout(BOOL stretch, BOOL horizontal)
{
    return {stretch && horizontal ? kEndless : 0, stretch && !horizontal ? kEndless : 0};
}

CSize CControlBar::CalcDynamicLayout(int, DWORD mode)
{
    return CalcFixedLayout((mode & LM_STRETCH) != 0, (mode & LM_HORZ) != 0);
}

void CControlBar::CalcInsideRect(CRect& rect, BOOL horizontal) const
{
    const int line = line_width(m_dwStyle);
    const auto line_at = [&](DWORD edge) { return (m_dwStyle & edge) != 0 ? line : 0; };
    rect.DeflateRect(line_at(CBRS_BORDER_LEFT), line_at(CBRS_BORDER_TOP),
                     line_at(CBRS_BORDER_RIGHT), line_at(CBRS_BORDER_BOTTOM));
    // A standing bar is a lying one turned: its borders turn with it.
    const bool gripper = (m_dwStyle & (CBRS_GRIPPER | CBRS_FLOATING)) == CBRS_GRIPPER;
    const int grip = gripper ? kGripperWidth + m_cxDefaultGap : 0;
    if (horizontal)
        rect.DeflateRect(m_cxLeftBorder + grip, m_cyTopBorder, m_cxRightBorder, m_cyBottomBorder);
    else
        rect.DeflateRect(m_cyTopBorder, m_cxLeftBorder + grip, m_cyBottomBorder, m_cxRightBorder);
}

LRESULT CControlBar::WindowProc(UINT message, WPARAM wparam, LPARAM lparam)
{
    if (!is_for_owner(message))
        return CWnd::WindowProc(message, wparam, lparam);
    LRESULT result = 0;
    if (OnWndMsg(message, wparam, lparam, &result))
        return result;
    if (const CWnd* const owner = GetOwner())
        return owner->SendMessage(message, wparam, lparam);
    return DefWindowProc(message, wparam, lparam);
}

void CControlBar::OnPaint()
{
    CPaintDC dc(this);
    if (IsWindowVisible())
        DoPaint(&dc);
}

void CControlBar::DoPaint(CDC* dc)
{
    CRect rect;
    GetClientRect(rect);
    DrawBorders(dc, rect);
}

void CControlBar::DrawBorders(CDC* dc, CRect& rect)
{
    struct Line {
        DWORD style;
        CRect place;
    };
    const int line = line_width(m_dwStyle);
    const int left = static_cast<int>(rect.left);
    const int top = static_cast<int>(rect.top);
    const int right = static_cast<int>(rect.right);
    const int bottom = static_cast<int>(rect.bottom);
    const Line lines[] = {{CBRS_BORDER_LEFT, {left, top, left + 1, bottom}},
                          {CBRS_BORDER_TOP, {left, top, right, top + 1}},
                          {CBRS_BORDER_RIGHT, {right - line, top, right - line + 1, bottom}},
                          {CBRS_BORDER_BOTTOM, {left, bottom - line, right, bottom - line + 1}}};
    for (const Line& each : lines) {
        if ((m_dwStyle & each.style) == 0)
            continue;
        ::FillRect(dc->m_hDC, each.place, ::GetSysColorBrush(COLOR_BTNSHADOW));
        if (line == 1)
            continue;
        CRect light = each.place;  // behind the dark line, as light falls on an edge
        const bool upright = (each.style & (CBRS_BORDER_LEFT | CBRS_BORDER_RIGHT)) != 0;
        light.OffsetRect(upright ? 1 : 0, upright ? 0 : 1);
        ::FillRect(dc->m_hDC, light, ::GetSysColorBrush(COLOR_BTNHIGHLIGHT));
    }
    const auto line_at = [&](DWORD edge) { return (m_dwStyle & edge) != 0 ? line : 0; };
    rect.DeflateRect(line_at(CBRS_BORDER_LEFT), line_at(CBRS_BORDER_TOP),
                     line_at(CBRS_BORDER_RIGHT), line_at(CBRS_BORDER_BOTTOM));
}

HBRUSH CControlBar::OnCtlColor(CDC* dc, CWnd* control, UINT kind)
{
    // Texts on a bar stand on the bar's own colour.
    if (kind == CTLCOLOR_STATIC) {
        LRESULT brush = 0;
        if (control != nullptr && ReflectLastMsg(control->m_hWnd, &brush))
            return reinterpret_cast<HBRUSH>(brush);
        ::SetBkColor(dc->m_hDC, ::GetSysColor(COLOR_BTNFACE));
        ::SetTextColor(dc->m_hDC, ::GetSysColor(COLOR_BTNTEXT));
        return ::GetSysColorBrush(COLOR_BTNFACE);
    }
    return CWnd::OnCtlColor(dc, control, kind);
}

void CControlBar::OnWindowPosChanging(WINDOWPOS* place)
{
    CWnd::OnWindowPosChanging(place);
    if ((place->flags & SWP_NOSIZE) != 0 || (m_dwStyle & CBRS_BORDER_ANY) == 0)
        return;
    // The lines at the far edges lie elsewhere then.
    CRect before;
    GetWindowRect(before);
    const int line = line_width(m_dwStyle);
    const CSize size = before.Size();
    const auto invalidate_right_of = [&](int width) {
        const CRect edge(width - line, 0, width, kEndless);
        InvalidateRect(edge);
    };
    const auto invalidate_below = [&](int height) {
        const CRect edge(0, height - line, kEndless, height);
        InvalidateRect(edge);
    };
    if ((m_dwStyle & CBRS_BORDER_RIGHT) != 0 && place->cx != size.cx) {
        invalidate_right_of(static_cast<int>(size.cx));
        invalidate_right_of(place->cx);
    }
    if ((m_dwStyle & CBRS_BORDER_BOTTOM) != 0 && place->cy != size.cy) {
        invalidate_below(static_cast<int>(size.cy));
        invalidate_below(place->cy);
    }
}

bool CControlBar::finish_delayed_show(AFX_SIZEPARENTPARAMS& layout)
{
    const bool shown = (GetStyle() & WS_VISIBLE) != 0;
    if (layout.hDWP == nullptr)
        return IsVisible() != FALSE;  // only asked for
    const bool show = std::exchange(m_bDelayShow, FALSE) && !shown;
    const bool hide = std::exchange(m_bDelayHide, FALSE) && shown;
    if (show || hide)
        layout.hDWP = ::DeferWindowPos(layout.hDWP, m_hWnd, nullptr, 0, 0, 0, 0,
                                       SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE |
                                           (show ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
    return show || (shown && !hide);
}

LRESULT CControlBar::OnSizeParent(WPARAM, LPARAM lparam)
{
    auto& layout = *reinterpret_cast<AFX_SIZEPARENTPARAMS*>(lparam);
    if (!finish_delayed_show(layout) || (m_dwStyle & CBRS_ALIGN_ANY) == 0)
        return 0;
    DWORD mode = layout.bStretch ? LM_STRETCH : 0;
    if ((m_dwStyle & CBRS_SIZE_DYNAMIC) != 0 && (m_dwStyle & CBRS_FLOATING) != 0)
        mode |= LM_HORZ | LM_MRUWIDTH;
    else if ((m_dwStyle & CBRS_ORIENT_HORZ) != 0)
        mode |= LM_HORZ | LM_HORZDOCK;
    else
        mode |= LM_VERTDOCK;

    zmr::RoomForBars room{CRect(layout.rect), CSize(layout.sizeTotal), layout.bStretch != FALSE};
    const CRect place = zmr::take_edge(room, edge_of(m_dwStyle), CalcDynamicLayout(-1, mode));
    layout.rect = room.rest;
    layout.sizeTotal = room.total;
    AfxRepositionWindow(&layout, m_hWnd, place);
    return 0;
}

LRESULT CControlBar::OnHelpHitTest(WPARAM, LPARAM point)
{
    const CPoint place(GET_X_LPARAM(point), GET_Y_LPARAM(point));
    const int command = OnToolHitTest(place, nullptr);
    return command > 0 ? static_cast<LRESULT>(HID_BASE_COMMAND + LOWORD(command)) : 0;
}

LRESULT CControlBar::OnIdleUpdateCmdUI(WPARAM disable, LPARAM)
{
    CFrameWnd* const frame = GetDockingFrame();
    if (frame != nullptr && (m_bDelayShow || m_bDelayHide))
        frame->RecalcLayout();
    if (frame != nullptr && (GetStyle() & WS_VISIBLE) != 0)
        OnUpdateCmdUI(frame, static_cast<BOOL>(disable));
    return 0;
}
