#include "TestPictures.h"

#include "foundation/GException.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

namespace {

struct Kind {
    const char* file;
    bool alpha;
    std::function<TestPixel(int, int)> pixel;
};

void PrintTo(const Kind& kind, std::ostream* out)
{
    *out << kind.file;
}

TestPixel colored(int x, int y)
{
    return {test_color(x, y), 255};
}
TestPixel colored_alpha(int x, int y)
{
    return {test_color(x, y), test_alpha(x, y)};
}
TestPixel grey(int x, int y)
{
    const unsigned char part = test_grey(x, y);
    return {RGB_Color(part, part, part), 255};
}
TestPixel grey_alpha(int x, int y)
{
    return {grey(x, y).color, test_alpha(x, y)};
}
template <int kCount>
TestPixel indexed(int x, int y)
{
    return {palette_entry((x + 2 * y) % kCount), 255};
}
TestPixel indexed_alpha(int x, int y)
{
    const int index = (x + 2 * y) % 4;
    return {palette_entry(index), static_cast<unsigned char>(index == 0   ? 0
                                                             : index == 1 ? 128
                                                                          : 255)};
}
template <int kMost>
unsigned char widened(int value)
{
    return static_cast<unsigned char>((value * 255 + kMost / 2) / kMost);
}
TestPixel five_bits(int x, int y)
{
    return {
        RGB_Color(widened<31>(x * 5 % 32), widened<31>(y * 7 % 32), widened<31>((x + y * 3) % 32)),
        255};
}
TestPixel six_bits(int x, int y)
{
    TestPixel pixel = five_bits(x, y);
    pixel.color.green = widened<63>(y * 7 % 32 * 2 + 1);
    return pixel;
}
/// Ten bits a part that hold eight and two zero bits.
TestPixel ten_bits(int x, int y)
{
    return colored(x, y);
}
TestPixel color_key(int x, int y)
{
    return {test_color(x, y), static_cast<unsigned char>(x == 2 && y == 1 ? 0 : 255)};
}
TestPixel grey_key(int x, int y)
{
    const bool clear = test_grey(x, y) == test_grey(3, 2);
    return {grey(x, y).color, static_cast<unsigned char>(clear ? 0 : 255)};
}
TestPixel transparent_gif(int x, int y)
{
    if ((x + 2 * y) % 12 == 3)
        return {RGB_Color(), 0};
    return indexed<12>(x, y);
}
/// Runs that skip: see make_pictures.py.
TestPixel skipping_runs(int x, int y)
{
    if (y == 4)
        return {palette_entry(3), 255};
    return {palette_entry(x == 2 && y == 2 ? 5 : 0), 255};
}

const Kind kKinds[] = {
    {"rgb8.png", false, colored},
    {"rgba8.png", true, colored_alpha},
    {"rgb8_interlaced.png", false, colored},
    {"rgba8_interlaced.png", true, colored_alpha},
    {"rgb16.png", false, colored},
    {"rgba16.png", true, colored_alpha},
    {"grey8.png", false, grey},
    {"grey16.png", false, grey},
    {"grey_alpha8.png", true, grey_alpha},
    {"grey_alpha16.png", true, grey_alpha},
    {"palette1.png", false, indexed<2>},
    {"palette2.png", false, indexed<4>},
    {"palette4.png", false, indexed<12>},
    {"palette8.png", false, indexed<12>},
    {"palette_alpha.png", true, indexed_alpha},
    {"palette_alpha_interlaced.png", true, indexed_alpha},
    {"rgb8_key.png", true, color_key},
    {"grey8_key.png", true, grey_key},
    {"palette1.bmp", false, indexed<2>},
    {"palette4.bmp", false, indexed<12>},
    {"palette8.bmp", false, indexed<12>},
    {"palette8_core.bmp", false, indexed<12>},
    {"five.bmp", false, five_bits},
    {"six.bmp", false, six_bits},
    {"rgb24.bmp", false, colored},
    {"rgb24_top_down.bmp", false, colored},
    {"rgb24_core.bmp", false, colored},
    {"rgb32.bmp", false, colored},
    {"rgb32_fields.bmp", false, ten_bits},
    {"rgba32.bmp", true, colored_alpha},
    {"rgba32_top_down.bmp", true, colored_alpha},
    {"runs8.bmp", false, indexed<12>},
    {"runs4.bmp", false, indexed<12>},
    {"runs8_skip.bmp", false, skipping_runs},
    {"rgb24.tga", false, colored},
    {"rgb24_top.tga", false, colored},
    {"rgb24_right.tga", false, colored},
    {"rgb24_top_right.tga", false, colored},
    {"rgba32.tga", true, colored_alpha},
    {"rgb32_no_alpha.tga", false, colored},
    {"five15.tga", false, five_bits},
    {"five16.tga", false, five_bits},
    {"grey8.tga", false, grey},
    {"grey_alpha16.tga", true, grey_alpha},
    {"palette8.tga", false, indexed<12>},
    {"palette8_first.tga", false, indexed<12>},
    {"rgb24_runs.tga", false, colored},
    {"rgba32_runs.tga", true, colored_alpha},
    {"grey8_runs.tga", false, grey},
    {"palette8_runs.tga", false, indexed<12>},
    {"plain.gif", false, indexed<12>},
    {"interlaced.gif", false, indexed<12>},
    {"transparent.gif", true, transparent_gif},
    {"two_frames.gif", false, indexed<12>},
    {"rgb8.tif", false, colored},
    {"rgb8_big_endian.tif", false, colored},
    {"rgb8_deflate.tif", false, colored},
    {"rgb16.tif", false, colored},
    {"rgba8.tif", true, colored_alpha},
    {"grey8.tif", false, grey},
    {"grey8_inverted.tif", false, grey},
    {"grey_alpha8.tif", true, grey_alpha},
    {"palette8.tif", false, indexed<12>},
};

std::string name_of(const testing::TestParamInfo<Kind>& info)
{
    std::string name = info.param.file;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

class PictureKind : public testing::TestWithParam<Kind> {};

/// The reason that loading gives, empty when it works.
std::string failure_of(const std::string& file)
{
    PixelMap map(0, 0, AbstractImage::Format24, nullptr);
    try {
        map.load(file.c_str());
        return {};
    } catch (const GLibraryException& error) {
        return error.what();
    }
}

/// The colours of the four quarters of the JPEG pictures.
const RGB_Color kQuarters[] = {{200, 30, 30}, {30, 180, 60}, {40, 80, 210}, {240, 240, 240}};

bool is_near(const RGB_Color& a, const RGB_Color& b)
{
    constexpr int kLoss = 6;
    return std::abs(a.red - b.red) <= kLoss && std::abs(a.green - b.green) <= kLoss &&
           std::abs(a.blue - b.blue) <= kLoss;
}

/// Which quarter's colour stands in the middle of each quarter of the map, row by row.
std::string quarters_of(const PixelMap& map)
{
    std::string found;
    for (const int y : {map.get_height() / 4, map.get_height() * 3 / 4})
        for (const int x : {map.get_width() / 4, map.get_width() * 3 / 4}) {
            const RGB_Color color = map.get_pixel(x, y);
            char quarter = '?';
            for (int index = 0; index < 4; ++index)
                if (is_near(color, kQuarters[index]))
                    quarter = static_cast<char>('0' + index);
            found += quarter;
        }
    return found;
}

PixelMap loaded(const std::string& name)
{
    PixelMap map(0, 0, AbstractImage::Format24, nullptr);
    map.load(data_file(name).c_str());
    return map;
}

}  // namespace

TEST_P(PictureKind, Load_GivesEveryPixel)
{
    const Kind& kind = GetParam();
    const PixelMap map = loaded(kind.file);

    ASSERT_EQ(map.get_width(), kTestWidth);
    ASSERT_EQ(map.get_height(), kTestHeight);
    EXPECT_EQ(map.get_format(), kind.alpha ? AbstractImage::Format32 : AbstractImage::Format24);
    EXPECT_TRUE(map.isValid());
    for (int y = 0; y < kTestHeight; ++y)
        for (int x = 0; x < kTestWidth; ++x)
            EXPECT_EQ(pixel_of(map, x, y), kind.pixel(x, y)) << "at " << x << ", " << y;
}

INSTANTIATE_TEST_SUITE_P(All, PictureKind, testing::ValuesIn(kKinds), name_of);

TEST(PictureFiles, MultipliedAlpha_IsTakenOut)
{
    for (const char* name : {"multiplied.tga", "rgba8_multiplied.tif"}) {
        const PixelMap map = loaded(name);
        ASSERT_EQ(map.get_format(), AbstractImage::Format32) << name;
        for (int y = 0; y < kTestHeight; ++y)
            for (int x = 0; x < kTestWidth; ++x) {
                const TestPixel pixel = pixel_of(map, x, y);
                const RGB_Color expected = test_color(x, y);
                ASSERT_EQ(pixel.alpha, test_alpha(x, y)) << name;
                if (pixel.alpha == 0)
                    continue;
                const int loss = 255 / pixel.alpha / 2 + 1;
                EXPECT_NEAR(pixel.color.red, expected.red, loss) << name << x << ", " << y;
                EXPECT_NEAR(pixel.color.green, expected.green, loss) << name << x << ", " << y;
                EXPECT_NEAR(pixel.color.blue, expected.blue, loss) << name << x << ", " << y;
            }
    }
}

TEST(PictureFiles, GifFrameWithinItsScreen_StandsAtItsPlaceAndTheRestIsClear)
{
    const PixelMap map = loaded("offset.gif");

    ASSERT_EQ(map.get_width(), kTestWidth + 4);
    ASSERT_EQ(map.get_height(), kTestHeight + 3);
    ASSERT_EQ(map.get_format(), AbstractImage::Format32);
    for (int y = 0; y < map.get_height(); ++y)
        for (int x = 0; x < map.get_width(); ++x) {
            const bool inside = x >= 2 && y >= 1 && x < kTestWidth + 2 && y < kTestHeight + 1;
            const TestPixel expected = inside ? indexed<12>(x - 2, y - 1) : TestPixel{{}, 0};
            EXPECT_EQ(pixel_of(map, x, y), expected) << "at " << x << ", " << y;
        }
}

TEST(PictureFiles, TurnedTiff_IsUpright)
{
    const PixelMap down = loaded("turned3.tif");
    ASSERT_EQ(down.get_width(), kTestWidth);
    EXPECT_EQ(down.get_pixel(0, 0), test_color(6, 4));
    EXPECT_EQ(down.get_pixel(5, 1), test_color(1, 3));

    const PixelMap right = loaded("turned6.tif");
    ASSERT_EQ(right.get_width(), kTestHeight);
    ASSERT_EQ(right.get_height(), kTestWidth);
    EXPECT_EQ(right.get_pixel(4, 0), test_color(0, 0));
    EXPECT_EQ(right.get_pixel(4, 6), test_color(6, 0));

    const PixelMap left = loaded("turned8.tif");
    ASSERT_EQ(left.get_width(), kTestHeight);
    EXPECT_EQ(left.get_pixel(0, 6), test_color(0, 0));
    EXPECT_EQ(left.get_pixel(0, 0), test_color(6, 0));
}

TEST(PictureFiles, Jpeg_OfEachColorSpaceHasItsColors)
{
    for (const char* name : {"baseline.jpg", "progressive.jpg", "cmyk.jpg", "ycck.jpg"}) {
        const PixelMap map = loaded(name);
        EXPECT_EQ(map.get_width(), 32) << name;
        EXPECT_EQ(map.get_height(), 24) << name;
        EXPECT_EQ(map.get_format(), AbstractImage::Format24) << name;
        EXPECT_EQ(quarters_of(map), "0123") << name;
    }
}

TEST(PictureFiles, GreyJpeg_HasEqualParts)
{
    const PixelMap map = loaded("grey.jpg");

    const RGB_Color color = map.get_pixel(4, 4);
    EXPECT_EQ(color.red, color.green);
    EXPECT_EQ(color.red, color.blue);
    EXPECT_GT(map.get_pixel(28, 20).red, color.red);
}

TEST(PictureFiles, TurnedJpeg_IsUpright)
{
    const char* const expected[] = {"1032", "3210", "2301", "0213", "2031", "3120", "1302"};
    for (int orientation = 2; orientation <= 8; ++orientation) {
        const PixelMap map = loaded("turned" + std::to_string(orientation) + ".jpg");
        EXPECT_EQ(map.get_width(), orientation >= 5 ? 24 : 32);
        EXPECT_EQ(quarters_of(map), expected[orientation - 2]) << orientation;
    }
}

TEST(PictureFiles, MissingFile_FailsWithItsNameAndKeepsTheMap)
{
    PixelMap map = test_map(AbstractImage::Format24);
    const PixelMap before = map;

    EXPECT_THROW(map.load("no/such/picture.png"), GLibraryException);
    EXPECT_TRUE(same_pixels(map, before));
    EXPECT_NE(failure_of("no/such/picture.png").find("no/such/picture.png"), std::string::npos);
}

TEST(PictureFiles, CutFile_SaysThatItEndsTooEarly)
{
    const TemporaryFolder folder;
    for (const char* name : {"rgb8.png", "baseline.jpg", "rgb24.bmp", "rgb24.tga", "plain.gif"}) {
        std::vector<unsigned char> bytes = data_bytes(name);
        bytes.resize(bytes.size() - 8);
        const std::string file = folder.file(name);
        write_file(file, bytes);

        const std::string reason = failure_of(file);

        EXPECT_NE(reason.find("ends too early"), std::string::npos) << reason;
        EXPECT_NE(reason.find(name), std::string::npos) << reason;
    }
}

TEST(PictureFiles, Content_DecidesOverTheName)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("wrong.tga");
    write_file(file, data_bytes("rgba8.png"));
    PixelMap map(0, 0, AbstractImage::Format24, nullptr);

    map.load(file.c_str());

    EXPECT_EQ(pixel_of(map, 3, 2), colored_alpha(3, 2));
}

TEST(PictureFiles, TgaUnderAnotherName_IsNoPicture)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("picture.dat");
    write_file(file, data_bytes("rgb24.tga"));

    EXPECT_NE(failure_of(file).find("no picture of a known format"), std::string::npos);
}

TEST(PictureFiles, NameOutsideAscii_IsFound)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("B\xc3\xa4r \xe7\x86\x8a.png");
    write_file(file, data_bytes("rgb8.png"));

    EXPECT_EQ(failure_of(file), "");
}
