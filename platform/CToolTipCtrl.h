#pragma once

#include "platform/CommonControls.h"

/// A flag of the framework's own in a tool's uFlags: the tip shows although its window is not
/// active.
inline constexpr UINT TTF_ALWAYSTIP = 0x40000000;

/// The small window with a text that shows beside the mouse while it rests on a tool. A tool is a
/// window, or a rectangle with a number in a window; its text may be asked of that window (or a
/// window tool's parent) by TTN_NEEDTEXT. User-interface thread.
class ZMR_GV_API CToolTipCtrl : public CWnd {
    DECLARE_DYNAMIC(CToolTipCtrl)

public:
    CToolTipCtrl() = default;

    /// `parent` owns the tip's window and ends it.
    virtual BOOL Create(CWnd* parent, DWORD style = 0);

    // Tools. Without `rect` and `id` the tool is the whole of `window`.

    BOOL AddTool(CWnd* window, LPCTSTR text = LPSTR_TEXTCALLBACK, LPCRECT rect = nullptr,
                 UINT_PTR id = 0);
    /// The text of the string table.
    BOOL AddTool(CWnd* window, UINT text_id, LPCRECT rect = nullptr, UINT_PTR id = 0);
    void DelTool(CWnd* window, UINT_PTR id = 0);
    void UpdateTipText(LPCTSTR text, CWnd* window, UINT_PTR id = 0);
    void UpdateTipText(UINT text_id, CWnd* window, UINT_PTR id = 0);
    void SetToolRect(CWnd* window, UINT_PTR id, LPCRECT rect);
    /// The tool's text as the control has it, cut to 1,023 bytes.
    void GetText(CString& text, CWnd* window, UINT_PTR id = 0) const;
    /// FALSE when there is no such tool. The text is left out.
    BOOL GetToolInfo(TOOLINFO& tool, CWnd* window, UINT_PTR id = 0) const;
    [[nodiscard]] int GetToolCount() const
    {
        return static_cast<int>(SendMessage(TTM_GETTOOLCOUNT));
    }
    /// The tool at a point of the window's client area, into `tool`. FALSE when there is none.
    BOOL HitTest(CWnd* window, CPoint point, TOOLINFO& tool) const;
    /// A tool described in full. The record's size is set here.
    BOOL AddTool(TOOLINFO& tool);
    void DelTool(TOOLINFO& tool);

    // Showing.

    void Activate(BOOL on) { SendMessage(TTM_ACTIVATE, static_cast<WPARAM>(on)); }
    void RelayEvent(const MSG* message) { SendMessage(TTM_RELAYEVENT, 0, zmr::lparam_of(message)); }
    void Pop() { SendMessage(TTM_POP); }
    void Update() { SendMessage(TTM_UPDATE); }
    /// One of TTDT_INITIAL, TTDT_AUTOPOP, TTDT_RESHOW; TTDT_AUTOMATIC sets all three from one.
    void SetDelayTime(DWORD which, int milliseconds)
    {
        SendMessage(TTM_SETDELAYTIME, which, MAKELPARAM(milliseconds, 0));
    }
    void SetDelayTime(UINT milliseconds)
    {
        SetDelayTime(TTDT_AUTOMATIC, static_cast<int>(milliseconds));
    }
    [[nodiscard]] int GetDelayTime(DWORD which) const
    {
        return static_cast<int>(SendMessage(TTM_GETDELAYTIME, which));
    }
    /// In pixels; a longer text is broken into lines. -1 allows any. The former width.
    int SetMaxTipWidth(int width)
    {
        return static_cast<int>(SendMessage(TTM_SETMAXTIPWIDTH, 0, width));
    }
    [[nodiscard]] int GetMaxTipWidth() const
    {
        return static_cast<int>(SendMessage(TTM_GETMAXTIPWIDTH));
    }
    void SetMargin(LPCRECT margin) { SendMessage(TTM_SETMARGIN, 0, zmr::lparam_of(margin)); }
    void GetMargin(LPRECT margin) const { SendMessage(TTM_GETMARGIN, 0, zmr::lparam_of(margin)); }
    void SetTipBkColor(COLORREF color) { SendMessage(TTM_SETTIPBKCOLOR, color); }
    [[nodiscard]] COLORREF GetTipBkColor() const
    {
        return static_cast<COLORREF>(SendMessage(TTM_GETTIPBKCOLOR));
    }
    void SetTipTextColor(COLORREF color) { SendMessage(TTM_SETTIPTEXTCOLOR, color); }
    [[nodiscard]] COLORREF GetTipTextColor() const
    {
        return static_cast<COLORREF>(SendMessage(TTM_GETTIPTEXTCOLOR));
    }

private:
    [[nodiscard]] static TOOLINFO tool_of(CWnd* window, UINT_PTR id);
};
