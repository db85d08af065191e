#include "platform/CToolTipCtrl.h"
#include "platform/CWnd.h"
#include "platform/ThreadState.h"

#include <cstdlib>

namespace zmr {

/// The thread's tip: one control serves all windows, and has one tool at a time, the one that the
/// mouse is on.
struct ToolTips {
    ~ToolTips() { control.m_hWnd = nullptr; }  // the system ends a thread's windows

    CToolTipCtrl control;
    HWND window = nullptr;  ///< Whose OnToolHitTest named the tool,
    int hit = -1;           ///< by this number; -1 when there is none.
    TOOLINFO tool{};        ///< As registered, while `hit` is not -1.
    MSG served{};           ///< The last message that a window found a tool for.
};

}  // namespace zmr

namespace {

constexpr UINT kNoId = 0xFFFF;

zmr::ToolTips& tips_of_thread()
{
    std::shared_ptr<zmr::ToolTips>& tips = zmr::ThreadState::current().tool_tips;
    if (tips == nullptr)
        tips = std::make_shared<zmr::ToolTips>();
    return *tips;
}

bool is_move(UINT message)
{
    return message == WM_MOUSEMOVE || message == WM_NCMOUSEMOVE;
}

/// Presses and keys: whoever acts does not read tips.
bool ends_tip(UINT message)
{
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_RBUTTONDBLCLK:
        case WM_MBUTTONDBLCLK:
        case WM_NCLBUTTONDOWN:
        case WM_NCRBUTTONDOWN:
        case WM_NCMBUTTONDOWN:
        case WM_MOUSEWHEEL:
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            return true;
        default:
            return false;
    }
}

bool is_button_down()
{
    return ::GetKeyState(VK_LBUTTON) < 0 || ::GetKeyState(VK_RBUTTON) < 0 ||
           ::GetKeyState(VK_MBUTTON) < 0;
}

/// Where the mouse is, in the window's client coordinates.
CPoint place_in(HWND window, const MSG& message)
{
    CPoint place = zmr::crack::point_of(message.lParam);
    const HWND from = message.message == WM_MOUSEMOVE ? message.hwnd : nullptr;
    ::MapWindowPoints(from, window, &place, 1);
    return place;
}

bool is_same(const MSG& a, const MSG& b)
{
    return a.hwnd == b.hwnd && a.message == b.message && a.wParam == b.wParam &&
           a.lParam == b.lParam && a.time == b.time;
}

/// True when the window, its top-level window or one that this owns is the active one.
bool is_in_front(const CWnd& window)
{
    const CWnd* const top = window.GetTopLevelParent();
    const HWND active = ::GetActiveWindow();
    return top != nullptr && (active == top->m_hWnd || active == window.m_hWnd ||
                              (active != nullptr && ::IsChild(active, window.m_hWnd)));
}

void forget_tool(zmr::ToolTips& tips)
{
    if (tips.hit != -1 && tips.control.m_hWnd != nullptr) {
        tips.control.Activate(FALSE);
        tips.control.DelTool(tips.tool);
    }
    tips.hit = -1;
    tips.window = nullptr;
}

/// The control, owned by the window's top-level window, so that it lies before that one and ends
/// with it.
bool make_control(zmr::ToolTips& tips, const CWnd& window)
{
    CWnd* const top = window.GetTopLevelParent();
    if (tips.control.m_hWnd != nullptr &&
        ::GetWindow(tips.control.m_hWnd, GW_OWNER) == CWnd::GetSafeHandle(top))
        return true;
    tips.control.DestroyWindow();
    return tips.control.Create(top, TTS_ALWAYSTIP) != FALSE;
}

/// Tells the control of the move as if it had gone to the tool's own window.
void relay(zmr::ToolTips& tips, const MSG& message)
{
    MSG relayed = message;
    relayed.message = WM_MOUSEMOVE;
    relayed.hwnd = (tips.tool.uFlags & TTF_IDISHWND) != 0 ? reinterpret_cast<HWND>(tips.tool.uId)
                                                          : tips.tool.hwnd;
    const CPoint place = place_in(relayed.hwnd, message);
    relayed.lParam = MAKELPARAM(place.x, place.y);
    tips.control.RelayEvent(&relayed);
}

}  // namespace

BOOL CWnd::EnableToolTips(BOOL enable)
{
    if (enable) {
        m_nFlags |= WF_TOOLTIPS;
        return TRUE;
    }
    m_nFlags &= ~WF_TOOLTIPS;
    const std::shared_ptr<zmr::ToolTips> tips = zmr::ThreadState::current().tool_tips;
    if (tips != nullptr && tips->window == m_hWnd)
        forget_tool(*tips);
    return TRUE;
}

void CWnd::CancelToolTips(BOOL)
{
    const std::shared_ptr<zmr::ToolTips> tips = zmr::ThreadState::current().tool_tips;
    // The tool stays known, so that the tip comes again only when the mouse has left it.
    if (tips != nullptr && tips->control.m_hWnd != nullptr)
        tips->control.Activate(FALSE);
}

void CWnd::FilterToolTipMessage(MSG* message)
{
    if (ends_tip(message->message)) {
        CancelToolTips(message->message == WM_KEYDOWN || message->message == WM_SYSKEYDOWN);
        return;
    }
    if (!is_move(message->message) || is_button_down())
        return;
    zmr::ToolTips& tips = tips_of_thread();
    if (tips.hit != -1 && tips.window != m_hWnd && is_same(tips.served, *message))
        return;  // a window further in has found a tool for it

    TOOLINFO tool{};
    tool.hwnd = m_hWnd;
    int hit = OnToolHitTest(place_in(m_hWnd, *message), &tool);
    if (hit != -1 && (tool.uFlags & TTF_ALWAYSTIP) == 0 && !is_in_front(*this))
        hit = -1;
    if (tips.window != m_hWnd || tips.hit != hit || tips.control.m_hWnd == nullptr) {
        forget_tool(tips);
        tool.uFlags &= ~TTF_ALWAYSTIP;
        if (hit != -1 && make_control(tips, *this) && tips.control.AddTool(tool)) {
            tips.tool = tool;
            tips.tool.lpszText = LPSTR_TEXTCALLBACK;  // only named from here on
            tips.window = m_hWnd;
            tips.hit = hit;
            tips.control.Activate(TRUE);
            tips.control.SetWindowPos(HWND_TOP, 0, 0, 0, 0,
                                      SWP_NOACTIVATE | SWP_NOMOVE | SWP_NOSIZE);
        }
    }
    if (tool.lpszText != nullptr && tool.lpszText != LPSTR_TEXTCALLBACK)
        std::free(tool.lpszText);
    if (tips.hit == -1)
        return;
    tips.served = *message;
    relay(tips, *message);
}

int CWnd::OnToolHitTest(CPoint point, TOOLINFO* info) const
{
    const HWND child = ::RealChildWindowFromPoint(m_hWnd, point);
    if (child == nullptr || child == m_hWnd)
        return -1;
    const UINT id = LOWORD(::GetDlgCtrlID(child));
    if (id == kNoId)
        return -1;
    if (info != nullptr) {
        info->hwnd = m_hWnd;
        info->uId = reinterpret_cast<UINT_PTR>(child);
        info->uFlags |= TTF_IDISHWND;
        info->lpszText = LPSTR_TEXTCALLBACK;
    }
    return static_cast<int>(id);
}
