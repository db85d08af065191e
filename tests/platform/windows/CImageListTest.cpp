#include "platform/CImageList.h"

#include "platform/CRect.h"
#include "platform/HandlesGdi.h"
#include "platform/HandlesUser.h"
#include "platform/ThreadState.h"
#include "tests/platform/windows/DrawingCanvas.h"
#include "tests/support/ResourceLedger.h"

#include <gtest/gtest.h>

namespace {

constexpr UINT kTestBitmap = 201;  ///< 4 by 2 pixels, green over blue.

/// A bitmap that holds `images` squares of 4 pixels, the first red, the second green.
void make_squares(CBitmap& bitmap, int images)
{
    const zmr::WindowDC screen(nullptr);
    ASSERT_TRUE(bitmap.CreateCompatibleBitmap(CDC::FromHandle(screen.get()), 4 * images, 4));
    CDC memory;
    memory.CreateCompatibleDC(nullptr);
    CBitmap* const former = memory.SelectObject(&bitmap);
    for (int image = 0; image < images; ++image)
        memory.FillSolidRect(4 * image, 0, 4, 4, image == 0 ? kRed : kGreen);
    memory.SelectObject(former);
}

}  // namespace

TEST(CImageList, Create_MakesAnEmptyListOfItsSize)
{
    CImageList list;
    ASSERT_TRUE(list.Create(16, 12, ILC_COLOR32 | ILC_MASK, 2, 4));
    int width = 0;
    int height = 0;

    EXPECT_EQ(list.GetImageCount(), 0);
    EXPECT_TRUE(list.GetIconSize(&width, &height));
    EXPECT_EQ(width, 16);
    EXPECT_EQ(height, 12);
    EXPECT_EQ(CImageList::FromHandlePermanent(list), &list);
    EXPECT_EQ(CImageList::FromHandle(list), &list);
    EXPECT_FALSE(list.Create(8, 8, ILC_COLOR32, 1, 1));
    EXPECT_FALSE(CImageList().Create(0, 0, ILC_COLOR32, 1, 1));
}

TEST(CImageList, Create_FromAResource_TakesItsImagesAndMask)
{
    CImageList list;
    ASSERT_TRUE(list.Create(kTestBitmap, 2, 1, kBlue));
    EXPECT_EQ(list.GetImageCount(), 2);
    DrawingCanvas canvas(4, 4);
    canvas.dc.FillSolidRect(0, 0, 4, 4, kRed);
    EXPECT_TRUE(list.Draw(&canvas.dc, 1, CPoint(0, 0), ILD_TRANSPARENT));

    EXPECT_EQ(canvas.pixel(0, 0), kGreen);
    EXPECT_EQ(canvas.pixel(0, 1), kRed) << "the mask's colour is left out";
    EXPECT_FALSE(CImageList().Create(9999U, 2, 1, kBlue));
}

TEST(CImageList, Create_FromAnotherList_CopiesIt)
{
    CImageList first;
    ASSERT_TRUE(first.Create(kTestBitmap, 2, 1, kBlue));
    CImageList second;
    ASSERT_TRUE(second.Create(&first));
    first.Remove(-1);

    EXPECT_EQ(first.GetImageCount(), 0);
    EXPECT_EQ(second.GetImageCount(), 2);
    EXPECT_FALSE(CImageList().Create(static_cast<CImageList*>(nullptr)));
}

TEST(CImageList, AddReplaceRemove_ChangeTheImages)
{
    CImageList list;
    ASSERT_TRUE(list.Create(4, 4, ILC_COLOR32, 0, 2));
    CBitmap squares;
    make_squares(squares, 2);
    EXPECT_EQ(list.Add(&squares, static_cast<CBitmap*>(nullptr)), 0);
    EXPECT_EQ(list.GetImageCount(), 2);
    CBitmap red;
    make_squares(red, 1);
    EXPECT_TRUE(list.Replace(1, &red, nullptr));
    DrawingCanvas canvas(8, 4);
    list.Draw(&canvas.dc, 0, CPoint(0, 0), ILD_NORMAL);
    list.Draw(&canvas.dc, 1, CPoint(4, 0), ILD_NORMAL);
    EXPECT_EQ(canvas.count(kRed), 32);

    EXPECT_TRUE(list.Remove(0));
    EXPECT_EQ(list.GetImageCount(), 1);
    EXPECT_FALSE(list.Remove(7));
    EXPECT_EQ(list.Add(static_cast<CBitmap*>(nullptr), kRed), -1);
    EXPECT_TRUE(list.SetImageCount(3));
    EXPECT_EQ(list.GetImageCount(), 3);
}

TEST(CImageList, IconsGoInAndOut)
{
    CImageList list;
    ASSERT_TRUE(list.Create(32, 32, ILC_COLOR32 | ILC_MASK, 0, 2));
    EXPECT_EQ(list.Add(::LoadIcon(nullptr, IDI_ERROR)), 0);
    EXPECT_EQ(list.Replace(0, ::LoadIcon(nullptr, IDI_WARNING)), 0);
    const zmr::OwnedIcon icon(list.ExtractIcon(0));
    ASSERT_TRUE(icon);
    ICONINFO info{};
    ASSERT_TRUE(::GetIconInfo(icon.get(), &info));
    const zmr::OwnedBitmap color(info.hbmColor);
    const zmr::OwnedBitmap mask(info.hbmMask);

    EXPECT_TRUE(info.fIcon);
    EXPECT_FALSE(zmr::OwnedIcon(list.ExtractIcon(5)));
}

TEST(CImageList, DrawEx_DrawsAPartOverItsBackground)
{
    CImageList list;
    ASSERT_TRUE(list.Create(4, 4, ILC_COLOR32 | ILC_MASK, 0, 1));
    CBitmap squares;
    make_squares(squares, 1);
    ASSERT_EQ(list.Add(&squares, kRed), 0);  // wholly transparent
    DrawingCanvas canvas(8, 8);

    EXPECT_TRUE(
        list.DrawEx(&canvas.dc, 0, CPoint(1, 1), CSize(3, 2), kGreen, CLR_NONE, ILD_NORMAL));
    EXPECT_EQ(canvas.count(kGreen), 6);
    EXPECT_FALSE(list.DrawEx(nullptr, 0, CPoint(1, 1), CSize(3, 2), kGreen, CLR_NONE, 0));
    EXPECT_FALSE(list.Draw(nullptr, 0, CPoint(0, 0), ILD_NORMAL));
    EXPECT_EQ(list.SetBkColor(kBlue), CLR_NONE);
    EXPECT_EQ(list.GetBkColor(), kBlue);
    IMAGELISTDRAWPARAMS how{};
    how.hdcDst = canvas.dc.m_hDC;
    how.rgbBk = CLR_DEFAULT;
    how.rgbFg = CLR_DEFAULT;
    how.fStyle = ILD_NORMAL;
    EXPECT_TRUE(list.DrawIndirect(&how));
    EXPECT_EQ(canvas.pixel(0, 0), kBlue);
}

TEST(CImageList, GetImageInfo_TellsWhereTheImageLies)
{
    CImageList list;
    ASSERT_TRUE(list.Create(kTestBitmap, 2, 1, kBlue));
    IMAGEINFO info{};
    ASSERT_TRUE(list.GetImageInfo(1, &info));

    EXPECT_EQ(CRect(info.rcImage).Size(), CSize(2, 2));
    EXPECT_FALSE(list.GetImageInfo(2, &info));
}

TEST(CImageList, AttachDetachAndDelete_CarryTheHandle)
{
    CImageList list;
    ASSERT_TRUE(list.Create(4, 4, ILC_COLOR32, 0, 1));
    zmr::OwnedImageList kept(list.Detach());
    EXPECT_EQ(list.Detach(), nullptr);
    EXPECT_FALSE(list.DeleteImageList());
    EXPECT_EQ(CImageList::FromHandlePermanent(kept.get()), nullptr);
    CImageList* const temporary = CImageList::FromHandle(kept.get());
    ASSERT_NE(temporary, nullptr);
    EXPECT_NE(temporary, &list);
    EXPECT_EQ(CImageList::FromHandle(kept.get()), temporary);
    zmr::ThreadState::current().drop_temporaries();

    EXPECT_EQ(::ImageList_GetImageCount(kept.get()), 0);
    EXPECT_TRUE(::ImageList_SetImageCount(kept.get(), 1)) << "the list still lives";
    EXPECT_TRUE(list.Attach(kept.release()));
    EXPECT_FALSE(list.Attach(list.m_hImageList));
    EXPECT_FALSE(CImageList().Attach(nullptr));
    EXPECT_EQ(CImageList::FromHandle(nullptr), nullptr);
}

TEST(CImageList, GetSafeHandle_OfANullObject_IsNull)
{
    const CImageList* volatile none = nullptr;

    EXPECT_EQ(none->GetSafeHandle(), nullptr);
}

TEST(CImageList, ManyLists_LeaveNothingBehind)
{
    const auto open_and_close = [] {
        CImageList list;
        list.Create(kTestBitmap, 2, 1, kBlue);
        CImageList copy;
        copy.Create(&list);
        copy.Add(::LoadIcon(nullptr, IDI_ERROR));
        const zmr::OwnedIcon icon(copy.ExtractIcon(0));
        static_cast<void>(CImageList::FromHandle(copy));
    };

    EXPECT_EQ(what_leaks(open_and_close), "");
    EXPECT_EQ(zmr::ThreadState::current().image_lists.permanent_count(), 0u);
}
