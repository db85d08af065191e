#include "platform/CStatusBar.h"

#include "platform/ByteText.h"
#include "platform/CCmdUI.h"
#include "platform/CFrameWnd.h"
#include "platform/HandlesGdi.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CStatusBar, CControlBar)

BEGIN_MESSAGE_MAP(CStatusBar, CControlBar)
    ON_WM_PAINT()
    ON_WM_SIZE()
    ON_MESSAGE(WM_SETTEXT, &CStatusBar::OnSetText)
    ON_MESSAGE(WM_GETTEXT, &CStatusBar::OnGetText)
    ON_MESSAGE(WM_GETTEXTLENGTH, &CStatusBar::OnGetTextLength)
    ON_MESSAGE(WM_SETFONT, &CStatusBar::OnSetFont)
    ON_MESSAGE(SB_SETMINHEIGHT, &CStatusBar::OnSetMinHeight)
END_MESSAGE_MAP()

namespace {

constexpr int kEndless = 32767;
constexpr int kPaddingAt96 = 3;          // between a pane's edge and its text
constexpr int kEmptyPartOfScreen = 4;    // an empty pane is so much of the screen wide
constexpr UINT kControlStyles = 0xFF00;  // what of a pane's style the control knows

/// The state of one pane, for update handlers.
class PaneState : public CCmdUI {
public:
    explicit PaneState(CStatusBar& bar) : bar_(bar) { m_pOther = &bar; }

    void Enable(BOOL on) override
    {
        m_bEnableChanged = TRUE;
        set_style(SBPS_DISABLED, !on);
    }
    void SetCheck(int check) override { set_style(SBPS_POPOUT, check != 0); }
    void SetRadio(BOOL on) override { SetCheck(on ? 1 : 0); }
    void SetText(LPCTSTR text) override { bar_.SetPaneText(static_cast<int>(m_nIndex), text); }

private:
    void set_style(UINT bit, bool on)
    {
        const int pane = static_cast<int>(m_nIndex);
        const UINT style = bar_.GetPaneStyle(pane) & ~bit;
        bar_.SetPaneStyle(pane, on ? style | bit : style);
    }

    CStatusBar& bar_;
};

/// A window's context with the window's own font selected.
class TextMeasure {
public:
    explicit TextMeasure(const CWnd& window)
        : dc_(window.m_hWnd), font_(dc_.get(), zmr::ask_for<HGDIOBJ>(window, WM_GETFONT))
    {
    }
    [[nodiscard]] int width(const CString& text) const
    {
        SIZE size{};
        ::GetTextExtentPoint32(dc_.get(), text, text.GetLength(), &size);
        return static_cast<int>(size.cx);
    }
    [[nodiscard]] int height() const
    {
        TEXTMETRIC metric{};
        ::GetTextMetrics(dc_.get(), &metric);
        return static_cast<int>(metric.tmHeight);
    }
    [[nodiscard]] int dpi() const { return ::GetDeviceCaps(dc_.get(), LOGPIXELSX); }

private:
    zmr::WindowDC dc_;
    zmr::Selection font_;
};

}  // namespace

BOOL CStatusBar::Create(CWnd* parent, DWORD style, UINT id)
{
    return CreateEx(parent, 0, style, id);
}

BOOL CStatusBar::CreateEx(CWnd* parent, DWORD control_style, DWORD style, UINT id)
{
    zmr::load_common_controls();
    DWORD window_style = take_bar_style(style) | control_style | CCS_NOPARENTALIGN | CCS_NOMOVEY |
                         CCS_NODIVIDER | CCS_NORESIZE;
    if ((parent->GetStyle() & WS_THICKFRAME) != 0)
        window_style |= SBARS_SIZEGRIP;
    SetBorders();
    return CWnd::Create(STATUSCLASSNAME, nullptr, window_style, CRect(), parent, id);
}

BOOL CStatusBar::SetIndicators(const UINT* ids, int count)
{
    panes_.assign(static_cast<std::size_t>(std::max(count, 0)), Pane());
    m_nCount = static_cast<int>(panes_.size());
    edges_.clear();
    const int empty_width = ::GetSystemMetrics(SM_CXSCREEN) / kEmptyPartOfScreen;
    BOOL complete = TRUE;
    for (int i = 0; i < m_nCount && ids != nullptr; ++i) {
        Pane& pane = panes_[static_cast<std::size_t>(i)];
        pane.id = ids[i];
        if (pane.id != ID_SEPARATOR) {
            if (!pane.text.LoadString(pane.id)) {
                complete = FALSE;
                break;
            }
            pane.width = width_of(pane.text);
            pane.fits_text = true;
        } else if (i == 0) {
            pane.style = SBPS_STRETCH | SBPS_NOBORDERS;
        } else {
            pane.width = empty_width;
        }
    }
    place_panes();
    for (int i = 0; i < m_nCount; ++i)
        write_pane(i);
    return complete;
}

int CStatusBar::width_of(const CString& text) const
{
    return TextMeasure(*this).width(text);
}

CStatusBar::Borders CStatusBar::borders() const
{
    int widths[3] = {};
    zmr::ask(*this, SB_GETBORDERS, 0, zmr::lparam_of(widths));
    return {widths[0], widths[1], widths[2]};
}

void CStatusBar::place_panes()
{
    if (m_hWnd == nullptr || panes_.empty())
        return;
    std::vector<zmr::PaneWidth> widths;
    widths.reserve(panes_.size());
    for (const Pane& pane : panes_)
        widths.push_back({pane.width, (pane.style & SBPS_STRETCH) != 0});
    CRect inside;
    GetClientRect(inside);
    CalcInsideRect(inside, TRUE);
    const int padding = zmr::scaled_to_dpi(kPaddingAt96, TextMeasure(*this).dpi());
    std::vector<int> edges = zmr::pane_edges(widths, inside.Width(), padding, borders().gap);
    for (int& edge : edges)
        if (edge != -1)
            edge += static_cast<int>(inside.left);
    if (edges == edges_)
        return;
    edges_ = std::move(edges);
    zmr::ask(*this, SB_SETPARTS, edges_.size(), zmr::lparam_of(edges_.data()));
}

void CStatusBar::write_pane(int index)
{
    Pane& pane = panes_[static_cast<std::size_t>(index)];
    pane.stale = false;
    const bool shown = (pane.style & SBPS_DISABLED) == 0;
    const bool own_drawing = (pane.style & SBPS_OWNERDRAW) != 0;
    const LPCTSTR text = shown ? pane.text.GetString() : "";
    zmr::ask(*this, SB_SETTEXT, (pane.style & kControlStyles) | static_cast<UINT>(index),
             own_drawing ? 0 : zmr::lparam_of(text));
}

int CStatusBar::CommandToIndex(UINT id) const
{
    for (int i = 0; i < m_nCount; ++i)
        if (panes_[static_cast<std::size_t>(i)].id == id)
            return i;
    return -1;
}

UINT CStatusBar::GetItemID(int pane) const
{
    return has_pane(pane) ? panes_[static_cast<std::size_t>(pane)].id : 0;
}

void CStatusBar::GetItemRect(int pane, LPRECT rect) const
{
    if (!has_pane(pane) || !zmr::ask(*this, SB_GETRECT, zmr::wparam_of(pane), zmr::lparam_of(rect)))
        *rect = {};
}

CString CStatusBar::GetPaneText(int pane) const
{
    return has_pane(pane) ? panes_[static_cast<std::size_t>(pane)].text : CString();
}

BOOL CStatusBar::SetPaneText(int index, LPCTSTR text, BOOL update)
{
    if (!has_pane(index))
        return FALSE;
    Pane& pane = panes_[static_cast<std::size_t>(index)];
    const CString wanted(text);
    if (pane.text == wanted && !(update && pane.stale))
        return TRUE;
    pane.text = wanted;
    pane.stale = true;
    if (update)
        write_pane(index);
    return TRUE;
}

void CStatusBar::GetPaneInfo(int index, UINT& id, UINT& style, int& width) const
{
    const Pane pane = has_pane(index) ? panes_[static_cast<std::size_t>(index)] : Pane();
    id = pane.id;
    style = pane.style;
    width = pane.width;
}

void CStatusBar::SetPaneInfo(int index, UINT id, UINT style, int width)
{
    if (!has_pane(index))
        return;
    Pane& pane = panes_[static_cast<std::size_t>(index)];
    pane.id = id;
    pane.fits_text = false;
    pane.width = width;
    // Whether it stretches is a matter of placing, the rest one of drawing.
    const UINT former = pane.style;
    pane.style = style;
    place_panes();
    if (((former ^ style) & ~SBPS_STRETCH) != 0 || pane.stale)
        write_pane(index);
}

UINT CStatusBar::GetPaneStyle(int pane) const
{
    return has_pane(pane) ? panes_[static_cast<std::size_t>(pane)].style : 0;
}

void CStatusBar::SetPaneStyle(int index, UINT style)
{
    if (!has_pane(index))
        return;
    Pane& pane = panes_[static_cast<std::size_t>(index)];
    const UINT former = pane.style;
    if (former == style && !pane.stale)
        return;
    pane.style = style;
    if (((former ^ style) & SBPS_STRETCH) != 0)
        place_panes();
    write_pane(index);
}

CSize CStatusBar::CalcFixedLayout(BOOL, BOOL)
{
    const int height = TextMeasure(*this).height();
    return {kEndless, zmr::status_bar_height(height, borders().vertical, least_height_)};
}

void CStatusBar::CalcInsideRect(CRect& rect, BOOL) const
{
    const Borders around = borders();
    rect.DeflateRect(around.horizontal, around.vertical);
    // The grip lies over the last pane while the frame can be sized by it.
    const CWnd* const frame = GetParent();
    if ((GetStyle() & SBARS_SIZEGRIP) != 0 && frame != nullptr && !frame->IsZoomed())
        rect.right -= ::GetSystemMetrics(SM_CXVSCROLL);
}

void CStatusBar::OnUpdateCmdUI(CFrameWnd* target, BOOL disable_if_no_handler)
{
    PaneState state(*this);
    state.m_nIndexMax = static_cast<UINT>(m_nCount);
    for (state.m_nIndex = 0; state.m_nIndex < state.m_nIndexMax; ++state.m_nIndex) {
        state.m_nID = GetItemID(static_cast<int>(state.m_nIndex));
        state.m_bEnableChanged = FALSE;
        // The bar's own handlers come first. A pane without any stays as it is.
        if (state.m_nID != ID_SEPARATOR &&
            CWnd::OnCmdMsg(state.m_nID, static_cast<int>(CN_UPDATE_COMMAND_UI), &state, nullptr))
            continue;
        state.DoUpdate(target, FALSE);
    }
    UpdateDialogControls(target, disable_if_no_handler);
}

void CStatusBar::DrawItem(LPDRAWITEMSTRUCT) {}

BOOL CStatusBar::OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    if (message != WM_DRAWITEM)
        return CControlBar::OnChildNotify(message, wparam, lparam, result);
    DrawItem(reinterpret_cast<LPDRAWITEMSTRUCT>(lparam));
    return TRUE;
}

void CStatusBar::OnPaint()
{
    Default();  // the control draws itself, borders and all
}

void CStatusBar::OnSize(UINT kind, int width, int height)
{
    CControlBar::OnSize(kind, width, height);
    place_panes();
}

LRESULT CStatusBar::OnSetText(WPARAM, LPARAM text)
{
    const int pane = CommandToIndex(ID_SEPARATOR);
    if (pane < 0)
        return Default();
    return SetPaneText(pane, reinterpret_cast<LPCTSTR>(text));
}

LRESULT CStatusBar::OnGetText(WPARAM room, LPARAM text)
{
    const int pane = CommandToIndex(ID_SEPARATOR);
    if (pane < 0)
        return Default();
    return static_cast<LRESULT>(
        zmr::copy_cut(reinterpret_cast<LPSTR>(text), room, GetPaneText(pane).view()));
}

LRESULT CStatusBar::OnGetTextLength(WPARAM, LPARAM)
{
    const int pane = CommandToIndex(ID_SEPARATOR);
    return pane < 0 ? Default() : GetPaneText(pane).GetLength();
}

LRESULT CStatusBar::OnSetMinHeight(WPARAM height, LPARAM)
{
    least_height_ = static_cast<int>(height);
    return Default();
}

LRESULT CStatusBar::OnSetFont(WPARAM, LPARAM)
{
    const LRESULT result = Default();
    for (Pane& pane : panes_) {
        CString text;
        if (pane.fits_text && text.LoadString(pane.id))
            pane.width = width_of(text);
    }
    place_panes();
    if (CFrameWnd* const frame = GetParentFrame())
        frame->DelayRecalcLayout();
    return result;
}
