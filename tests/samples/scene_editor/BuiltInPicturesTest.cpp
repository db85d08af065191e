#include "scene_editor/core/BuiltInPictures.h"

#include <gtest/gtest.h>

TEST(BuiltInPictures, AnySize_IsThatSizeWithATransparentCornerAndAnOpaqueMiddle)
{
    for (const int size_px : {1, 16, 24, 32, 48, 63}) {
        const PixelMap directory = editor::directory_picture(size_px);
        const PixelMap entry = editor::entry_picture(size_px);

        EXPECT_EQ(directory.get_width(), size_px);
        EXPECT_EQ(entry.get_height(), size_px);
        if (size_px < 16)
            continue;
        EXPECT_EQ(directory.get_alpha(0, 0), 0);
        EXPECT_EQ(entry.get_alpha(0, size_px - 1), 0);
        EXPECT_EQ(directory.get_alpha(size_px / 2, size_px / 2), 255);
        EXPECT_EQ(entry.get_alpha(size_px / 2, size_px / 2), 255);
    }
}

TEST(BuiltInPictures, InMiddle_KeepsASmallPictureAsItIs)
{
    PixelMap picture(2, 4, AbstractImage::Format24, nullptr);
    picture.set_pixel(0, 0, RGB_Color{10, 20, 30});
    const PixelMap placed = editor::in_middle(picture, 8, 10);

    EXPECT_EQ(placed.get_width(), 10);
    EXPECT_EQ(placed.get_height(), 8);
    EXPECT_EQ(placed.get_pixel(4, 2).green, 20);
    EXPECT_EQ(placed.get_alpha(4, 2), 255);
    EXPECT_EQ(placed.get_alpha(3, 2), 0);
    EXPECT_EQ(placed.get_alpha(4, 1), 0);
    EXPECT_EQ(placed.get_alpha(5, 5), 255);
    EXPECT_EQ(placed.get_alpha(5, 6), 0);
}

TEST(BuiltInPictures, InMiddle_MakesALargePictureFit)
{
    const PixelMap wide(400, 100, AbstractImage::Format24, nullptr);
    const PixelMap placed = editor::in_middle(wide, 16, 16);

    EXPECT_EQ(placed.get_alpha(0, 8), 255);
    EXPECT_EQ(placed.get_alpha(0, 2), 0);
    const PixelMap thin(1, 5000, AbstractImage::Format24, nullptr);
    EXPECT_EQ(editor::in_middle(thin, 16, 16).get_alpha(7, 0), 255);
}
