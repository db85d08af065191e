#pragma once

#include "platform/CButton.h"
#include "platform/CFont.h"
#include "platform/CStatic.h"
#include "platform/CWnd.h"
#include "scene_editor/MoviePlayer.h"

#include <memory>
#include <string>

/// A window that plays the movie of an entry: space plays and pauses, the arrow keys go frame by
/// frame, Home and End to the ends, Escape closes it. The slider and the buttons do the same.
class MovieWindow : public CWnd {
public:
    /// Plays `movie`, a name of the multimedia layer, in place of one that is played. The window is
    /// made when it is not there. False when the system refuses.
    bool play(CWnd& owner, CFont& font, int dpi, const std::string& title,
              const std::string& movie);
    /// Closes window and movie.
    void close();

    BOOL PreTranslateMessage(MSG* message) override;

protected:
    DECLARE_MESSAGE_MAP()
    void OnDestroy();
    void OnSize(UINT kind, int width, int height);
    BOOL OnEraseBkgnd(CDC* dc);
    void OnPaint();
    void OnKeyDown(UINT key, UINT repeats, UINT flags);
    void OnLButtonDown(UINT keys, CPoint point);
    void OnHScroll(UINT code, UINT position, CWnd* bar);
    LRESULT OnFrame(WPARAM, LPARAM);
    void OnPrevious();
    void OnPlay();
    void OnNext();

private:
    [[nodiscard]] bool create(CWnd& owner, CFont& font, int dpi);
    [[nodiscard]] CRect picture_area() const;
    void show_state();

    CButton previous_;
    CButton play_;
    CButton next_;
    CWnd slider_;
    CStatic text_;
    std::unique_ptr<MoviePlayer> player_;
    MoviePlayer::Shown shown_;
    editor::FramePicture picture_;
    int dpi_ = 96;
    int row_px_ = 0;
};
