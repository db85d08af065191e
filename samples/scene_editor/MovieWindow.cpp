#include "scene_editor/MovieWindow.h"

#include "platform/CPaintDC.h"
#include "platform/CWinApp.h"
#include "platform/CommonControls.h"
#include "scene_editor/TextHeight.h"
#include "scene_editor/WindowMessages.h"
#include "scene_editor/core/PaneLayout.h"
#include "scene_editor/resource.h"

#include <commctrl.h>

#include <algorithm>

BEGIN_MESSAGE_MAP(MovieWindow, CWnd)
    ON_WM_DESTROY()
    ON_WM_SIZE()
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
    ON_WM_KEYDOWN()
    ON_WM_LBUTTONDOWN()
    ON_WM_HSCROLL()
    ON_MESSAGE(WM_MOVIE_FRAME, &MovieWindow::OnFrame)
    ON_BN_CLICKED(IDC_MOVIE_PREVIOUS, &MovieWindow::OnPrevious)
    ON_BN_CLICKED(IDC_MOVIE_PLAY, &MovieWindow::OnPlay)
    ON_BN_CLICKED(IDC_MOVIE_NEXT, &MovieWindow::OnNext)
END_MESSAGE_MAP()

namespace {

constexpr int kWidthAt96 = 480;
constexpr int kHeightAt96 = 420;
constexpr int kButtonAt96 = 64;
constexpr int kMarginAt96 = 6;

}  // namespace

bool MovieWindow::play(CWnd& owner, CFont& font, int dpi, const std::string& title,
                       const std::string& movie)
{
    if (m_hWnd == nullptr && !create(owner, font, dpi))
        return false;
    std::unique_ptr<MoviePlayer> player = MoviePlayer::Start(movie, m_hWnd, WM_MOVIE_FRAME);
    if (player == nullptr)
        return false;  // the former movie stays
    player_ = std::move(player);
    picture_ = {};
    shown_ = {};
    AfxSetWindowText(*this, (title + " - Movie").c_str());
    show_state();
    Invalidate(FALSE);
    ShowWindow(SW_SHOW);
    SetForegroundWindow();
    SetFocus();
    return true;
}

void MovieWindow::close()
{
    if (m_hWnd != nullptr)
        DestroyWindow();
}

bool MovieWindow::create(CWnd& owner, CFont& font, int dpi)
{
    dpi_ = dpi;
    const LPCTSTR window_class =
        AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursor(nullptr, IDC_ARROW), nullptr,
                            AfxGetApp()->LoadIcon(IDR_SCENE_EDITOR));
    RECT place{};
    ::GetWindowRect(owner, &place);
    const int left = static_cast<int>(place.left) + editor::scaled(40, dpi);
    const int top = static_cast<int>(place.top) + editor::scaled(60, dpi);
    if (!CreateEx(0, window_class, "",
                  WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN, left, top,
                  editor::scaled(kWidthAt96, dpi), editor::scaled(kHeightAt96, dpi), owner,
                  nullptr))
        return false;
    zmr::load_common_controls();
    const DWORD button = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | BS_PUSHBUTTON;
    const bool is_made =
        previous_.Create("Previous", button, RECT{}, this, IDC_MOVIE_PREVIOUS) &&
        play_.Create("Pause", button, RECT{}, this, IDC_MOVIE_PLAY) &&
        next_.Create("Next", button, RECT{}, this, IDC_MOVIE_NEXT) &&
        slider_.CreateEx(0, TRACKBAR_CLASS, "", WS_CHILD | WS_VISIBLE | TBS_HORZ | TBS_NOTICKS,
                         RECT{}, this, IDC_MOVIE_SLIDER) &&
        text_.Create("", WS_CHILD | WS_VISIBLE | SS_LEFT | SS_CENTERIMAGE | SS_NOPREFIX, RECT{},
                     this, IDC_MOVIE_TEXT);
    if (!is_made) {
        DestroyWindow();
        return false;
    }
    for (CWnd* const part : std::initializer_list<CWnd*>{&previous_, &play_, &next_, &text_})
        part->SetFont(&font);
    row_px_ = text_height(*this, font) + editor::scaled(10, dpi);
    CRect client;
    GetClientRect(&client);
    SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.Width(), client.Height()));
    return true;
}

void MovieWindow::OnDestroy()
{
    player_.reset();  // it posts to this window
    CWnd::OnDestroy();
}

// Keys belong to this window alone, not to the commands of the main one.
BOOL MovieWindow::PreTranslateMessage(MSG* message)
{
    if (message->message < WM_KEYFIRST || message->message > WM_KEYLAST)
        return CWnd::PreTranslateMessage(message);
    ::TranslateMessage(message);
    ::DispatchMessage(message);
    return TRUE;
}

CRect MovieWindow::picture_area() const
{
    CRect area;
    GetClientRect(&area);
    area.bottom = std::max(0L, area.bottom - 2 * row_px_ - 3 * editor::scaled(kMarginAt96, dpi_));
    return area;
}

void MovieWindow::OnSize(UINT kind, int width, int height)
{
    CWnd::OnSize(kind, width, height);
    if (!::IsWindow(text_))
        return;
    const int margin = editor::scaled(kMarginAt96, dpi_);
    const int button = editor::scaled(kButtonAt96, dpi_);
    const int top = static_cast<int>(picture_area().bottom) + margin;
    slider_.MoveWindow(margin, top, std::max(0, width - 2 * margin), row_px_);
    int left = margin;
    const int second = top + row_px_ + margin;
    for (CButton* const part : {&previous_, &play_, &next_}) {
        part->MoveWindow(left, second, button, row_px_);
        left += button + margin;
    }
    text_.MoveWindow(left, second, std::max(0, width - left - margin), row_px_);
    Invalidate(FALSE);
}

BOOL MovieWindow::OnEraseBkgnd(CDC*)
{
    return TRUE;  // painted whole
}

void MovieWindow::OnPaint()
{
    CPaintDC dc(this);
    CRect client;
    GetClientRect(&client);
    const CRect area = picture_area();
    dc.FillSolidRect(CRect(0, area.bottom, client.right, client.bottom),
                     ::GetSysColor(COLOR_BTNFACE));
    const editor::FittedArea fitted =
        editor::fit_into(picture_.width, picture_.height, static_cast<int>(area.Width()),
                         static_cast<int>(area.Height()));
    if (fitted.width > 0) {
        BITMAPINFO form{};
        form.bmiHeader.biSize = sizeof form.bmiHeader;
        form.bmiHeader.biWidth = picture_.width;
        form.bmiHeader.biHeight = -picture_.height;
        form.bmiHeader.biPlanes = 1;
        form.bmiHeader.biBitCount = 32;
        ::SetStretchBltMode(dc.m_hDC, COLORONCOLOR);
        ::StretchDIBits(dc.m_hDC, fitted.left, fitted.top, fitted.width, fitted.height, 0, 0,
                        picture_.width, picture_.height, picture_.pixels.data(), &form,
                        DIB_RGB_COLORS, SRCCOPY);
        dc.ExcludeClipRect(
            CRect(fitted.left, fitted.top, fitted.left + fitted.width, fitted.top + fitted.height));
    }
    dc.FillSolidRect(area, RGB(0, 0, 0));
    if (!shown_.reason.empty()) {
        CRect text = area;
        dc.SetTextColor(RGB(255, 255, 255));
        dc.SetBkMode(TRANSPARENT);
        dc.DrawText(shown_.reason.c_str(), -1, &text,
                    DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    }
}

LRESULT MovieWindow::OnFrame(WPARAM, LPARAM)
{
    show_state();
    const CRect area = picture_area();
    InvalidateRect(&area, FALSE);
    return 0;
}

void MovieWindow::show_state()
{
    if (player_ == nullptr)
        return;
    shown_ = player_->take(picture_);
    AfxSetWindowText(text_, shown_.text.c_str());
    AfxSetWindowText(play_, shown_.plays ? "Pause" : "Play");
    for (CWnd* const part : std::initializer_list<CWnd*>{&previous_, &play_, &next_, &slider_})
        part->EnableWindow(shown_.is_open);
    slider_.SendMessage(TBM_SETRANGEMAX, FALSE, std::max(0, shown_.frames - 1));
    slider_.SendMessage(TBM_SETPOS, TRUE, shown_.frame);
}

void MovieWindow::OnKeyDown(UINT key, UINT repeats, UINT flags)
{
    if (player_ == nullptr) {
        CWnd::OnKeyDown(key, repeats, flags);
        return;
    }
    switch (key) {
        case VK_ESCAPE:
            close();
            break;
        case VK_SPACE:
            OnPlay();
            break;
        case VK_LEFT:
            OnPrevious();
            break;
        case VK_RIGHT:
            OnNext();
            break;
        case VK_HOME:
            player_->show_frame(0);
            break;
        case VK_END:
            player_->show_frame(shown_.frames - 1);
            break;
        default:
            CWnd::OnKeyDown(key, repeats, flags);
            return;
    }
    show_state();
}

void MovieWindow::OnLButtonDown(UINT, CPoint)
{
    SetFocus();
}

void MovieWindow::OnHScroll(UINT code, UINT position, CWnd* bar)
{
    CWnd::OnHScroll(code, position, bar);
    if (player_ == nullptr)
        return;
    player_->show_frame(static_cast<std::int32_t>(slider_.SendMessage(TBM_GETPOS)));
    SetFocus();  // the keys are those of the window
}

void MovieWindow::OnPrevious()
{
    player_->step(-1);
    SetFocus();
}

void MovieWindow::OnPlay()
{
    player_->play_or_pause();
    show_state();
    SetFocus();
}

void MovieWindow::OnNext()
{
    player_->step(1);
    SetFocus();
}
