#include "platform/CTreeCtrl.h"

#include "platform/CEdit.h"
#include "platform/CImageList.h"

IMPLEMENT_DYNAMIC(CTreeCtrl, CWnd)

namespace {

constexpr int kLongestLabel = 1024;
constexpr UINT kStateImageShift = 12;  // as INDEXTOSTATEIMAGEMASK has it
constexpr UINT kCheckedImage = 2;
constexpr UINT kClearImage = 1;

}  // namespace

BOOL CTreeCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    zmr::load_common_controls();
    return CWnd::Create(WC_TREEVIEW, nullptr, style, rect, parent, id);
}

HTREEITEM CTreeCtrl::InsertItem(UINT mask, LPCTSTR text, int image, int selected_image, UINT state,
                                UINT state_mask, LPARAM data, HTREEITEM parent, HTREEITEM after)
{
    TVINSERTSTRUCT item{};
    item.hParent = parent;
    item.hInsertAfter = after;
    item.item.mask = mask;
    item.item.pszText = const_cast<LPSTR>(text);
    item.item.iImage = image;
    item.item.iSelectedImage = selected_image;
    item.item.state = state;
    item.item.stateMask = state_mask;
    item.item.lParam = data;
    return InsertItem(&item);
}

BOOL CTreeCtrl::SetItem(HTREEITEM item, UINT mask, LPCTSTR text, int image, int selected_image,
                        UINT state, UINT state_mask, LPARAM data)
{
    TVITEM wanted{};
    wanted.hItem = item;
    wanted.mask = mask;
    wanted.pszText = const_cast<LPSTR>(text);
    wanted.iImage = image;
    wanted.iSelectedImage = selected_image;
    wanted.state = state;
    wanted.stateMask = state_mask;
    wanted.lParam = data;
    return SetItem(&wanted);
}

CString CTreeCtrl::GetItemText(HTREEITEM item) const
{
    char text[kLongestLabel] = "";
    TVITEM wanted{};
    wanted.hItem = item;
    wanted.mask = TVIF_TEXT;
    wanted.pszText = text;
    wanted.cchTextMax = kLongestLabel;
    if (!GetItem(&wanted))
        return {};
    return CString(wanted.pszText);
}

BOOL CTreeCtrl::GetItemImage(HTREEITEM item, int& image, int& selected_image) const
{
    TVITEM wanted{};
    wanted.hItem = item;
    wanted.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    if (!GetItem(&wanted))
        return FALSE;
    image = wanted.iImage;
    selected_image = wanted.iSelectedImage;
    return TRUE;
}

UINT CTreeCtrl::GetItemState(HTREEITEM item, UINT mask) const
{
    TVITEM wanted{};
    wanted.hItem = item;
    wanted.mask = TVIF_STATE;
    wanted.stateMask = mask;
    return GetItem(&wanted) ? wanted.state & mask : 0;
}

DWORD_PTR CTreeCtrl::GetItemData(HTREEITEM item) const
{
    TVITEM wanted{};
    wanted.hItem = item;
    wanted.mask = TVIF_PARAM;
    return GetItem(&wanted) ? static_cast<DWORD_PTR>(wanted.lParam) : 0;
}

BOOL CTreeCtrl::GetCheck(HTREEITEM item) const
{
    return GetItemState(item, TVIS_STATEIMAGEMASK) >> kStateImageShift == kCheckedImage;
}

BOOL CTreeCtrl::SetCheck(HTREEITEM item, BOOL check)
{
    const UINT image = check ? kCheckedImage : kClearImage;
    return SetItemState(item, image << kStateImageShift, TVIS_STATEIMAGEMASK);
}

HTREEITEM CTreeCtrl::HitTest(CPoint point, UINT* flags) const
{
    TVHITTESTINFO where{};
    where.pt = point;
    const HTREEITEM item = HitTest(&where);
    if (flags != nullptr)
        *flags = where.flags;
    return item;
}

BOOL CTreeCtrl::GetItemRect(HTREEITEM item, LPRECT rect, BOOL text_only) const
{
    // The control finds the item in the record that it fills.
    union {
        RECT rect;
        HTREEITEM item;
    } asked{};
    asked.item = item;
    if (!zmr::ask(*this, TVM_GETITEMRECT, zmr::wparam_of(text_only), zmr::lparam_of(&asked)))
        return FALSE;
    *rect = asked.rect;
    return TRUE;
}

CImageList* CTreeCtrl::SetImageList(CImageList* list, int which)
{
    const HIMAGELIST handle = list != nullptr ? list->m_hImageList : nullptr;
    return CImageList::FromHandle(zmr::ask_for<HIMAGELIST>(
        *this, TVM_SETIMAGELIST, zmr::wparam_of(which), zmr::lparam_of(handle)));
}

CImageList* CTreeCtrl::GetImageList(UINT which) const
{
    return CImageList::FromHandle(zmr::ask_for<HIMAGELIST>(*this, TVM_GETIMAGELIST, which));
}

CEdit* CTreeCtrl::EditLabel(HTREEITEM item)
{
    return zmr::control_of<CEdit>(
        zmr::ask_for<HWND>(*this, TVM_EDITLABEL, 0, zmr::lparam_of(item)));
}

CEdit* CTreeCtrl::GetEditControl() const
{
    return zmr::control_of<CEdit>(zmr::ask_for<HWND>(*this, TVM_GETEDITCONTROL));
}
