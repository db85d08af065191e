#include "scene_editor/PreviewPane.h"

#include "platform/CFont.h"
#include "platform/CPaintDC.h"
#include "scene_editor/TextHeight.h"
#include "scene_editor/core/PaneLayout.h"
#include "scene_editor/core/PreviewTexts.h"

#include <algorithm>

BEGIN_MESSAGE_MAP(PreviewPane, CWnd)
    ON_WM_SIZE()
    ON_WM_SETFOCUS()
    ON_WM_KILLFOCUS()
    ON_WM_PAINT()
    ON_WM_LBUTTONDOWN()
END_MESSAGE_MAP()

namespace {

constexpr int kDescriptionLines = 3;

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
        !caption_.Create("", text_style, RECT{}, this, 3) ||
        !more_.Create("", text_style, RECT{}, this, 4) ||
        !description_.Create(
            "", WS_CHILD | WS_VISIBLE | SS_LEFT | SS_NOPREFIX | SS_EDITCONTROL | WS_CLIPSIBLINGS,
            RECT{}, this, 5))
        return FALSE;
    for (CStatic* const text : {&title_, &caption_, &more_, &description_})
        text->SetFont(&font);
    return TRUE;
}

void PreviewPane::show(editor::PreviewLoaded preview)
{
    view_.set_map(nullptr, false);
    preview_ = std::move(preview);
    const editor::PreviewTexts texts = editor::preview_texts(preview_);
    AfxSetWindowText(title_, texts.title.c_str());
    AfxSetWindowText(caption_, texts.caption.c_str());
    AfxSetWindowText(more_, texts.more.c_str());
    AfxSetWindowText(description_, editor::with_control_breaks(texts.description).c_str());
    const bool has_same_lines =
        has_more_ == !texts.more.empty() && has_description_ == !texts.description.empty();
    has_more_ = !texts.more.empty();
    has_description_ = !texts.description.empty();
    if (has_same_lines)
        place_picture();
    else
        place_parts();
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
    place_parts();
}

void PreviewPane::place_parts()
{
    if (!::IsWindow(description_))
        return;
    CRect client;
    GetClientRect(&client);
    const int width = static_cast<int>(client.Width());
    const int picture_px = picture_height();
    view_.MoveWindow(frame_px_, frame_px_, std::max(0, width - 2 * frame_px_),
                     std::max(0, picture_px - 2 * frame_px_));
    const int text_width = std::max(0, width - 2 * margin_px_);
    int top = picture_px + margin_px_;
    for (CStatic* const text : {&title_, &caption_, &more_}) {
        text->MoveWindow(margin_px_, top, text_width, line_px_);
        top += line_px_;
    }
    if (!has_more_)
        top -= line_px_;
    description_.MoveWindow(margin_px_, top, text_width, kDescriptionLines * line_px_);
    more_.ShowWindow(has_more_ ? SW_SHOWNA : SW_HIDE);
    description_.ShowWindow(has_description_ ? SW_SHOWNA : SW_HIDE);
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
    frame.bottom = picture_height();
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

int PreviewPane::picture_height() const
{
    CRect client;
    GetClientRect(&client);
    const int lines = 2 + (has_more_ ? 1 : 0) + (has_description_ ? kDescriptionLines : 0);
    return std::max(0, static_cast<int>(client.Height()) - lines * line_px_ - 2 * margin_px_);
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
