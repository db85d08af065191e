#include "platform/CListCtrl.h"

#include "platform/CEdit.h"
#include "platform/CHeaderCtrl.h"
#include "platform/CImageList.h"

#include <algorithm>
#include <string>

IMPLEMENT_DYNAMIC(CListCtrl, CWnd)

namespace {

constexpr std::size_t kUsualText = 256;
constexpr std::size_t kLongestText = 65536;
constexpr UINT kStateImageShift = 12;  // as INDEXTOSTATEIMAGEMASK has it
constexpr UINT kCheckedImage = 2;
constexpr UINT kClearImage = 1;

// A position names the item by its index and one more, so that it is not null.
POSITION position_of(int item)
{
    return reinterpret_cast<POSITION>(static_cast<INT_PTR>(item) + 1);
}

int item_of(POSITION position)
{
    return static_cast<int>(reinterpret_cast<INT_PTR>(position) - 1);
}

}  // namespace

BOOL CListCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    zmr::load_common_controls();
    return CWnd::Create(WC_LISTVIEW, nullptr, style, rect, parent, id);
}

int CListCtrl::InsertItem(UINT mask, int at, LPCTSTR text, UINT state, UINT state_mask, int image,
                          LPARAM data)
{
    LVITEM item{};
    item.mask = mask;
    item.iItem = at;
    item.pszText = const_cast<LPSTR>(text);
    item.state = state;
    item.stateMask = state_mask;
    item.iImage = image;
    item.lParam = data;
    return InsertItem(&item);
}

BOOL CListCtrl::SetItem(int at, int column, UINT mask, LPCTSTR text, int image, UINT state,
                        UINT state_mask, LPARAM data)
{
    LVITEM item{};
    item.mask = mask;
    item.iItem = at;
    item.iSubItem = column;
    item.pszText = const_cast<LPSTR>(text);
    item.state = state;
    item.stateMask = state_mask;
    item.iImage = image;
    item.lParam = data;
    return SetItem(&item);
}

int CListCtrl::GetItemText(int at, int column, LPSTR text, int size) const
{
    LVITEM item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = size;
    if (size <= 0)
        return 0;
    const int length = zmr::ask(*this, LVM_GETITEMTEXT, zmr::wparam_of(at), zmr::lparam_of(&item));
    text[size - 1] = '\0';  // which a text that is cut does not have from every version
    return std::clamp(length, 0, size - 1);
}

CString CListCtrl::GetItemText(int at, int column) const
{
    for (std::size_t room = kUsualText;; room *= 2) {
        std::string text(room, '\0');
        const int length = GetItemText(at, column, text.data(), static_cast<int>(room));
        // A text that fills the room may have been cut.
        if (static_cast<std::size_t>(length) + 1 < room || room >= kLongestText)
            return CString(text.c_str());
    }
}

BOOL CListCtrl::SetItemText(int at, int column, LPCTSTR text)
{
    LVITEM item{};
    item.iSubItem = column;
    item.pszText = const_cast<LPSTR>(text);
    return zmr::ask(*this, LVM_SETITEMTEXT, zmr::wparam_of(at), zmr::lparam_of(&item));
}

DWORD_PTR CListCtrl::GetItemData(int at) const
{
    LVITEM item{};
    item.mask = LVIF_PARAM;
    item.iItem = at;
    return GetItem(&item) ? static_cast<DWORD_PTR>(item.lParam) : 0;
}

BOOL CListCtrl::SetItemState(int at, UINT state, UINT mask)
{
    LVITEM item{};
    item.state = state;
    item.stateMask = mask;
    return SetItemState(at, &item);
}

BOOL CListCtrl::GetCheck(int at) const
{
    return GetItemState(at, LVIS_STATEIMAGEMASK) >> kStateImageShift == kCheckedImage;
}

BOOL CListCtrl::SetCheck(int at, BOOL check)
{
    const UINT image = check ? kCheckedImage : kClearImage;
    return SetItemState(at, image << kStateImageShift, LVIS_STATEIMAGEMASK);
}

POSITION CListCtrl::GetFirstSelectedItemPosition() const
{
    return position_of(GetNextItem(-1, LVNI_SELECTED));
}

int CListCtrl::GetNextSelectedItem(POSITION& position) const
{
    const int item = item_of(position);
    position = position_of(GetNextItem(item, LVNI_SELECTED));
    return item;
}

int CListCtrl::HitTest(CPoint point, UINT* flags) const
{
    LVHITTESTINFO where{};
    where.pt = point;
    const int item = HitTest(&where);
    if (flags != nullptr)
        *flags = where.flags;
    return item;
}

int CListCtrl::InsertColumn(int at, LPCTSTR heading, int format, int width, int sub_item)
{
    LVCOLUMN column{};
    column.mask = LVCF_TEXT | LVCF_FMT;
    column.pszText = const_cast<LPSTR>(heading);
    column.fmt = format;
    if (width != -1) {
        column.mask |= LVCF_WIDTH;
        column.cx = width;
    }
    if (sub_item != -1) {
        column.mask |= LVCF_SUBITEM;
        column.iSubItem = sub_item;
    }
    return InsertColumn(at, &column);
}

CHeaderCtrl* CListCtrl::GetHeaderCtrl() const
{
    return zmr::control_of<CHeaderCtrl>(zmr::ask_for<HWND>(*this, LVM_GETHEADER));
}

BOOL CListCtrl::GetItemRect(int at, LPRECT rect, UINT part) const
{
    rect->left = static_cast<LONG>(part);
    return zmr::ask(*this, LVM_GETITEMRECT, zmr::wparam_of(at), zmr::lparam_of(rect));
}

BOOL CListCtrl::GetSubItemRect(int at, int column, int part, CRect& rect) const
{
    rect.top = column;
    rect.left = part;
    return zmr::ask(*this, LVM_GETSUBITEMRECT, zmr::wparam_of(at), zmr::lparam_of(&rect));
}

CSize CListCtrl::SetIconSpacing(int width, int height)
{
    const auto former =
        static_cast<DWORD>(zmr::ask(*this, LVM_SETICONSPACING, 0, MAKELPARAM(width, height)));
    return {LOWORD(former), HIWORD(former)};
}

CImageList* CListCtrl::SetImageList(CImageList* list, int which)
{
    const HIMAGELIST handle = list != nullptr ? list->m_hImageList : nullptr;
    return CImageList::FromHandle(zmr::ask_for<HIMAGELIST>(
        *this, LVM_SETIMAGELIST, zmr::wparam_of(which), zmr::lparam_of(handle)));
}

CImageList* CListCtrl::GetImageList(int which) const
{
    return CImageList::FromHandle(
        zmr::ask_for<HIMAGELIST>(*this, LVM_GETIMAGELIST, zmr::wparam_of(which)));
}

CEdit* CListCtrl::EditLabel(int at)
{
    return zmr::control_of<CEdit>(zmr::ask_for<HWND>(*this, LVM_EDITLABEL, zmr::wparam_of(at)));
}

CEdit* CListCtrl::GetEditControl() const
{
    return zmr::control_of<CEdit>(zmr::ask_for<HWND>(*this, LVM_GETEDITCONTROL));
}

void CListCtrl::DrawItem(LPDRAWITEMSTRUCT) {}

BOOL CListCtrl::OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    if (message != WM_DRAWITEM)
        return CWnd::OnChildNotify(message, wparam, lparam, result);
    DrawItem(reinterpret_cast<LPDRAWITEMSTRUCT>(lparam));
    return TRUE;
}
