#include "TestPictures.h"

#include "platform/Windows.h"

#include <gtest/gtest.h>

namespace {

/// A bitmap of 32 bits to draw on, filled with one colour.
class Canvas {
public:
    Canvas(int width, int height, COLORREF color) : dc_(::CreateCompatibleDC(nullptr))
    {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        bitmap_ = ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        former_ = ::SelectObject(dc_, bitmap_);
        const RECT all = {0, 0, width, height};
        const HBRUSH brush = ::CreateSolidBrush(color);
        ::FillRect(dc_, &all, brush);
        ::DeleteObject(brush);
        ::SetStretchBltMode(dc_, COLORONCOLOR);
    }
    ~Canvas()
    {
        ::SelectObject(dc_, former_);
        ::DeleteObject(bitmap_);
        ::DeleteDC(dc_);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    [[nodiscard]] HDC dc() const { return dc_; }
    [[nodiscard]] RGB_Color pixel(int x, int y) const
    {
        return RGB_Color::from_colorref(::GetPixel(dc_, x, y));
    }

private:
    HDC dc_;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ former_ = nullptr;
};

}  // namespace

TEST(PixelMapGdi, Stretch_DrawsThePartIntoTheRectangle)
{
    const PixelMap map = test_map(AbstractImage::Format24);
    const Canvas canvas(20, 20, 0x123456);
    map.stretch(canvas.dc(), 1, 1, 3, 2, 4, 5, 10, 9);  // twice as large

    EXPECT_EQ(canvas.pixel(4, 5), test_color(1, 1));
    EXPECT_EQ(canvas.pixel(5, 6), test_color(1, 1));
    EXPECT_EQ(canvas.pixel(9, 8), test_color(3, 2));
    EXPECT_EQ(canvas.pixel(3, 5), RGB_Color::from_colorref(0x123456));
    EXPECT_EQ(canvas.pixel(10, 8), RGB_Color::from_colorref(0x123456));
    EXPECT_EQ(canvas.pixel(9, 9), RGB_Color::from_colorref(0x123456));
}

TEST(PixelMapGdi, Stretch_BlendsAlphaOverWhatIsThere)
{
    PixelMap map(3, 1, AbstractImage::Format32, nullptr);
    for (int x = 0; x < 3; ++x) {
        map.set_pixel(x, 0, RGB_Color(200, 100, 0));
        map.set_alpha(x, 0, static_cast<unsigned char>(x == 0 ? 255 : x == 1 ? 128 : 0));
    }
    const Canvas canvas(3, 1, 0xffffff);
    map.stretch(canvas.dc(), 0, 0, 3, 1, 0, 0, 3, 1);

    EXPECT_EQ(canvas.pixel(0, 0), RGB_Color(200, 100, 0));
    EXPECT_NEAR(canvas.pixel(1, 0).red, 227, 2);
    EXPECT_NEAR(canvas.pixel(1, 0).green, 177, 2);
    EXPECT_NEAR(canvas.pixel(1, 0).blue, 127, 2);
    EXPECT_EQ(canvas.pixel(2, 0), RGB_Color(255, 255, 255));
}

TEST(PixelMapGdi, Stretch_OfNothingOrOutsideDrawsNothing)
{
    const PixelMap map = test_map(AbstractImage::Format24);
    const PixelMap empty(0, 0, AbstractImage::Format24, nullptr);
    const Canvas canvas(4, 4, 0);
    empty.stretch(canvas.dc(), 0, 0, 1, 1, 0, 0, 4, 4);
    map.stretch(canvas.dc(), 0, 0, 0, 0, 0, 0, 4, 4);
    map.stretch(canvas.dc(), 7, 0, 4, 1, 0, 0, 4, 4);
    map.stretch(canvas.dc(), -4, 0, 4, 1, 0, 0, 4, 4);
    map.stretch(canvas.dc(), 1, 1, 1, 1, 4, 4, 0, 0);

    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(canvas.pixel(x, y), RGB_Color());
}

TEST(PixelMapGdi, Stretch_AcrossTheEdgeDrawsWhatThereIs)
{
    const PixelMap map = test_map(AbstractImage::Format24);
    const Canvas canvas(4, 1, 0x123456);
    map.stretch(canvas.dc(), -1, 2, 4, 1, 0, 0, 4, 1);

    EXPECT_EQ(canvas.pixel(0, 0), RGB_Color::from_colorref(0x123456));
    for (int x = 1; x < 4; ++x)
        EXPECT_EQ(canvas.pixel(x, 0), test_color(x - 1, 2));
}

TEST(PixelMapGdi, CreateHandle_HasThePixelsAndFollowsChanges)
{
    PixelMap map = test_map(AbstractImage::Format24);
    const HBITMAP handle = map.create_handle();
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(map.create_handle(), handle);
    DIBSECTION section{};
    ASSERT_EQ(::GetObjectA(handle, sizeof section, &section), static_cast<int>(sizeof section));
    EXPECT_EQ(section.dsBm.bmWidth, kTestWidth);
    EXPECT_EQ(section.dsBm.bmHeight, kTestHeight);
    map.set_pixel(0, 0, RGB_Color(1, 2, 3));

    ASSERT_EQ(::GetObjectA(map.create_handle(), sizeof section, &section),
              static_cast<int>(sizeof section));
    const auto* bits = static_cast<const unsigned char*>(section.dsBm.bmBits);
    EXPECT_EQ(bits[0], 3);
    EXPECT_EQ(bits[1], 2);
    EXPECT_EQ(bits[2], 1);
}

TEST(PixelMapGdi, CreateHandle_OfEmptyMapIsNull)
{
    PixelMap map(0, 0, AbstractImage::Format24, nullptr);

    EXPECT_EQ(map.create_handle(), nullptr);
}
