#pragma once

#include "platform/CStatusBar.h"

#include <array>

/// One of the library's status lines in a pane of a status bar. It draws its text in one step, so
/// that nothing flickers while the text changes with every move of the mouse.
class StatusLine : public CWnd {
public:
    BOOL create(CWnd& bar, UINT id);

protected:
    DECLARE_MESSAGE_MAP()
    LRESULT OnSetText(WPARAM unused, LPARAM text);
    BOOL OnEraseBkgnd(CDC* dc);
    void OnPaint();
};

/// The bar at the bottom of the main window: what a command does, what goes on, how much there is,
/// the place below the mouse, and the grid of the selected object. All but the counts are status
/// lines of the library (MsgBox), which any thread may put.
class EditorStatusBar : public CStatusBar {
public:
    BOOL create(CWnd& parent, int dpi);
    /// Lets the library's lines show here, or no more.
    void join_lines();
    void leave_lines();

protected:
    DECLARE_MESSAGE_MAP()
    void OnSize(UINT kind, int width, int height);

private:
    void place_lines();

    static constexpr std::size_t kLines = 5;  ///< In panes of their own; the prompt is the bar's.
    std::array<StatusLine, kLines> lines_;
    int margin_px_ = 0;
};
