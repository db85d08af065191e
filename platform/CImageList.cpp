#include "platform/CImageList.h"

#include "platform/AfxResources.h"
#include "platform/CBitmap.h"
#include "platform/CDC.h"
#include "platform/HandlesUser.h"
#include "platform/ThreadState.h"

#include <utility>

IMPLEMENT_DYNCREATE(CImageList, CObject)

namespace {

HBITMAP bitmap_of(const CBitmap* bitmap)
{
    return bitmap != nullptr ? static_cast<HBITMAP>(*bitmap) : nullptr;
}

}  // namespace

CImageList::~CImageList()
{
    DeleteImageList();
}

BOOL CImageList::take(HIMAGELIST made)
{
    zmr::OwnedImageList list(made);
    if (!Attach(list.get()))
        return FALSE;
    static_cast<void>(list.release());
    return TRUE;
}

BOOL CImageList::Create(int width, int height, UINT flags, int initial, int grow)
{
    return take(::ImageList_Create(width, height, flags, initial, grow));
}

BOOL CImageList::Create(LPCTSTR bitmap_name, int width, int grow, COLORREF mask)
{
    return take(::ImageList_LoadImage(AfxFindResourceHandle(bitmap_name, RT_BITMAP), bitmap_name,
                                      width, grow, mask, IMAGE_BITMAP, 0));
}

BOOL CImageList::Create(CImageList* source)
{
    return source != nullptr && take(::ImageList_Duplicate(source->m_hImageList));
}

BOOL CImageList::Attach(HIMAGELIST list)
{
    if (list == nullptr || m_hImageList != nullptr)
        return FALSE;
    zmr::ThreadState::current().image_lists.set_permanent(list, this);
    m_hImageList = list;
    return TRUE;
}

HIMAGELIST CImageList::Detach()
{
    if (m_hImageList != nullptr)
        zmr::ThreadState::current().image_lists.remove_permanent(m_hImageList);
    return std::exchange(m_hImageList, nullptr);
}

BOOL CImageList::DeleteImageList()
{
    const HIMAGELIST list = Detach();
    return list != nullptr && ::ImageList_Destroy(list);
}

CImageList* CImageList::FromHandle(HIMAGELIST list)
{
    return zmr::ThreadState::current().image_lists.from_handle<&CImageList::m_hImageList>(list);
}

CImageList* CImageList::FromHandlePermanent(HIMAGELIST list)
{
    return zmr::ThreadState::current().image_lists.find_permanent(list);
}

HIMAGELIST CImageList::GetSafeHandle() const
{
    return this == nullptr ? nullptr : m_hImageList;
}

int CImageList::Add(CBitmap* image, CBitmap* mask)
{
    return ::ImageList_Add(m_hImageList, bitmap_of(image), bitmap_of(mask));
}

int CImageList::Add(CBitmap* image, COLORREF mask)
{
    return ::ImageList_AddMasked(m_hImageList, bitmap_of(image), mask);
}

BOOL CImageList::Replace(int image, CBitmap* picture, CBitmap* mask)
{
    return ::ImageList_Replace(m_hImageList, image, bitmap_of(picture), bitmap_of(mask));
}

BOOL CImageList::Draw(CDC* dc, int image, POINT place, UINT style)
{
    return dc != nullptr &&
           ::ImageList_Draw(m_hImageList, image, dc->m_hDC, place.x, place.y, style);
}

BOOL CImageList::DrawEx(CDC* dc, int image, POINT place, SIZE size, COLORREF background,
                        COLORREF foreground, UINT style)
{
    return dc != nullptr && ::ImageList_DrawEx(m_hImageList, image, dc->m_hDC, place.x, place.y,
                                               size.cx, size.cy, background, foreground, style);
}

BOOL CImageList::DrawIndirect(IMAGELISTDRAWPARAMS* how)
{
    how->cbSize = sizeof *how;
    how->himl = m_hImageList;
    return ::ImageList_DrawIndirect(how);
}

HICON CImageList::ExtractIcon(int image)
{
    return ::ImageList_GetIcon(m_hImageList, image, ILD_NORMAL);
}
