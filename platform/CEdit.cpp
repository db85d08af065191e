#include "platform/CEdit.h"

#include <algorithm>
#include <cstring>
#include <vector>

IMPLEMENT_DYNAMIC(CEdit, CWnd)

BOOL CEdit::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CWnd::Create(WC_EDIT, nullptr, style, rect, parent, id);
}

void CEdit::GetSel(int& first, int& last) const
{
    DWORD from = 0;
    DWORD to = 0;
    SendMessage(EM_GETSEL, reinterpret_cast<WPARAM>(&from), zmr::lparam_of(&to));
    first = static_cast<int>(from);
    last = static_cast<int>(to);
}

void CEdit::SetSel(int first, int last, BOOL no_scroll)
{
    SendMessage(EM_SETSEL, zmr::wparam_of(first), last);
    if (!no_scroll)
        SendMessage(EM_SCROLLCARET);
}

int CEdit::GetLine(int line, LPSTR text, int size) const
{
    // The control is told the size in the first word of the buffer.
    std::vector<char> buffer(
        std::max<std::size_t>(static_cast<std::size_t>(std::max(size, 0)), sizeof(WORD)));
    const auto room = static_cast<WORD>(std::min<std::size_t>(buffer.size(), 0xFFFF));
    std::memcpy(buffer.data(), &room, sizeof room);
    const int copied = std::min(
        zmr::ask(*this, EM_GETLINE, zmr::wparam_of(line), zmr::lparam_of(buffer.data())), size);
    if (copied > 0)
        std::memcpy(text, buffer.data(), static_cast<std::size_t>(copied));
    return std::max(copied, 0);
}
