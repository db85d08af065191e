#pragma once

#include "platform/CommonControls.h"

/// A field that text is typed into. Positions are in characters of the window's code page, lines
/// count from 0. User-interface thread.
class ZMR_GV_API CEdit : public CWnd {
    DECLARE_DYNAMIC(CEdit)

public:
    CEdit() = default;
    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    // Selection.

    void GetSel(int& first, int& last) const;
    /// The first position in the low word, the last in the high one.
    [[nodiscard]] DWORD GetSel() const { return static_cast<DWORD>(SendMessage(EM_GETSEL)); }
    /// 0 and -1 select all; -1 as the first selects nothing.
    void SetSel(int first, int last, BOOL no_scroll = FALSE);
    void SetSel(DWORD both, BOOL no_scroll = FALSE)
    {
        SetSel(static_cast<short>(LOWORD(both)), static_cast<short>(HIWORD(both)), no_scroll);
    }
    void ReplaceSel(LPCTSTR text, BOOL can_undo = FALSE)
    {
        zmr::ask(*this, EM_REPLACESEL, zmr::wparam_of(can_undo), zmr::lparam_of(text));
    }
    void Clear() { zmr::ask(*this, WM_CLEAR); }
    void Copy() { zmr::ask(*this, WM_COPY); }
    void Cut() { zmr::ask(*this, WM_CUT); }
    void Paste() { zmr::ask(*this, WM_PASTE); }

    [[nodiscard]] BOOL CanUndo() const { return zmr::ask(*this, EM_CANUNDO); }
    BOOL Undo() { return zmr::ask(*this, EM_UNDO); }
    void EmptyUndoBuffer() { zmr::ask(*this, EM_EMPTYUNDOBUFFER); }
    [[nodiscard]] BOOL GetModify() const { return zmr::ask(*this, EM_GETMODIFY); }
    void SetModify(BOOL modified = TRUE)
    {
        zmr::ask(*this, EM_SETMODIFY, zmr::wparam_of(modified));
    }

    // Lines.

    [[nodiscard]] int GetLineCount() const { return zmr::ask(*this, EM_GETLINECOUNT); }
    /// Copies a line without a closing zero. The number of characters, at most `size`.
    int GetLine(int line, LPSTR text, int size) const;
    /// -1 is the line of the caret.
    [[nodiscard]] int LineIndex(int line = -1) const
    {
        return zmr::ask(*this, EM_LINEINDEX, zmr::wparam_of(line));
    }
    [[nodiscard]] int LineFromChar(int position = -1) const
    {
        return zmr::ask(*this, EM_LINEFROMCHAR, zmr::wparam_of(position));
    }
    /// The length of the line that the position lies in.
    [[nodiscard]] int LineLength(int position = -1) const
    {
        return zmr::ask(*this, EM_LINELENGTH, zmr::wparam_of(position));
    }
    void LineScroll(int lines, int characters = 0)
    {
        zmr::ask(*this, EM_LINESCROLL, zmr::wparam_of(characters), lines);
    }
    [[nodiscard]] int GetFirstVisibleLine() const
    {
        return zmr::ask(*this, EM_GETFIRSTVISIBLELINE);
    }
    BOOL FmtLines(BOOL soft_breaks)
    {
        return zmr::ask(*this, EM_FMTLINES, zmr::wparam_of(soft_breaks));
    }
    [[nodiscard]] CPoint PosFromChar(UINT position) const
    {
        return zmr::crack::point_of(SendMessage(EM_POSFROMCHAR, position));
    }
    /// The position in the low word, the line in the high one.
    [[nodiscard]] int CharFromPos(CPoint place) const
    {
        return zmr::ask(*this, EM_CHARFROMPOS, 0, MAKELPARAM(place.x, place.y));
    }

    // Form.

    /// 0 takes the largest limit.
    void SetLimitText(UINT limit) { zmr::ask(*this, EM_SETLIMITTEXT, limit); }
    void LimitText(int limit = 0) { SetLimitText(static_cast<UINT>(limit)); }
    [[nodiscard]] UINT GetLimitText() const
    {
        return static_cast<UINT>(zmr::ask(*this, EM_GETLIMITTEXT));
    }
    BOOL SetReadOnly(BOOL on = TRUE) { return zmr::ask(*this, EM_SETREADONLY, zmr::wparam_of(on)); }
    void SetPasswordChar(char letter)
    {
        zmr::ask(*this, EM_SETPASSWORDCHAR, static_cast<unsigned char>(letter));
    }
    [[nodiscard]] char GetPasswordChar() const
    {
        return static_cast<char>(zmr::ask(*this, EM_GETPASSWORDCHAR));
    }
    void SetMargins(UINT left, UINT right)
    {
        zmr::ask(*this, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(left, right));
    }
    [[nodiscard]] DWORD GetMargins() const
    {
        return static_cast<DWORD>(SendMessage(EM_GETMARGINS));
    }
    void GetRect(LPRECT rect) const { zmr::ask(*this, EM_GETRECT, 0, zmr::lparam_of(rect)); }
    void SetRect(LPCRECT rect) { zmr::ask(*this, EM_SETRECT, 0, zmr::lparam_of(rect)); }
    void SetRectNP(LPCRECT rect) { zmr::ask(*this, EM_SETRECTNP, 0, zmr::lparam_of(rect)); }
    /// In dialog units; FALSE when the control has one line only.
    BOOL SetTabStops(int count, const int* stops)
    {
        return zmr::ask(*this, EM_SETTABSTOPS, zmr::wparam_of(count), zmr::lparam_of(stops));
    }
    BOOL SetTabStops(int each) { return SetTabStops(1, &each); }
};
