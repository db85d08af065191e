#include "controls/GPixelMapView.h"

#include "graphics/PixelMap.h"
#include "platform/CBitmap.h"
#include "platform/CClientDC.h"
#include "tests/support/ResourceLedger.h"

#include <gtest/gtest.h>

namespace {

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr COLORREF kMark = RGB(1, 200, 3);

COLORREF face()
{
    return ::GetSysColor(COLOR_BTNFACE);
}

/// A view on the screen, with what its heirs see open to the tests.
class View : public GPixelMapView {
public:
    ~View() override { DestroyWindow(); }

    [[nodiscard]] bool open(int width, int height)
    {
        return CreateEx(0, nullptr, "view", WS_POPUP | WS_VISIBLE,
                        CRect(10, 10, 10 + width, 10 + height), nullptr, 0) != 0;
    }
    void paint_now() { RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW); }
    [[nodiscard]] COLORREF pixel(int x, int y)
    {
        CClientDC dc(this);
        return dc.GetPixel(x, y);
    }
    [[nodiscard]] bool owns_map() const { return m_bOwnMap; }
};

/// Counts the living maps that the tests made, and with them the ones that a view deletes.
class CountedMap : public PixelMap {
public:
    CountedMap(int width, int height, MapFormat format = Format24)
        : PixelMap(width, height, format, nullptr)
    {
        ++living;
        const RGB_Color red = RGB_Color::from_colorref(kRed);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                set_pixel(x, y, red);
    }
    ~CountedMap() override { --living; }

    static inline int living = 0;
};

class GPixelMapViewTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(CountedMap::living, 0); }
    void TearDown() override { EXPECT_EQ(CountedMap::living, 0); }

    View view;
};

/// What one WM_ERASEBKGND draws on a picture that was filled with the mark's colour.
class Erased {
public:
    Erased(View& view, int width, int height)
    {
        BITMAPINFO description{};
        description.bmiHeader.biSize = sizeof description.bmiHeader;
        description.bmiHeader.biWidth = width;
        description.bmiHeader.biHeight = -height;
        description.bmiHeader.biPlanes = 1;
        description.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        picture_.CreateDIBSection(&description, &bits);
        dc_.CreateCompatibleDC(nullptr);
        former_ = dc_.SelectObject(&picture_);
        dc_.FillSolidRect(0, 0, width, height, kMark);
        answer = view.SendMessage(WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc_.m_hDC));
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const COLORREF color = dc_.GetPixel(x, y);
                if (color == kMark)
                    left.UnionRect(left, CRect(x, y, x + 1, y + 1));
                filled += color == face() ? 1 : 0;
            }
    }
    ~Erased() { dc_.SelectObject(former_); }
    Erased(const Erased&) = delete;
    Erased& operator=(const Erased&) = delete;

    LRESULT answer = 0;
    int filled = 0;  ///< Pixels of the face colour.
    CRect left;      ///< Around the pixels that were left alone.

private:
    CBitmap picture_;
    CDC dc_;
    CBitmap* former_ = nullptr;
};

}  // namespace

TEST_F(GPixelMapViewTest, NewView_StretchesNothing)
{
    EXPECT_EQ(view.get_draw_type(), GPixelMapView::DrawStretch);
    EXPECT_EQ(view.get_draw_type(), 4);
    EXPECT_EQ(view.get_map(), nullptr);
    EXPECT_FALSE(view.owns_map());
    EXPECT_TRUE(view.get_image_rect().IsRectNull());
}

TEST_F(GPixelMapViewTest, Fit_MapOf10By10InAreaOf100By50_Gets50By50AtX25AndIsNotResized)
{
    ASSERT_TRUE(view.open(100, 50));
    CountedMap map(10, 10);
    view.set_draw_type(GPixelMapView::DrawFit);
    view.set_map(&map, false);

    EXPECT_EQ(view.get_image_rect(), CRect(25, 0, 75, 50));
    EXPECT_EQ(view.get_map(), &map);
    EXPECT_FALSE(view.owns_map());
    view.set_map(nullptr, false);
}

TEST_F(GPixelMapViewTest, Fit_EqualRatios_HeightBranchApplies)
{
    ASSERT_TRUE(view.open(60, 40));
    CountedMap map(30, 20);
    view.set_draw_type(GPixelMapView::DrawFit);
    view.set_map(&map, false);

    EXPECT_EQ(view.get_image_rect(), CRect(0, 0, 60, 40));
    view.set_map(nullptr, false);
}

TEST_F(GPixelMapViewTest, Centered_LargerMap_HasNegativeLeftAndTopAndEraseSeesAFullCover)
{
    ASSERT_TRUE(view.open(40, 20));
    CountedMap map(101, 61);
    view.set_draw_type(GPixelMapView::DrawCentered);
    view.set_map(&map, false);
    const Erased erased(view, 40, 20);

    EXPECT_EQ(view.get_image_rect(), CRect(-30, -20, 71, 41));
    EXPECT_EQ(view.get_map(), &map) << "a map in its natural size is not scaled";
    EXPECT_EQ(erased.answer, 1);
    EXPECT_EQ(erased.filled, 0);
    view.set_map(nullptr, false);
}

TEST_F(GPixelMapViewTest, Stretch_TooLargeMapOfTheCaller_ViewShowsItsOwnCopyAndTheMapStays)
{
    ASSERT_TRUE(view.open(20, 10));
    CountedMap map(40, 30);
    view.set_map(&map, false);

    ASSERT_NE(view.get_map(), &map);
    EXPECT_EQ(view.get_map()->get_width(), 20);
    EXPECT_EQ(view.get_map()->get_height(), 10);
    EXPECT_TRUE(view.owns_map());
    EXPECT_EQ(CountedMap::living, 1);
    EXPECT_EQ(map.get_width(), 40);
}

TEST_F(GPixelMapViewTest, Stretch_TooLargeOwnedMap_IsDeletedForItsSmallerCopy)
{
    ASSERT_TRUE(view.open(20, 10));
    view.set_map(new CountedMap(40, 5), true);  // only one side is too large

    EXPECT_EQ(CountedMap::living, 0);
    EXPECT_EQ(view.get_map()->get_width(), 20);
    EXPECT_EQ(view.get_map()->get_height(), 10);
}

TEST_F(GPixelMapViewTest, SetMap_OfTheOwnedMapItself_KeepsItAlive)
{
    ASSERT_TRUE(view.open(20, 10));
    auto* const map = new CountedMap(8, 6);
    view.set_map(map, true);
    view.set_map(view.get_map(), true);
    EXPECT_EQ(CountedMap::living, 1);
    EXPECT_EQ(view.get_map(), map);

    view.set_map(view.get_map(), false);  // gives it back to the caller
    EXPECT_EQ(CountedMap::living, 1);
    view.set_map(nullptr, false);
    EXPECT_EQ(CountedMap::living, 1);
    delete map;
}

TEST_F(GPixelMapViewTest, SetMap_DeletesTheFormerOwnedMapAndLeavesAForeignOne)
{
    CountedMap foreign(8, 6);
    view.set_map(&foreign, false);
    view.set_map(new CountedMap(8, 6), true);
    EXPECT_EQ(CountedMap::living, 2);
    view.set_map(nullptr, true);

    EXPECT_EQ(CountedMap::living, 1);
    EXPECT_TRUE(view.get_image_rect().IsRectNull());
}

TEST_F(GPixelMapViewTest, EndOfView_DeletesAnOwnedMapAndLeavesAForeignOne)
{
    CountedMap foreign(8, 6);
    {
        View first;
        first.set_map(new CountedMap(8, 6), true);
        View second;
        second.set_map(&foreign, false);
        EXPECT_EQ(CountedMap::living, 2);
    }

    EXPECT_EQ(CountedMap::living, 1);
}

TEST_F(GPixelMapViewTest, EmptyMap_HasAnEmptyRectangleInEachWay)
{
    ASSERT_TRUE(view.open(20, 10));
    CountedMap empty(0, 0);
    for (const auto type : {GPixelMapView::DrawCentered, GPixelMapView::DrawTopLeft,
                            GPixelMapView::DrawFit, GPixelMapView::DrawStretch}) {
        view.set_draw_type(type);
        view.set_map(&empty, false);
        view.paint_now();

        EXPECT_TRUE(view.get_image_rect().IsRectNull());
        EXPECT_EQ(view.get_map(), &empty);
        EXPECT_EQ(view.pixel(10, 5), face());
    }
    view.set_map(nullptr, false);
}

TEST_F(GPixelMapViewTest, ViewWithoutArea_KeepsThePicture)
{
    CountedMap map(40, 30);
    view.set_map(&map, false);  // there is no window yet
    EXPECT_EQ(view.get_map(), &map);
    EXPECT_TRUE(view.get_image_rect().IsRectEmpty());
    ASSERT_TRUE(view.open(20, 0));
    view.set_draw_type(GPixelMapView::DrawFit);
    view.set_map(&map, false);

    EXPECT_EQ(view.get_map(), &map);
    EXPECT_TRUE(view.get_image_rect().IsRectEmpty());
    view.set_map(nullptr, false);
}

TEST_F(GPixelMapViewTest, DrawTypeAndSize_TakeEffectAtTheNextSetMap)
{
    ASSERT_TRUE(view.open(40, 20));
    CountedMap map(10, 10);
    view.set_map(&map, false);
    view.set_draw_type(GPixelMapView::DrawTopLeft);
    EXPECT_EQ(view.get_image_rect(), CRect(0, 0, 40, 20));
    view.SetWindowPos(nullptr, 0, 0, 60, 30, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(view.get_image_rect(), CRect(0, 0, 40, 20));
    view.set_map(&map, false);

    EXPECT_EQ(view.get_image_rect(), CRect(0, 0, 10, 10));
    view.set_map(nullptr, false);
}

TEST_F(GPixelMapViewTest, SetMap_InvalidatesTheWholeWindowWithErase)
{
    ASSERT_TRUE(view.open(40, 20));
    view.paint_now();
    ASSERT_FALSE(::GetUpdateRect(view, nullptr, FALSE));
    view.set_map(nullptr, false);
    CRect invalid;

    EXPECT_TRUE(::GetUpdateRect(view, &invalid, FALSE));
    EXPECT_EQ(invalid, CRect(0, 0, 40, 20));
    view.UpdateWindow();
    EXPECT_EQ(view.pixel(20, 10), face()) << "erased, not only painted";
}

TEST_F(GPixelMapViewTest, Paint_DrawsTheMapInItsPlaceAndTheFaceAround)
{
    ASSERT_TRUE(view.open(40, 20));
    CountedMap map(10, 8);
    map.set_pixel(9, 7, RGB_Color::from_colorref(kBlue));
    view.set_draw_type(GPixelMapView::DrawCentered);
    view.set_map(&map, false);
    view.paint_now();

    EXPECT_EQ(view.get_image_rect(), CRect(15, 6, 25, 14));
    EXPECT_EQ(view.pixel(15, 6), kRed);
    EXPECT_EQ(view.pixel(24, 13), kBlue);
    for (const CPoint& outside : {CPoint(14, 6), {15, 5}, {25, 13}, {24, 14}, {0, 0}, {39, 19}})
        EXPECT_EQ(view.pixel(outside.x, outside.y), face());
    EXPECT_FALSE(::GetUpdateRect(view, nullptr, FALSE));
    view.set_map(nullptr, false);
}

TEST_F(GPixelMapViewTest, Paint_EnlargesASmallMapByWholePixels)
{
    ASSERT_TRUE(view.open(40, 20));
    CountedMap map(2, 1);
    map.set_pixel(1, 0, RGB_Color::from_colorref(kBlue));
    view.set_map(&map, false);
    view.paint_now();

    EXPECT_EQ(view.get_map(), &map);
    EXPECT_EQ(view.pixel(0, 0), kRed);
    EXPECT_EQ(view.pixel(19, 19), kRed);
    EXPECT_EQ(view.pixel(20, 0), kBlue);
    EXPECT_EQ(view.pixel(39, 19), kBlue);
    view.set_map(nullptr, false);
}

TEST_F(GPixelMapViewTest, Paint_OfATransparentMapAgainAndAgain_LooksTheSame)
{
    ASSERT_TRUE(view.open(40, 20));
    CountedMap map(10, 8, AbstractImage::Format32);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 10; ++x)
            map.set_alpha(x, y, x < 5 ? 0 : 128);
    view.set_draw_type(GPixelMapView::DrawTopLeft);
    view.set_map(&map, false);
    view.paint_now();
    const COLORREF once = view.pixel(7, 4);
    EXPECT_EQ(view.pixel(2, 4), face());
    EXPECT_EQ(view.pixel(30, 15), face());
    EXPECT_NE(once, face());
    EXPECT_NE(once, kRed);
    for (int turn = 0; turn < 5; ++turn)
        view.paint_now();

    EXPECT_EQ(view.pixel(7, 4), once);
    EXPECT_EQ(view.pixel(2, 4), face());
    view.set_map(nullptr, false);
}

TEST_F(GPixelMapViewTest, Erase_LeavesTheImageAloneAndFillsTheFourStrips)
{
    ASSERT_TRUE(view.open(40, 20));
    CountedMap map(10, 8);
    view.set_draw_type(GPixelMapView::DrawCentered);
    view.set_map(&map, false);
    const Erased erased(view, 40, 20);

    EXPECT_EQ(erased.answer, 1);
    EXPECT_EQ(erased.left, CRect(15, 6, 25, 14));
    EXPECT_EQ(erased.filled, 40 * 20 - 10 * 8);
    view.set_map(nullptr, false);
}

TEST_F(GPixelMapViewTest, Erase_WithoutAMap_FillsTheWholeClientArea)
{
    ASSERT_TRUE(view.open(40, 20));
    const Erased erased(view, 40, 20);

    EXPECT_EQ(erased.answer, 1);
    EXPECT_EQ(erased.filled, 40 * 20);
}

TEST_F(GPixelMapViewTest, Erase_AfterTheWindowGrew_FillsWhatIsNew)
{
    ASSERT_TRUE(view.open(40, 20));
    CountedMap map(10, 8);
    view.set_map(&map, false);
    view.SetWindowPos(nullptr, 0, 0, 60, 30, SWP_NOMOVE | SWP_NOZORDER);
    const Erased erased(view, 60, 30);

    EXPECT_EQ(erased.left, CRect(0, 0, 40, 20));
    EXPECT_EQ(erased.filled, 60 * 30 - 40 * 20);
    view.set_map(nullptr, false);
}

TEST_F(GPixelMapViewTest, ManyViews_LeaveNothingBehind)
{
    const auto open_and_close = [] {
        View shown;
        ASSERT_TRUE(shown.open(20, 10));
        shown.set_map(new CountedMap(30, 20, AbstractImage::Format32), true);
        shown.paint_now();
    };

    EXPECT_EQ(what_leaks(open_and_close), "");
}
