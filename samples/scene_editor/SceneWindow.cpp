#include "scene_editor/SceneWindow.h"

#include "platform/CFrameWnd.h"
#include "platform/CPaintDC.h"
#include "scene_editor/resource.h"
#include "settings/MsgBox.h"

#include <algorithm>

BEGIN_MESSAGE_MAP(SceneWindow, CWnd)
    ON_WM_SIZE()
    ON_WM_SETFOCUS()
    ON_WM_KILLFOCUS()
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_MOUSEMOVE()
    ON_WM_MOUSELEAVE()
    ON_WM_MOUSEWHEEL()
    ON_WM_CAPTURECHANGED()
    ON_WM_KEYDOWN()
END_MESSAGE_MAP()

namespace {

constexpr std::uint32_t kNoScene = 0x3A3E46;

std::uint32_t pixel_of(COLORREF color)
{
    return static_cast<std::uint32_t>(GetBValue(color)) |
           static_cast<std::uint32_t>(GetGValue(color)) << 8 |
           static_cast<std::uint32_t>(GetRValue(color)) << 16;
}

}  // namespace

BOOL SceneWindow::create(CWnd& parent, UINT id, int dpi, editor::SceneDocument& document)
{
    dpi_ = dpi;
    document_ = &document;
    const LPCTSTR window_class =
        AfxRegisterWndClass(CS_HREDRAW | CS_VREDRAW, ::LoadCursor(nullptr, IDC_ARROW));
    if (!Create(window_class, "", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS, RECT{},
                &parent, id))
        return FALSE;
    keys_.assign_to(m_hWnd);  // before the frame's own keys, some of which mean the library
    return keys_.load(IDR_SCENE_KEYS);
}

void SceneWindow::show_change()
{
    if (m_hWnd != nullptr)
        Invalidate(FALSE);
}

void SceneWindow::show_scene()
{
    if (document_ == nullptr || document_->root() == nullptr)
        return;
    document_->scene()->set_view_size(width_px_, height_px_, dpi_);
    const unsigned char has_focus = m_hWnd != nullptr && ::GetFocus() == m_hWnd ? 1 : 0;
    document_->root()->set_state(GResponder::state_focused, has_focus);
}

BOOL SceneWindow::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info)
{
    if (CWnd::OnCmdMsg(id, code, extra, info))
        return TRUE;
    CFrameWnd* const frame = GetParentFrame();
    return frame != nullptr && frame->OnCmdMsg(id, code, extra, info);
}

std::string SceneWindow::name_under_mouse() const
{
    POINT here{};
    ::GetCursorPos(&here);
    if (document_ == nullptr || document_->scene() == nullptr || ::WindowFromPoint(here) != m_hWnd)
        return {};
    ::ScreenToClient(m_hWnd, &here);
    GResponder* const item =
        document_->scene()->item_at(static_cast<int>(here.x), static_cast<int>(here.y));
    const char* const label = item != nullptr ? item->get_label() : nullptr;
    return label != nullptr ? label : "";
}

void SceneWindow::tell_place(POINT point)
{
    if (document_->scene() == nullptr)
        return;
    const scene::Point place =
        document_->scene()->point_at(static_cast<int>(point.x), static_cast<int>(point.y));
    MsgBox::PutVectorInfo({place.x, place.y, 0});
}

void SceneWindow::OnSize(UINT kind, int width, int height)
{
    CWnd::OnSize(kind, width, height);
    width_px_ = std::max(width, 0);
    height_px_ = std::max(height, 0);
    show_scene();
}

void SceneWindow::OnSetFocus(CWnd* former)
{
    CWnd::OnSetFocus(former);
    show_scene();
    show_change();
}

void SceneWindow::OnKillFocus(CWnd* next)
{
    CWnd::OnKillFocus(next);
    if (document_->root() != nullptr)
        document_->root()->set_state(GResponder::state_focused, 0);
    show_change();
}

BOOL SceneWindow::OnEraseBkgnd(CDC*)
{
    return TRUE;  // the picture covers all
}

void SceneWindow::OnPaint()
{
    CPaintDC dc(this);
    if (width_px_ == 0 || height_px_ == 0)
        return;
    const auto began = editor::HoldTimes::Clock::now();
    draw();
    BITMAPINFO picture{};
    picture.bmiHeader.biSize = sizeof picture.bmiHeader;
    picture.bmiHeader.biWidth = width_px_;
    picture.bmiHeader.biHeight = -height_px_;
    picture.bmiHeader.biPlanes = 1;
    picture.bmiHeader.biBitCount = 32;
    ::SetDIBitsToDevice(dc.m_hDC, 0, 0, static_cast<DWORD>(width_px_),
                        static_cast<DWORD>(height_px_), 0, 0, 0, static_cast<UINT>(height_px_),
                        pixels_.data(), &picture, DIB_RGB_COLORS);
    const auto time = editor::HoldTimes::Clock::now() - began;
    ++draw_times_.pictures;
    draw_times_.all += time;
    draw_times_.longest = std::max(draw_times_.longest, time);
}

void SceneWindow::draw()
{
    pixels_.resize(static_cast<std::size_t>(width_px_) * static_cast<std::size_t>(height_px_));
    if (document_->scene() != nullptr)
        document_->scene()->draw({pixels_.data(), width_px_, height_px_});
    else
        std::fill(pixels_.begin(), pixels_.end(), kNoScene);
    draw_frame();
}

// The edge tells the focus, as that of the other panes does.
void SceneWindow::draw_frame()
{
    const bool has_focus = ::GetFocus() == m_hWnd;
    const std::uint32_t color =
        pixel_of(::GetSysColor(has_focus ? COLOR_HIGHLIGHT : COLOR_BTNSHADOW));
    const auto row = static_cast<std::size_t>(width_px_);
    std::fill_n(pixels_.begin(), row, color);
    std::fill_n(pixels_.end() - width_px_, row, color);
    for (std::size_t at = 0; at < pixels_.size(); at += row) {
        pixels_[at] = color;
        pixels_[at + row - 1] = color;
    }
}

void SceneWindow::send(const GEvent& event)
{
    GEvent sent = event;
    if (document_->root() != nullptr)
        GResponder::message(document_->root(), sent);
}

void SceneWindow::OnLButtonDown(UINT keys, CPoint point)
{
    SetFocus();
    SetCapture();
    is_held_ = true;
    send(editor::mouse_event(editor::MouseMessage::Press, keys, point.x, point.y));
}

void SceneWindow::OnLButtonUp(UINT keys, CPoint point)
{
    if (!is_held_)
        return;
    is_held_ = false;
    send(editor::mouse_event(editor::MouseMessage::Release, keys, point.x, point.y));
    if (::GetCapture() == m_hWnd)
        ::ReleaseCapture();
}

void SceneWindow::OnMouseMove(UINT keys, CPoint point)
{
    if (!hears_leaving_) {
        TRACKMOUSEEVENT wanted{};
        wanted.cbSize = sizeof wanted;
        wanted.dwFlags = TME_LEAVE;
        wanted.hwndTrack = m_hWnd;
        hears_leaving_ = ::TrackMouseEvent(&wanted) != FALSE;
    }
    if (is_held_)
        send(editor::mouse_event(editor::MouseMessage::Move, keys, point.x, point.y));
    tell_place(point);
}

void SceneWindow::OnMouseLeave()
{
    hears_leaving_ = false;
    MsgBox::PutVectorInfo();
}

BOOL SceneWindow::OnMouseWheel(UINT keys, short delta, CPoint point)
{
    POINT here{point.x, point.y};
    ::ScreenToClient(m_hWnd, &here);
    send(editor::mouse_event(editor::MouseMessage::Wheel, keys, here.x, here.y, delta));
    tell_place(here);
    return TRUE;
}

void SceneWindow::OnCaptureChanged(CWnd* other)
{
    CWnd::OnCaptureChanged(other);
    if (!is_held_)
        return;
    // The mouse was taken away in a drag: the object stays where it is.
    is_held_ = false;
    POINT here{};
    ::GetCursorPos(&here);
    ::ScreenToClient(m_hWnd, &here);
    send(editor::mouse_event(editor::MouseMessage::Release, 0, here.x, here.y));
}

void SceneWindow::OnKeyDown(UINT key, UINT repeats, UINT flags)
{
    const std::optional<GEvent> event = editor::key_event(key);
    if (!event) {
        CWnd::OnKeyDown(key, repeats, flags);
        return;
    }
    for (UINT i = 0; i < std::clamp(repeats, 1U, 20U); ++i)
        send(*event);
}
