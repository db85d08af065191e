#pragma once

#include "platform/BarLayout.h"
#include "platform/CControlBar.h"
#include "platform/CommonControls.h"

#include <vector>

// Styles of panes.
inline constexpr UINT SBPS_NORMAL = 0x0000;
inline constexpr UINT SBPS_NOBORDERS = SBT_NOBORDERS;
inline constexpr UINT SBPS_POPOUT = SBT_POPOUT;
inline constexpr UINT SBPS_OWNERDRAW = SBT_OWNERDRAW;
inline constexpr UINT SBPS_DISABLED = 0x04000000;  ///< The text is not shown.
inline constexpr UINT SBPS_STRETCH = 0x08000000;   ///< The pane takes what the others leave.

/// The bar at the bottom of a frame, with a pane for the texts of commands and others for what the
/// program tells. A text that does not change causes no painting. User-interface thread.
class ZMR_GV_API CStatusBar : public CControlBar {
    DECLARE_DYNAMIC(CStatusBar)

public:
    CStatusBar() = default;

    virtual BOOL Create(CWnd* parent, DWORD style = WS_CHILD | WS_VISIBLE | CBRS_BOTTOM,
                        UINT id = AFX_IDW_STATUS_BAR);
    /// `control_style` has SBARS_ bits; the grip for sizing is there whenever the parent can be
    /// sized.
    virtual BOOL CreateEx(CWnd* parent, DWORD control_style = 0,
                          DWORD style = WS_CHILD | WS_VISIBLE | CBRS_BOTTOM,
                          UINT id = AFX_IDW_STATUS_BAR);

    /// One pane for each number. Number 0 makes an empty one, which as the first stretches; others
    /// are the numbers of commands and of texts, which give the panes their widths. Null for `ids`
    /// makes empty panes. FALSE, with the panes made so far, when a text is missing.
    BOOL SetIndicators(const UINT* ids, int count);

    // Panes. Indices outside give 0, empty texts and FALSE.

    /// -1 when there is no such pane.
    [[nodiscard]] int CommandToIndex(UINT id) const;
    [[nodiscard]] UINT GetItemID(int pane) const;
    void GetItemRect(int pane, LPRECT rect) const;
    void GetPaneText(int pane, CString& text) const { text = GetPaneText(pane); }
    [[nodiscard]] CString GetPaneText(int pane) const;
    /// With `update` FALSE it is shown only when the pane is next written.
    BOOL SetPaneText(int pane, LPCTSTR text, BOOL update = TRUE);
    void GetPaneInfo(int pane, UINT& id, UINT& style, int& width) const;
    /// `width` is that of the text, in pixels.
    void SetPaneInfo(int pane, UINT id, UINT style, int width);
    [[nodiscard]] UINT GetPaneStyle(int pane) const;
    void SetPaneStyle(int pane, UINT style);

    /// Draws a pane with SBPS_OWNERDRAW. The base draws nothing.
    virtual void DrawItem(LPDRAWITEMSTRUCT item);

    CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override;
    void CalcInsideRect(CRect& rect, BOOL horizontal) const override;
    void OnUpdateCmdUI(CFrameWnd* target, BOOL disable_if_no_handler) override;

protected:
    DECLARE_MESSAGE_MAP()

    BOOL OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) override;

    LRESULT OnSetText(WPARAM, LPARAM text);
    LRESULT OnGetText(WPARAM room, LPARAM text);
    LRESULT OnGetTextLength(WPARAM, LPARAM);
    LRESULT OnSetMinHeight(WPARAM height, LPARAM);
    LRESULT OnSetFont(WPARAM font, LPARAM redraw);
    void OnSize(UINT kind, int width, int height);
    void OnPaint();

private:
    struct Pane {
        UINT id = 0;
        int width = 0;
        UINT style = SBPS_NORMAL;
        bool fits_text = false;  ///< As wide as the text of its number.
        bool stale = false;      ///< What the control shows is older.
        CString text;
    };
    struct Borders {
        int horizontal = 0;
        int vertical = 0;
        int gap = 0;
    };
    [[nodiscard]] bool has_pane(int pane) const { return pane >= 0 && pane < m_nCount; }
    [[nodiscard]] Borders borders() const;
    void place_panes();
    void write_pane(int pane);
    [[nodiscard]] int width_of(const CString& text) const;

    std::vector<Pane> panes_;
    std::vector<int> edges_;  ///< As the control has them.
    int least_height_ = 0;
};
