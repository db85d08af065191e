// The main window: the lines that tell what lies below the mouse and what goes on, and the way to
// the help.
#include "scene_editor/EditorFrame.h"
#include "scene_editor/core/HelpTopics.h"
#include "scene_interface/SceneItem.h"
#include "settings/GHelp.h"
#include "settings/MsgBox.h"

#include <windowsx.h>

#include <utility>

LRESULT EditorFrame::OnStatusText(WPARAM line, LPARAM)
{
    return MsgBox::ProseedUpdateSBMessage(static_cast<unsigned>(line));
}

void EditorFrame::show_name_under_mouse()
{
    const std::optional<EntryList::Id> row = list_.row_under_mouse();
    std::string name =
        row ? std::string(list_.rows().name(*row)) : scene_window_.name_under_mouse();
    // Only news: the line is the worker's, too.
    if (name == name_under_mouse_)
        return;
    name_under_mouse_ = std::move(name);
    MsgBox::PutInfo("%s", name_under_mouse_.c_str());
}

void EditorFrame::show_grid()
{
    const auto* const item = dynamic_cast<scene::SceneItem*>(document_.current());
    const double grid = item != nullptr ? item->grid_step() : 0;
    if (grid == told_grid_)
        return;
    told_grid_ = grid;
    if (grid > 0)
        MsgBox::PutGridInfo(grid);
    else
        MsgBox::PutGridInfo();
}

LPARAM EditorFrame::help_topic_of(HWND window) const
{
    for (; window != nullptr && window != m_hWnd; window = ::GetParent(window)) {
        const std::uint32_t topic = editor::help_topic_of(::GetDlgCtrlID(window));
        if (topic == 0)
            continue;
        GHelp::PointedWindow(window);
        return static_cast<LPARAM>(topic);
    }
    return 0;
}

// Some systems tell of a press twice: message boxes while they deal with one message, menus by a
// message for the key itself, which comes when they are gone.
BOOL EditorFrame::OnHelpInfo(HELPINFO* help)
{
    is_help_key_answered_ = help != nullptr && help->iContextType == HELPINFO_MENUITEM;
    const LONG now = ::GetMessageTime();
    if (std::exchange(help_asked_at_, now) == now)
        return TRUE;
    return CFrameWnd::OnHelpInfo(help);
}

bool EditorFrame::is_answered_help_key(const MSG& message)
{
    constexpr UINT kHelpKey = 0x4D;
    if (message.message == WM_KEYDOWN)
        is_help_key_answered_ = false;
    return message.message == kHelpKey && std::exchange(is_help_key_answered_, false);
}

LRESULT EditorFrame::OnHelpHitTest(WPARAM unused, LPARAM point)
{
    POINT place{GET_X_LPARAM(point), GET_Y_LPARAM(point)};
    HWND window = m_hWnd;
    // Down to the innermost: none of them has answered for itself.
    for (HWND child = window; child != nullptr;) {
        window = child;
        child = ::ChildWindowFromPointEx(window, place, CWP_SKIPINVISIBLE);
        if (child == window)
            break;
        if (child != nullptr)
            ::MapWindowPoints(window, child, &place, 1);
    }
    const LPARAM topic = help_topic_of(window);
    return topic != 0 ? topic : CFrameWnd::OnHelpHitTest(unused, point);
}

LRESULT EditorFrame::OnCommandHelp(WPARAM unused, LPARAM topic)
{
    const bool in_a_menu = m_nIDTracking != AFX_IDS_IDLEMESSAGE && m_nIDTracking != 0 &&
                           m_nIDTracking != AFX_IDS_HELPMODEMESSAGE;
    if (topic == 0 && !in_a_menu)
        topic = help_topic_of(::GetFocus());
    return CFrameWnd::OnCommandHelp(unused, topic);
}
