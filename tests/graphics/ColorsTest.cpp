#include "graphics/HSV_Color.h"
#include "graphics/RGB_Color.h"
#include "graphics/YUV_Color.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

int distance(const RGB_Color& a, const RGB_Color& b)
{
    return std::max(
        {std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
}

}  // namespace

TEST(RGB_Color, Memory_IsBlueGreenRed)
{
    const RGB_Color color(1, 2, 3);

    unsigned char bytes[3];
    std::memcpy(bytes, &color, sizeof bytes);
    EXPECT_EQ(bytes[0], 3);
    EXPECT_EQ(bytes[1], 2);
    EXPECT_EQ(bytes[2], 1);
}

TEST(RGB_Color, PlatformValue_HasRedLowestAndComesBack)
{
    const RGB_Color color(0x11, 0x22, 0x33);

    EXPECT_EQ(color.to_colorref(), 0x332211u);
    EXPECT_EQ(RGB_Color::from_colorref(0x332211u), color);
}

TEST(HSV_Color, PureColors_HaveTheirPlacesOnTheCircle)
{
    EXPECT_EQ(HSV_Color(RGB_Color(255, 0, 0)), HSV_Color(0, 255, 255));
    EXPECT_EQ(HSV_Color(RGB_Color(255, 255, 0)), HSV_Color(43, 255, 255));
    EXPECT_EQ(HSV_Color(RGB_Color(0, 255, 0)), HSV_Color(85, 255, 255));
    EXPECT_EQ(HSV_Color(RGB_Color(0, 255, 255)), HSV_Color(128, 255, 255));
    EXPECT_EQ(HSV_Color(RGB_Color(0, 0, 255)), HSV_Color(171, 255, 255));
    EXPECT_EQ(HSV_Color(RGB_Color(255, 0, 255)), HSV_Color(213, 255, 255));
}

TEST(HSV_Color, Greys_HaveNoHueAndComeBackExactly)
{
    for (int value = 0; value < 256; ++value) {
        const auto part = static_cast<unsigned char>(value);
        const RGB_Color grey(part, part, part);
        const HSV_Color hsv(grey);

        ASSERT_EQ(hsv, HSV_Color(0, 0, part));
        ASSERT_EQ(static_cast<RGB_Color>(hsv), grey);
    }
}

TEST(HSV_Color, AllColors_ComeBackWithinThreeAndKeepTheirValue)
{
    int worst = 0;
    int worst_of_pale = 0;
    for (int packed = 0; packed < 1 << 24; ++packed) {
        const RGB_Color color = RGB_Color::from_colorref(static_cast<COLORREF>(packed));
        const HSV_Color hsv(color);
        const RGB_Color back = hsv;
        worst = std::max(worst, distance(color, back));
        if (hsv.saturation < 64)
            worst_of_pale = std::max(worst_of_pale, distance(color, back));
        ASSERT_EQ(hsv.value, std::max({color.red, color.green, color.blue}));
    }

    EXPECT_LE(worst, 3);
    EXPECT_LE(worst_of_pale, 1);
}

TEST(HSV_Color, FullSaturationAndValue_KeepEachHueOnTheWayBack)
{
    for (int hue = 0; hue < 256; ++hue) {
        const HSV_Color color(static_cast<unsigned char>(hue), 255, 255);

        ASSERT_EQ(HSV_Color(static_cast<RGB_Color>(color)), color) << hue;
    }
}

TEST(YUV_Color, Luma_IsTheRoundedWeightedSum)
{
    EXPECT_EQ(YUV_Color(RGB_Color(0, 0, 0)).luma, 0);
    EXPECT_EQ(YUV_Color(RGB_Color(255, 255, 255)).luma, 255);
    EXPECT_EQ(YUV_Color(RGB_Color(255, 0, 0)).luma, 76);
    EXPECT_EQ(YUV_Color(RGB_Color(0, 255, 0)).luma, 150);
    EXPECT_EQ(YUV_Color(RGB_Color(0, 0, 255)).luma, 29);
    EXPECT_EQ(YUV_Color(RGB_Color(128, 128, 128)).luma, 128);
}

TEST(YUV_Color, Memory_BeginsWithTheLuma)
{
    const YUV_Color color(RGB_Color(255, 0, 0));

    std::int16_t first = 0;
    std::memcpy(&first, &color, sizeof first);
    EXPECT_EQ(first, color.luma);
}
