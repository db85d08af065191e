#pragma once

#include "platform/CWnd.h"
#include "platform/PlatformIds.h"
#include "platform/PlatformMessages.h"

struct AFX_SIZEPARENTPARAMS;

// Styles of bars, in the low word of the window style that a bar is made with.
inline constexpr DWORD CBRS_FLOATING = 0x0001;
inline constexpr DWORD CBRS_SIZE_FIXED = 0x0002;
inline constexpr DWORD CBRS_SIZE_DYNAMIC = 0x0004;
inline constexpr DWORD CBRS_HIDE_INPLACE = 0x0008;
inline constexpr DWORD CBRS_TOOLTIPS = 0x0010;  ///< Tips for the bar's commands,
inline constexpr DWORD CBRS_FLYBY = 0x0020;     ///< and their texts in the message bar.
inline constexpr DWORD CBRS_FLOAT_MULTI = 0x0040;
inline constexpr DWORD CBRS_BORDER_3D = 0x0080;
inline constexpr DWORD CBRS_BORDER_LEFT = 0x0100;  ///< A line at the bar's edge.
inline constexpr DWORD CBRS_BORDER_TOP = 0x0200;
inline constexpr DWORD CBRS_BORDER_RIGHT = 0x0400;
inline constexpr DWORD CBRS_BORDER_BOTTOM = 0x0800;
inline constexpr DWORD CBRS_BORDER_ANY = 0x0F00;
inline constexpr DWORD CBRS_ALIGN_LEFT = 0x1000;  ///< The edge of the frame where the bar lies.
inline constexpr DWORD CBRS_ALIGN_TOP = 0x2000;
inline constexpr DWORD CBRS_ALIGN_RIGHT = 0x4000;
inline constexpr DWORD CBRS_ALIGN_BOTTOM = 0x8000;
inline constexpr DWORD CBRS_ALIGN_ANY = 0xF000;
inline constexpr DWORD CBRS_GRIPPER = 0x00400000;
inline constexpr DWORD CBRS_ALL = 0x0040FFFF;
inline constexpr DWORD CBRS_NOALIGN = 0;
inline constexpr DWORD CBRS_LEFT = CBRS_ALIGN_LEFT | CBRS_BORDER_RIGHT;
inline constexpr DWORD CBRS_TOP = CBRS_ALIGN_TOP | CBRS_BORDER_BOTTOM;
inline constexpr DWORD CBRS_RIGHT = CBRS_ALIGN_RIGHT | CBRS_BORDER_LEFT;
inline constexpr DWORD CBRS_BOTTOM = CBRS_ALIGN_BOTTOM | CBRS_BORDER_TOP;
inline constexpr DWORD CBRS_ORIENT_HORZ = CBRS_ALIGN_TOP | CBRS_ALIGN_BOTTOM;
inline constexpr DWORD CBRS_ORIENT_VERT = CBRS_ALIGN_LEFT | CBRS_ALIGN_RIGHT;
inline constexpr DWORD CBRS_ORIENT_ANY = CBRS_ORIENT_HORZ | CBRS_ORIENT_VERT;

// What CalcDynamicLayout is asked for.
inline constexpr DWORD LM_STRETCH = 0x01;   ///< As long as the edge.
inline constexpr DWORD LM_HORZ = 0x02;      ///< Lying, else standing.
inline constexpr DWORD LM_MRUWIDTH = 0x04;  ///< As wide as it was last.
inline constexpr DWORD LM_HORZDOCK = 0x08;
inline constexpr DWORD LM_VERTDOCK = 0x10;
inline constexpr DWORD LM_LENGTHY = 0x20;  ///< The length is a height.
inline constexpr DWORD LM_COMMIT = 0x40;   ///< And keep it.

/// A bar at an edge of a frame. It takes its part of the frame's client area when the frame lays
/// itself out, brings its commands up to date in idle turns, hands what its controls tell on to its
/// owner, and draws the lines at its edges. User-interface thread.
class ZMR_GV_API CControlBar : public CWnd {
    DECLARE_DYNAMIC(CControlBar)

public:
    ~CControlBar() override;

    /// The number of items: buttons, panes.
    [[nodiscard]] int GetCount() const { return m_nCount; }
    [[nodiscard]] DWORD GetBarStyle() const { return m_dwStyle; }
    void SetBarStyle(DWORD style);
    /// The space between the bar's edges and its items.
    void SetBorders(int left = 0, int top = 0, int right = 0, int bottom = 0);
    void SetBorders(LPCRECT borders)
    {
        SetBorders(static_cast<int>(borders->left), static_cast<int>(borders->top),
                   static_cast<int>(borders->right), static_cast<int>(borders->bottom));
    }
    [[nodiscard]] CRect GetBorders() const;
    /// The frame that the bar belongs to: its owner, or the nearest one above.
    [[nodiscard]] CFrameWnd* GetDockingFrame() const;

    /// TRUE also when the bar is only about to be shown, FALSE when it is about to be hidden.
    [[nodiscard]] virtual BOOL IsVisible() const;
    /// Shows or hides the bar when the frame is next laid out.
    virtual void DelayShow(BOOL show);

    /// The size of a bar that cannot change its form. The base gives 32767 along the edge when it
    /// stretches, and 0 otherwise.
    virtual CSize CalcFixedLayout(BOOL stretch, BOOL horizontal);
    /// The size for a `length` in pixels, -1 where the mode, of LM_ values, says all.
    virtual CSize CalcDynamicLayout(int length, DWORD mode);
    /// Takes off a rectangle what lines and borders need. `horizontal`: the bar lies.
    virtual void CalcInsideRect(CRect& rect, BOOL horizontal) const;

    /// Brings the bar's commands up to date by the target's route.
    virtual void OnUpdateCmdUI(CFrameWnd* target, BOOL disable_if_no_handler) = 0;

    BOOL DestroyWindow() override;
    BOOL PreTranslateMessage(MSG* message) override;

    BOOL m_bAutoDelete = FALSE;  ///< The object deletes itself when its window has gone.

protected:
    DECLARE_MESSAGE_MAP()

    CControlBar() = default;

    /// Divides the style into that of the bar, which m_dwStyle takes, and that of the window.
    [[nodiscard]] DWORD take_bar_style(DWORD style);
    virtual void OnBarStyleChange(DWORD former, DWORD style);
    virtual void DoPaint(CDC* dc);
    /// Draws the lines of the style along the rectangle's edges, and takes them off it.
    void DrawBorders(CDC* dc, CRect& rect);

    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
    void PostNcDestroy() override;

    int OnCreate(LPCREATESTRUCT creation);
    void OnPaint();
    void OnTimer(UINT_PTR id);
    HBRUSH OnCtlColor(CDC* dc, CWnd* control, UINT kind);
    void OnWindowPosChanging(WINDOWPOS* place);
    LRESULT OnSizeParent(WPARAM, LPARAM layout);
    LRESULT OnIdleUpdateCmdUI(WPARAM disable, LPARAM);
    /// The topic of the command whose button lies there; 0 beside the buttons.
    LRESULT OnHelpHitTest(WPARAM, LPARAM point);

    int m_cxLeftBorder = 6;
    int m_cxRightBorder = 6;
    int m_cyTopBorder = 1;
    int m_cyBottomBorder = 1;
    int m_cxDefaultGap = 2;
    UINT m_nMRUWidth = 32767;  ///< The width that it floated with last.
    int m_nCount = 0;
    DWORD m_dwStyle = 0;  ///< CBRS_ bits
    BOOL m_bDelayHide = FALSE;
    BOOL m_bDelayShow = FALSE;

private:
    void show_prompt_under_mouse();
    [[nodiscard]] bool finish_delayed_show(AFX_SIZEPARENTPARAMS& layout);

    int prompted_ = -1;  ///< The tool whose text the frame shows on the bar's behalf.
};
