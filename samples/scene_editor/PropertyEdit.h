#pragma once

#include "platform/CEdit.h"

/// Sent to the parent by a field that was typed into: wParam is its id, lParam a
/// PropertyEdit::Left.
inline constexpr UINT WM_PROPERTY_LEFT = WM_APP + 4;

/// A field for one property. Enter and leaving it for another window give what was typed; Escape
/// drops it.
class PropertyEdit : public CEdit {
public:
    enum class Left : std::uint8_t { ByEnter, ByEscape, ByFocus };

    BOOL create(CWnd& parent, UINT id);

protected:
    DECLARE_MESSAGE_MAP()
    void OnKeyDown(UINT key, UINT repeats, UINT flags);
    void OnChar(UINT letter, UINT repeats, UINT flags);
    void OnSetFocus(CWnd* former);
    void OnKillFocus(CWnd* next);

private:
    void leave(Left how);
};
