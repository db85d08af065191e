#include "scene_editor/PreviewPane.h"

#include "platform/CFont.h"
#include "platform/CPaintDC.h"
#include "scene_editor/TextHeight.h"
#include "scene_editor/core/PaneLayout.h"

#include <algorithm>

BEGIN_MESSAGE_MAP(PreviewPane, CWnd)
    ON_WM_SIZE()
    ON_WM_SETFOCUS()
    ON_WM_KILLFOCUS()
    ON_WM_PAINT()
    ON_WM_LBUTTONDOWN()
END_MESSAGE_MAP()

namespace {

constexpr int kLines = 2;

}  // namespace

BOOL PreviewPane::create(CWnd& parent, UINT id, CFont& font, int dpi)
{
    const LPCTSTR window_class = AfxRegisterWndClass(0, ::LoadCursor(nullptr, IDC_ARROW),
                                                     reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1));
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
    if (!Create(window_class, "", style, RECT{}, &parent, id))
        return FALSE;
    line_px_ = text_height(*this, font) + editor::scaled(2, dpi);
    margin_px_ = editor::scaled(4, dpi);
    frame_px_ = ::GetSystemMetrics(SM_CXBORDER);  // as wide as the other panes' edges

    const DWORD text_style =
        WS_CHILD | WS_VISIBLE | SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS | WS_CLIPSIBLINGS;
    if (!view_.CreateEx(0, AfxRegisterWndClass(CS_HREDRAW | CS_VREDRAW), "",
                        WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, RECT{}, this, 1) ||
        !title_.Create("", text_style, RECT{}, this, 2) ||
        !caption_.Create("", text_style, RECT{}, this, 3))
        return FALSE;
    title_.SetFont(&font);
    caption_.SetFont(&font);
    return TRUE;
}

void PreviewPane::show(editor::PreviewLoaded preview)
{
    view_.set_map(nullptr, false);
    preview_ = std::move(preview);
    const bool has_both = !preview_.class_name.empty() && !preview_.caption.empty();
    const std::string separator = has_both ? ", " : "";
    AfxSetWindowText(title_, preview_.name.c_str());
    AfxSetWindowText(caption_, (preview_.class_name + separator + preview_.caption).c_str());
    place_picture();
}

void PreviewPane::show_text(const std::string& title, const std::string& caption)
{
    editor::PreviewLoaded texts;
    texts.name = title;
    texts.class_name = caption;
    show(std::move(texts));
}

void PreviewPane::set_draw_type(GPixelMapView::DrawType type)
{
    draw_type_ = type;
    place_picture();
}

void PreviewPane::OnSize(UINT kind, int width, int height)
{
    CWnd::OnSize(kind, width, height);
    if (!::IsWindow(view_))
        return;
    const int texts_px = kLines * line_px_ + 2 * margin_px_;
    const int picture_px = std::max(0, height - texts_px);
    view_.MoveWindow(frame_px_, frame_px_, std::max(0, width - 2 * frame_px_),
                     std::max(0, picture_px - 2 * frame_px_));
    const int text_width = std::max(0, width - 2 * margin_px_);
    title_.MoveWindow(margin_px_, picture_px + margin_px_, text_width, line_px_);
    caption_.MoveWindow(margin_px_, picture_px + margin_px_ + line_px_, text_width, line_px_);
    Invalidate();
    place_picture();
}

void PreviewPane::OnSetFocus(CWnd* former)
{
    CWnd::OnSetFocus(former);
    Invalidate();
}

void PreviewPane::OnKillFocus(CWnd* next)
{
    CWnd::OnKillFocus(next);
    Invalidate();
}

void PreviewPane::OnPaint()
{
    CPaintDC dc(this);
    CRect frame;
    GetClientRect(&frame);
    frame.bottom = std::max(0L, frame.bottom - kLines * line_px_ - 2 * margin_px_);
    const bool has_focus = ::GetFocus() == m_hWnd;
    const COLORREF color = ::GetSysColor(has_focus ? COLOR_HIGHLIGHT : COLOR_BTNSHADOW);
    for (int i = 0; i < frame_px_; ++i) {
        dc.Draw3dRect(&frame, color, color);
        frame.DeflateRect(1, 1);
    }
}

void PreviewPane::OnLButtonDown(UINT, CPoint)
{
    SetFocus();
}

void PreviewPane::place_picture()
{
    // The view places a map when it is given one, by the way of drawing that is set then.
    view_.set_draw_type(draw_type_);
    view_.set_map(wanted_picture(), false);
}

PixelMap* PreviewPane::wanted_picture() const
{
    const bool is_scaled =
        draw_type_ == GPixelMapView::DrawFit || draw_type_ == GPixelMapView::DrawStretch;
    return is_scaled && preview_.smaller != nullptr ? preview_.smaller.get()
                                                    : preview_.picture.get();
}
