#include "platform/SystemMessageBox.h"

namespace zmr {

int system_message_box(HWND owner, LPCTSTR text, LPCTSTR caption, UINT type)
{
    const int answer = ::MessageBox(owner, text, caption, type);
    const bool closed = answer == IDCANCEL && (type & MB_TYPEMASK) == MB_OK;
    return closed ? IDOK : answer;
}

}  // namespace zmr
