#include "TestPictures.h"

#include "foundation/GException.h"
#include "foundation/mpstream.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<unsigned char> written(PixelMap& map)
{
    ompstream out;
    map.write(out);
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

}  // namespace

TEST(PixelMap, NewMap_IsBlackAndTransparentWhereItCan)
{
    const PixelMap plain(3, 2, AbstractImage::Format24, nullptr);
    const PixelMap clear(3, 2, AbstractImage::Format32, nullptr);

    EXPECT_EQ(pixel_of(plain, 2, 1), (TestPixel{RGB_Color(), 255}));
    EXPECT_EQ(pixel_of(clear, 2, 1), (TestPixel{RGB_Color(), 0}));
    EXPECT_EQ(clear.get_format(), 6);
    EXPECT_EQ(plain.get_format(), 2);
    EXPECT_TRUE(plain.isValid());
}

TEST(PixelMap, EmptyMap_HasNoPixelsAndIsNotValid)
{
    const PixelMap map(0, 0, AbstractImage::Format24, nullptr);

    EXPECT_EQ(map.get_width(), 0);
    EXPECT_EQ(map.get_height(), 0);
    EXPECT_FALSE(map.isValid());
    EXPECT_EQ(map.get_pixel(0, 0), RGB_Color());
}

TEST(PixelMap, Construction_OfImpossibleSizeOrFormatThrows)
{
    const auto format = AbstractImage::Format24;
    EXPECT_THROW(PixelMap(-1, 1, format, nullptr), GLibraryException);
    EXPECT_THROW(PixelMap(1 << 20, 1 << 20, format, nullptr), GLibraryException);
    EXPECT_THROW(PixelMap(1, 1, static_cast<AbstractImage::MapFormat>(3), nullptr),
                 GLibraryException);
}

TEST(PixelMap, Palette_IsCopied)
{
    GPalette palette;
    palette.add(RGB_Color(1, 2, 3));
    const PixelMap map(1, 1, AbstractImage::Format24, &palette);
    palette.add(RGB_Color());

    ASSERT_NE(map.get_palette(), nullptr);
    EXPECT_EQ(map.get_palette()->size(), 1u);
    EXPECT_EQ(map.get_palette()->at(0), RGB_Color(1, 2, 3));
}

TEST(PixelMap, SetPixel_SetsColorAndFullAlpha)
{
    PixelMap map(2, 2, AbstractImage::Format32, nullptr);
    map.set_pixel(1, 0, RGB_Color(10, 20, 30));

    EXPECT_EQ(pixel_of(map, 1, 0), (TestPixel{RGB_Color(10, 20, 30), 255}));
    EXPECT_EQ(pixel_of(map, 0, 0), (TestPixel{RGB_Color(), 0}));
}

TEST(PixelMap, SetPixel_OutsideTheMapDoesNothing)
{
    PixelMap map = test_map(AbstractImage::Format32);
    const PixelMap before = map;
    for (const int outside : {-1, 7, 1 << 30}) {
        map.set_pixel(outside, 0, RGB_Color(1, 1, 1));
        map.set_alpha(outside, 0, 9);
    }
    map.set_pixel(0, 5, RGB_Color(1, 1, 1));

    EXPECT_TRUE(same_pixels(map, before));
}

TEST(PixelMap, Lines_ComeBackAndLinesOutsideAreIgnored)
{
    PixelMap map(2, 2, AbstractImage::Format24, nullptr);
    const RGB_Color line[] = {RGB_Color(1, 2, 3), RGB_Color(4, 5, 6)};
    ASSERT_TRUE(map.start_write());
    map.set_color_line(1, line);
    map.set_color_line(2, line);
    map.stop_write();
    RGB_Color read[2];
    ASSERT_TRUE(map.start_read());
    map.get_color_line(1, read);
    map.get_color_line(-1, read);
    map.stop_read();

    EXPECT_EQ(read[0], line[0]);
    EXPECT_EQ(read[1], line[1]);
    EXPECT_EQ(map.get_pixel(0, 0), RGB_Color());
}

TEST(PixelMap, Resize_KeepsTheUpperLeftPart)
{
    PixelMap map = test_map(AbstractImage::Format32);
    map.resize(3, 9);

    EXPECT_EQ(map.get_width(), 3);
    EXPECT_EQ(map.get_height(), 9);
    EXPECT_EQ(pixel_of(map, 2, 4), (TestPixel{test_color(2, 4), test_alpha(2, 4)}));
    EXPECT_EQ(pixel_of(map, 2, 5), (TestPixel{RGB_Color(), 0}));
}

TEST(PixelMap, Resize_OfEmptyMapAndToEmptyMap)
{
    PixelMap map(0, 0, AbstractImage::Format24, nullptr);
    map.resize(2, 2);
    EXPECT_EQ(map.get_width(), 2);
    EXPECT_TRUE(map.isValid());

    map.resize(0, 0);

    EXPECT_EQ(map.get_height(), 0);
    EXPECT_FALSE(map.isValid());
}

TEST(PixelMap, Copy_IsIndependent)
{
    PixelMap map = test_map(AbstractImage::Format24);
    PixelMap copy(map);
    map.set_pixel(0, 0, RGB_Color(9, 9, 9));

    EXPECT_EQ(copy.get_pixel(0, 0), test_color(0, 0));
    copy = map;
    EXPECT_TRUE(same_pixels(copy, map));
}

TEST(PixelMap, Casts_ReachTheStreamableOnly)
{
    PixelMap map(1, 1, AbstractImage::Format24, nullptr);
    GStreamable& object = map;

    EXPECT_STREQ(object.getClassName(), "PixelMap");
    EXPECT_EQ(zmr::class_cast<PixelMap>(&object), &map);
    EXPECT_NE(GMetaClass::FindByName("PixelMap"), nullptr);
}

TEST(PixelMap, Clone_HasTheSamePixels)
{
    PixelMap map = test_map(AbstractImage::Format32);

    auto* clone = zmr::class_cast<PixelMap>(map.clone(true));

    ASSERT_NE(clone, nullptr);
    EXPECT_TRUE(same_pixels(*clone, map));
    GStreamable::Destroy(clone);
}

TEST(PixelMap, Stream_GivesBothFormatsBackExactly)
{
    for (const auto format : {AbstractImage::Format24, AbstractImage::Format32}) {
        PixelMap map = test_map(format);
        ompstream out;
        out.writePointer(&map);
        impstream in(out.bytes());

        auto* read = in.read_pointer<PixelMap>();

        ASSERT_NE(read, nullptr);
        EXPECT_TRUE(same_pixels(*read, map));
        EXPECT_TRUE(read->isValid());
        GStreamable::Destroy(read);
    }
}

TEST(PixelMap, Stream_OfEmptyMapGivesAnEmptyMap)
{
    PixelMap map(0, 0, AbstractImage::Format24, nullptr);
    const auto bytes = written(map);
    impstream in(bytes);
    PixelMap read = test_map(AbstractImage::Format32);

    read.read(in);

    EXPECT_EQ(read.get_width(), 0);
    EXPECT_FALSE(read.isValid());
}

TEST(PixelMap, Stream_BytesAreTheDocumentedOnes)
{
    PixelMap map(2, 1, AbstractImage::Format32, nullptr);
    map.set_pixel(0, 0, RGB_Color(1, 2, 3));
    map.set_pixel(1, 0, RGB_Color(4, 5, 6));
    map.set_alpha(1, 0, 7);

    const std::vector<unsigned char> expected = {1,             // version
                                                 0,             // base part
                                                 2, 0, 0, 0,    // width
                                                 1, 0, 0, 0,    // height
                                                 6,             // format
                                                 3, 2, 1, 255,  // first pixel
                                                 6, 5, 4, 7};   // second pixel
    EXPECT_EQ(written(map), expected);
}

TEST(PixelMap, Stream_CutAnywhereThrowsAndKeepsTheMap)
{
    PixelMap map = test_map(AbstractImage::Format32);
    const auto bytes = written(map);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const std::vector<unsigned char> cut(bytes.begin(),
                                             bytes.begin() + static_cast<std::ptrdiff_t>(length));
        impstream in(cut);
        PixelMap read(1, 1, AbstractImage::Format24, nullptr);

        EXPECT_THROW(read.read(in), GStreamException) << length;
        EXPECT_EQ(read.get_width(), 1);
    }
}

TEST(PixelMap, Stream_WithFalseSizeOrFormatThrows)
{
    PixelMap map = test_map(AbstractImage::Format32);
    const auto bytes = written(map);
    const auto throws_with = [&](std::size_t place, std::vector<unsigned char> patch) {
        auto changed = bytes;
        std::copy(patch.begin(), patch.end(), changed.begin() + static_cast<std::ptrdiff_t>(place));
        impstream in(changed);
        PixelMap read(0, 0, AbstractImage::Format24, nullptr);
        EXPECT_THROW(read.read(in), GLibraryException) << place;
    };
    throws_with(0, {2});                       // version
    throws_with(2, {0xff, 0xff, 0xff, 0xff});  // width -1
    throws_with(2, {0, 0, 0, 0x10, 1});        // 2^28 by 1: more than is there
    throws_with(2, {0, 0, 1, 0, 0, 0, 1, 0});  // 2^32 pixels
    throws_with(10, {3});                      // format
}
