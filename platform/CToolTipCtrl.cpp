#include "platform/CToolTipCtrl.h"

#include <cstddef>

IMPLEMENT_DYNAMIC(CToolTipCtrl, CWnd)

namespace {

constexpr std::size_t kLongestText = 1024;
// Every version of the control knows the record without its newest field.
constexpr UINT kToolSize = offsetof(TOOLINFO, lpReserved);

}  // namespace

BOOL CToolTipCtrl::Create(CWnd* parent, DWORD style)
{
    zmr::load_common_controls();
    return CreateEx(WS_EX_TOPMOST, TOOLTIPS_CLASS, nullptr, WS_POPUP | style, CW_USEDEFAULT,
                    CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, GetSafeHandle(parent), nullptr);
}

TOOLINFO CToolTipCtrl::tool_of(CWnd* window, UINT_PTR id)
{
    TOOLINFO tool{};
    tool.cbSize = kToolSize;
    if (id != 0) {
        tool.hwnd = window->m_hWnd;
        tool.uId = id;
        return tool;
    }
    tool.hwnd = ::GetParent(window->m_hWnd);
    tool.uId = reinterpret_cast<UINT_PTR>(window->m_hWnd);
    tool.uFlags = TTF_IDISHWND;
    return tool;
}

BOOL CToolTipCtrl::AddTool(TOOLINFO& tool)
{
    tool.cbSize = kToolSize;
    return static_cast<BOOL>(SendMessage(TTM_ADDTOOL, 0, zmr::lparam_of(&tool)));
}

void CToolTipCtrl::DelTool(TOOLINFO& tool)
{
    tool.cbSize = kToolSize;
    SendMessage(TTM_DELTOOL, 0, zmr::lparam_of(&tool));
}

BOOL CToolTipCtrl::AddTool(CWnd* window, LPCTSTR text, LPCRECT rect, UINT_PTR id)
{
    TOOLINFO tool = tool_of(window, id);
    if (rect != nullptr)
        tool.rect = *rect;
    tool.lpszText = const_cast<LPSTR>(text);
    return AddTool(tool);
}

BOOL CToolTipCtrl::AddTool(CWnd* window, UINT text_id, LPCRECT rect, UINT_PTR id)
{
    CString text;
    text.LoadString(text_id);
    return AddTool(window, text.GetString(), rect, id);
}

void CToolTipCtrl::DelTool(CWnd* window, UINT_PTR id)
{
    TOOLINFO tool = tool_of(window, id);
    DelTool(tool);
}

void CToolTipCtrl::UpdateTipText(LPCTSTR text, CWnd* window, UINT_PTR id)
{
    TOOLINFO tool = tool_of(window, id);
    tool.lpszText = const_cast<LPSTR>(text);
    SendMessage(TTM_UPDATETIPTEXT, 0, zmr::lparam_of(&tool));
}

void CToolTipCtrl::UpdateTipText(UINT text_id, CWnd* window, UINT_PTR id)
{
    CString text;
    text.LoadString(text_id);
    UpdateTipText(text.GetString(), window, id);
}

void CToolTipCtrl::SetToolRect(CWnd* window, UINT_PTR id, LPCRECT rect)
{
    TOOLINFO tool = tool_of(window, id);
    tool.rect = *rect;
    SendMessage(TTM_NEWTOOLRECT, 0, zmr::lparam_of(&tool));
}

void CToolTipCtrl::GetText(CString& text, CWnd* window, UINT_PTR id) const
{
    TOOLINFO tool = tool_of(window, id);
    char found[kLongestText] = "";
    tool.lpszText = found;
    SendMessage(TTM_GETTEXT, kLongestText, zmr::lparam_of(&tool));
    text = found;
}

BOOL CToolTipCtrl::GetToolInfo(TOOLINFO& tool, CWnd* window, UINT_PTR id) const
{
    tool = tool_of(window, id);
    return static_cast<BOOL>(SendMessage(TTM_GETTOOLINFO, 0, zmr::lparam_of(&tool)));
}

BOOL CToolTipCtrl::HitTest(CWnd* window, CPoint point, TOOLINFO& tool) const
{
    TTHITTESTINFO hit{};
    hit.hwnd = window->m_hWnd;
    hit.pt = point;
    hit.ti.cbSize = kToolSize;
    if (!SendMessage(TTM_HITTEST, 0, zmr::lparam_of(&hit)))
        return FALSE;
    tool = hit.ti;
    return TRUE;
}
