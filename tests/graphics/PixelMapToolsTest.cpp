#include "TestPictures.h"

#include "graphics/PixelMapTools.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

constexpr auto kPlain = AbstractImage::Format24;
constexpr auto kAlpha = AbstractImage::Format32;

std::unique_ptr<PixelMap> load(const std::string& file)
{
    return std::unique_ptr<PixelMap>(PixelMapTools::LoadFromFile(file.c_str()));
}

std::unique_ptr<PixelMap> resize(const PixelMap& map, long width, long height, bool smooth)
{
    return std::unique_ptr<PixelMap>(PixelMapTools::Resize(map, width, height, smooth));
}

}  // namespace

TEST(PixelMapTools, LoadFromFile_GivesAMapOrNull)
{
    EXPECT_NE(load(data_file("rgb8.png")), nullptr);
    EXPECT_EQ(load(data_file("missing.png")), nullptr);
    EXPECT_EQ(load(data_file("../TestPictures.cpp")), nullptr);
    EXPECT_EQ(PixelMapTools::LoadFromFile(nullptr), nullptr);
}

TEST(PixelMapTools, SaveToFile_OfLosslessFormatsComesBackExactly)
{
    const TemporaryFolder folder;
    for (const char* name : {"a.png", "a.bmp", "a.tga", "A.TARGA", "a.dib"})
        for (const auto format : {kPlain, kAlpha}) {
            const PixelMap map = test_map(format);
            const std::string file = folder.file(name);
            ASSERT_TRUE(PixelMapTools::SaveToFile(&map, file.c_str(), true)) << name;

            // A .dib is told by its content, a .targa by its name too.
            const auto read = load(file);

            ASSERT_NE(read, nullptr) << name;
            EXPECT_TRUE(same_pixels(*read, map)) << name << format;
        }
}

TEST(PixelMapTools, SaveToFile_OfJpegLaysItOnWhite)
{
    const TemporaryFolder folder;
    PixelMap map(16, 16, kAlpha, nullptr);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 8; ++x)
            map.set_pixel(x, y, RGB_Color(200, 0, 0));
    const std::string file = folder.file("a.jpg");
    ASSERT_TRUE(PixelMapTools::SaveToFile(&map, file.c_str(), false));

    const auto read = load(file);

    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->get_format(), kPlain);
    EXPECT_NEAR(read->get_pixel(2, 8).red, 200, 6);
    EXPECT_NEAR(read->get_pixel(2, 8).green, 0, 6);
    EXPECT_NEAR(read->get_pixel(14, 8).red, 255, 6);
    EXPECT_NEAR(read->get_pixel(14, 8).blue, 255, 6);
}

TEST(PixelMapTools, SaveToFile_WithoutOverwriteKeepsTheFile)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("a.png");
    const PixelMap first = test_map(kPlain);
    const PixelMap second(3, 3, kPlain, nullptr);
    ASSERT_TRUE(PixelMapTools::SaveToFile(&first, file.c_str(), false));

    EXPECT_FALSE(PixelMapTools::SaveToFile(&second, file.c_str(), false));
    EXPECT_TRUE(same_pixels(*load(file), first));
    EXPECT_TRUE(PixelMapTools::SaveToFile(&second, file.c_str(), true));
    EXPECT_TRUE(same_pixels(*load(file), second));
}

TEST(PixelMapTools, SaveToFile_RefusesWhatItCannotWrite)
{
    const TemporaryFolder folder;
    const PixelMap map = test_map(kPlain);
    const PixelMap empty(0, 0, kPlain, nullptr);
    const auto saves = [&](const PixelMap* what, const char* name) {
        return PixelMapTools::SaveToFile(what, folder.file(name).c_str(), true);
    };
    EXPECT_FALSE(saves(nullptr, "a.png"));
    EXPECT_FALSE(saves(&empty, "a.png"));
    EXPECT_FALSE(saves(&map, "a.gif"));
    EXPECT_FALSE(saves(&map, "a.unknown"));
    EXPECT_FALSE(saves(&map, "a"));
    EXPECT_FALSE(saves(&map, "missing/a.png"));
    EXPECT_FALSE(PixelMapTools::SaveToFile(&map, nullptr, true));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(PixelMapTools, Resize_RefusesSizesBelowOneTooLargeOnesAndEmptyMaps)
{
    const PixelMap map = test_map(kPlain);
    const PixelMap empty(0, 0, kPlain, nullptr);

    EXPECT_EQ(resize(map, 0, 5, true), nullptr);
    EXPECT_EQ(resize(map, 5, -1, true), nullptr);
    EXPECT_EQ(resize(map, 1 << 20, 1 << 20, true), nullptr);
    EXPECT_EQ(resize(empty, 5, 5, true), nullptr);
}

TEST(PixelMapTools, Resize_ToTheSameSizeKeepsAllPixels)
{
    for (const auto format : {kPlain, kAlpha})
        for (const bool smooth : {true, false}) {
            const PixelMap map = test_map(format);
            EXPECT_TRUE(same_pixels(*resize(map, kTestWidth, kTestHeight, smooth), map));
        }
}

TEST(PixelMapTools, Resize_KeepsSizeAndFormatAsked)
{
    const auto map = resize(test_map(kAlpha), 3, 11, true);

    EXPECT_EQ(map->get_width(), 3);
    EXPECT_EQ(map->get_height(), 11);
    EXPECT_EQ(map->get_format(), kAlpha);
}

TEST(PixelMapTools, GetSequence_FindsTheUnbrokenRun)
{
    const TemporaryFolder folder;
    for (const char* name : {"shot_0007.tga", "shot_0008.tga", "shot_0009.tga", "shot_0010.tga",
                             "shot_0012.tga", "shot_0008.png", "other_0006.tga", "shot_006.tga"})
        write_file(folder.file(name), {1});
    PixelMapLocation location;

    ASSERT_TRUE(PixelMapTools::GetSequence(folder.file("shot_0008.tga").c_str(), location, false));

    EXPECT_EQ(location.first, 7);
    EXPECT_EQ(location.last, 10);
    EXPECT_EQ(location.current, 8);
    EXPECT_EQ(location.digits, 4);
    EXPECT_EQ(location.count(), 4);
    EXPECT_EQ(location.pattern(), "shot_####.tga");
    EXPECT_TRUE(location.file(10).exists());
    EXPECT_FALSE(location.file(11).exists());
}

TEST(PixelMapTools, GetSequence_WithoutLeadingZerosCrossesTheTens)
{
    const TemporaryFolder folder;
    for (const char* name : {"a8.png", "a9.png", "a10.png", "a11.png"})
        write_file(folder.file(name), {1});
    for (const char* name : {"a9.png", "a10.png"}) {
        PixelMapLocation location;
        ASSERT_TRUE(PixelMapTools::GetSequence(folder.file(name).c_str(), location, false));
        EXPECT_EQ(location.first, 8) << name;
        EXPECT_EQ(location.last, 11) << name;
        EXPECT_EQ(location.digits, 1) << name;
        EXPECT_TRUE(location.file(11).exists()) << name;
    }
}

TEST(PixelMapTools, GetSequence_StartsAtZeroAndTakesLongNumbers)
{
    const TemporaryFolder folder;
    for (const char* name : {"00.png", "01.png", "run999999999.png"})
        write_file(folder.file(name), {1});
    PixelMapLocation location;
    ASSERT_TRUE(PixelMapTools::GetSequence(folder.file("01.png").c_str(), location, false));
    EXPECT_EQ(location.first, 0);
    EXPECT_EQ(location.prefix, "");

    ASSERT_TRUE(
        PixelMapTools::GetSequence(folder.file("run999999999.png").c_str(), location, false));
    EXPECT_EQ(location.count(), 1);
    EXPECT_TRUE(location.file(location.first).exists());
}

TEST(PixelMapTools, GetSequence_OfNameWithoutNumberIsThatPicture)
{
    const TemporaryFolder folder;
    write_file(folder.file("wood.png"), {1});
    PixelMapLocation location;

    ASSERT_TRUE(PixelMapTools::GetSequence(folder.file("wood.png").c_str(), location, true));

    EXPECT_EQ(location.digits, 0);
    EXPECT_EQ(location.count(), 1);
    EXPECT_EQ(location.pattern(), "wood.png");
    EXPECT_TRUE(location.file(0).exists());
}

TEST(PixelMapTools, GetSequence_OfMissingFileFailsAndKeepsTheLocation)
{
    const TemporaryFolder folder;
    PixelMapLocation location;
    location.first = 5;

    EXPECT_FALSE(PixelMapTools::GetSequence(folder.file("a1.png").c_str(), location, false));
    EXPECT_FALSE(PixelMapTools::GetSequence(nullptr, location, false));
    EXPECT_FALSE(PixelMapTools::GetSequence(folder.file("").c_str(), location, false));
    EXPECT_EQ(location.first, 5);
}
