#pragma once

#include "platform/CObject.h"
#include "platform/Windows.h"

#include <commctrl.h>
#include <shellapi.h>  // makes ExtractIcon one name wherever this header is seen

class CBitmap;
class CDC;

/// A list of pictures of one size. One that was made or attached is destroyed with this object, so
/// detach what a control takes over. An object serves the thread that attached its handle.
class ZMR_GV_API CImageList : public CObject {
    DECLARE_DYNCREATE(CImageList)

public:
    CImageList() = default;
    ~CImageList() override;

    /// `flags` are ILC_...; `grow` is by how many images the list grows when it is full.
    BOOL Create(int width, int height, UINT flags, int initial, int grow);
    /// The images of a bitmap of the resources, each `width` wide; pixels of the colour `mask` are
    /// transparent.
    BOOL Create(LPCTSTR bitmap_name, int width, int grow, COLORREF mask);
    BOOL Create(UINT bitmap_id, int width, int grow, COLORREF mask)
    {
        return Create(MAKEINTRESOURCE(bitmap_id), width, grow, mask);
    }
    /// A copy of another list.
    BOOL Create(CImageList* source);
    /// Takes `list` over. FALSE, with nothing changed, when it is null or this object has one.
    BOOL Attach(HIMAGELIST list);
    /// Gives the handle up to the caller.
    HIMAGELIST Detach();
    /// FALSE when there was none.
    BOOL DeleteImageList();
    /// The object of the list: the one that attached it in this thread, else a temporary one, which
    /// lives until the thread's next idle turn and never destroys it. Null for null.
    [[nodiscard]] static CImageList* FromHandle(HIMAGELIST list);
    /// Null when no object of this thread attached it.
    [[nodiscard]] static CImageList* FromHandlePermanent(HIMAGELIST list);
    /// Null also when called on a null pointer.
    [[nodiscard]] HIMAGELIST GetSafeHandle() const;
    [[nodiscard]] operator HIMAGELIST() const { return m_hImageList; }

    [[nodiscard]] int GetImageCount() const { return ::ImageList_GetImageCount(m_hImageList); }
    BOOL SetImageCount(UINT count) { return ::ImageList_SetImageCount(m_hImageList, count); }
    /// These give the index of the first new image, -1 on failure. The pictures are copied, and the
    /// bitmaps' pixels may be changed by it.
    int Add(CBitmap* image, CBitmap* mask);
    int Add(CBitmap* image, COLORREF mask);
    int Add(HICON icon) { return ::ImageList_ReplaceIcon(m_hImageList, -1, icon); }
    BOOL Replace(int image, CBitmap* picture, CBitmap* mask);
    int Replace(int image, HICON icon)
    {
        return ::ImageList_ReplaceIcon(m_hImageList, image, icon);
    }
    /// -1 removes all.
    BOOL Remove(int image) { return ::ImageList_Remove(m_hImageList, image); }

    BOOL Draw(CDC* dc, int image, POINT place, UINT style);
    /// A size of 0, 0 is the whole image; CLR_NONE and CLR_DEFAULT serve as colours.
    BOOL DrawEx(CDC* dc, int image, POINT place, SIZE size, COLORREF background,
                COLORREF foreground, UINT style);
    BOOL DrawIndirect(IMAGELISTDRAWPARAMS* how);
    /// An icon of the image, which the caller owns.
    [[nodiscard]] HICON ExtractIcon(int image);
    BOOL GetImageInfo(int image, IMAGEINFO* info) const
    {
        return ::ImageList_GetImageInfo(m_hImageList, image, info);
    }
    BOOL GetIconSize(int* width, int* height) const
    {
        return ::ImageList_GetIconSize(m_hImageList, width, height);
    }
    COLORREF SetBkColor(COLORREF color) { return ::ImageList_SetBkColor(m_hImageList, color); }
    [[nodiscard]] COLORREF GetBkColor() const { return ::ImageList_GetBkColor(m_hImageList); }
    BOOL SetOverlayImage(int image, int overlay)
    {
        return ::ImageList_SetOverlayImage(m_hImageList, image, overlay);
    }

    HIMAGELIST m_hImageList = nullptr;

private:
    BOOL take(HIMAGELIST made);
};
