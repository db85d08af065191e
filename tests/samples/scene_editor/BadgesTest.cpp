#include "scene_editor/core/Badges.h"

#include <gtest/gtest.h>

using editor::Holding;
using editor::with_badge;

namespace {

PixelMap blue(int size)
{
    PixelMap map(size, size, AbstractImage::Format32, nullptr);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            map.set_pixel(x, y, RGB_Color{0, 0, 250});
            map.set_alpha(x, y, 255);
        }
    }
    return map;
}

int pixels_unlike(const PixelMap& a, const PixelMap& b)
{
    int count = 0;
    for (int y = 0; y < a.get_height(); ++y) {
        for (int x = 0; x < a.get_width(); ++x)
            count += a.get_pixel(x, y) == b.get_pixel(x, y) ? 0 : 1;
    }
    return count;
}

}  // namespace

TEST(Badges, ObjectInTheLibrary_HasNone)
{
    EXPECT_EQ(pixels_unlike(with_badge(blue(32), Holding::Inside, 32), blue(32)), 0);
}

TEST(Badges, OtherHoldings_HaveEachTheirOwnAtTheLowerLeft)
{
    const PixelMap reference = with_badge(blue(32), Holding::Reference, 32);
    const PixelMap external = with_badge(blue(32), Holding::External, 32);
    const PixelMap lost = with_badge(blue(32), Holding::Lost, 32);

    EXPECT_GT(pixels_unlike(reference, external), 20);
    EXPECT_GT(pixels_unlike(reference, lost), 20);
    EXPECT_GT(pixels_unlike(external, lost), 20);
    for (const PixelMap* const badge : {&reference, &external, &lost}) {
        EXPECT_NE(badge->get_pixel(0, 31), (RGB_Color{0, 0, 250}));
        EXPECT_EQ(badge->get_pixel(31, 31), (RGB_Color{0, 0, 250}));
        EXPECT_EQ(badge->get_pixel(0, 0), (RGB_Color{0, 0, 250}));
    }
}

TEST(Badges, SmallAndTransparentIcons_HaveThemToo)
{
    const PixelMap small = with_badge(blue(4), Holding::Lost, 8);
    EXPECT_EQ(small.get_width(), 8);
    const PixelMap clear(16, 16, AbstractImage::Format32, nullptr);
    EXPECT_EQ(with_badge(clear, Holding::Lost, 16).get_alpha(0, 15), 255);
}
