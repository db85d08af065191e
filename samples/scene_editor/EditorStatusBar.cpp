#include "scene_editor/EditorStatusBar.h"

#include "platform/BufferedPaint.h"
#include "platform/CPaintDC.h"
#include "scene_editor/core/PaneLayout.h"
#include "scene_editor/resource.h"
#include "settings/MsgBox.h"

BEGIN_MESSAGE_MAP(StatusLine, CWnd)
    ON_MESSAGE(WM_SETTEXT, &StatusLine::OnSetText)
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
END_MESSAGE_MAP()

BEGIN_MESSAGE_MAP(EditorStatusBar, CStatusBar)
    ON_WM_SIZE()
END_MESSAGE_MAP()

namespace {

constexpr int kCountsWidthAt96 = 170;

/// A line of the library, its pane and its window.
struct Line {
    MsgBox::InfoLineType type;
    UINT pane;
    UINT window;
    int width_at_96;  ///< 0 for the pane that shares the rest with the prompt.
};
constexpr std::array kTold{
    Line{MsgBox::InfoGeneral, ID_PANE_GENERAL, IDC_STATUS_GENERAL, 0},
    Line{MsgBox::InfoX, ID_PANE_X, IDC_STATUS_X, 66},
    Line{MsgBox::InfoY, ID_PANE_Y, IDC_STATUS_Y, 66},
    Line{MsgBox::InfoZ, ID_PANE_Z, IDC_STATUS_Z, 66},
    Line{MsgBox::InfoGrid, ID_PANE_GRID, IDC_STATUS_GRID, 66},
};

}  // namespace

BOOL StatusLine::create(CWnd& bar, UINT id)
{
    const LPCTSTR window_class = AfxRegisterWndClass(0, ::LoadCursor(nullptr, IDC_ARROW));
    return Create(window_class, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, RECT{}, &bar, id);
}

LRESULT StatusLine::OnSetText(WPARAM, LPARAM)
{
    const LRESULT result = Default();
    Invalidate(FALSE);
    return result;
}

BOOL StatusLine::OnEraseBkgnd(CDC*)
{
    return TRUE;  // the picture covers all
}

void StatusLine::OnPaint()
{
    CPaintDC paint(this);
    zmr::BufferedPaint buffer(paint);
    CDC& dc = buffer.dc();
    CRect area;
    GetClientRect(&area);
    dc.FillSolidRect(area, ::GetSysColor(COLOR_BTNFACE));
    CString text;
    GetWindowText(text);
    CFont* const font = GetParent()->GetFont();
    CFont* const former = font != nullptr ? dc.SelectObject(font) : nullptr;
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(::GetSysColor(COLOR_BTNTEXT));
    dc.DrawText(text, area, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
    if (former != nullptr)
        dc.SelectObject(former);
}

BOOL EditorStatusBar::create(CWnd& parent, int dpi)
{
    margin_px_ = editor::scaled(2, dpi);
    if (!Create(&parent))
        return FALSE;
    constexpr std::array<UINT, kTold.size() + 2> kPanes{
        ID_SEPARATOR, ID_PANE_GENERAL, ID_PANE_COUNTS, ID_PANE_X,
        ID_PANE_Y,    ID_PANE_Z,       ID_PANE_GRID};
    if (!SetIndicators(kPanes.data(), static_cast<int>(kPanes.size())))
        return FALSE;
    SetPaneInfo(CommandToIndex(ID_PANE_COUNTS), ID_PANE_COUNTS, SBPS_NORMAL,
                editor::scaled(kCountsWidthAt96, dpi));
    for (std::size_t i = 0; i < kTold.size(); ++i) {
        const Line& line = kTold[i];
        SetPaneInfo(CommandToIndex(line.pane), line.pane,
                    line.width_at_96 == 0 ? SBPS_STRETCH : SBPS_NORMAL,
                    editor::scaled(line.width_at_96, dpi));
        if (!lines_[i].create(*this, line.window))
            return FALSE;
    }
    place_lines();
    return TRUE;
}

void EditorStatusBar::join_lines()
{
    MsgBox::SetInfoLine(MsgBox::InfoPrompt, this);
    for (std::size_t i = 0; i < kTold.size(); ++i)
        MsgBox::SetInfoLine(kTold[i].type, &lines_[i]);
}

void EditorStatusBar::leave_lines()
{
    MsgBox::SetInfoLine(MsgBox::InfoPrompt, nullptr);
    for (const Line& line : kTold)
        MsgBox::SetInfoLine(line.type, nullptr);
}

void EditorStatusBar::OnSize(UINT kind, int width, int height)
{
    CStatusBar::OnSize(kind, width, height);
    place_lines();
}

void EditorStatusBar::place_lines()
{
    for (std::size_t i = 0; i < kTold.size(); ++i) {
        if (lines_[i].GetSafeHwnd() == nullptr)
            continue;
        CRect area;
        GetItemRect(CommandToIndex(kTold[i].pane), &area);
        area.DeflateRect(2 * margin_px_, margin_px_, margin_px_, margin_px_);
        if (area.Width() < 0)
            area.right = area.left;
        lines_[i].MoveWindow(&area);
    }
}
