#pragma once

#include "platform/CEdit.h"

/// The line that filters the list while it is typed. Escape empties it; Enter and the arrow keys up
/// and down send WM_FILTER_LEFT.
class FilterEdit : public CEdit {
public:
    /// With the grey text that shows while it is empty.
    BOOL create(CWnd& parent, UINT id);

protected:
    DECLARE_MESSAGE_MAP()
    void OnKeyDown(UINT key, UINT repeats, UINT flags);
    void OnChar(UINT letter, UINT repeats, UINT flags);
};

/// Sent to the parent when a key asks for the list.
inline constexpr UINT WM_FILTER_LEFT = WM_APP + 3;
