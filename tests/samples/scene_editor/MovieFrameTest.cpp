#include "scene_editor/core/MovieFrame.h"

#include <gtest/gtest.h>

#include <random>

using namespace editor;

namespace {

using Bytes = std::vector<unsigned char>;

void put(Bytes& bytes, std::uint32_t value, int count)
{
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

Bytes header(std::int32_t width, std::int32_t height, std::uint32_t bits,
             std::uint32_t compression = 0, std::uint32_t colors = 0)
{
    Bytes bytes;
    put(bytes, 40, 4);
    put(bytes, static_cast<std::uint32_t>(width), 4);
    put(bytes, static_cast<std::uint32_t>(height), 4);
    put(bytes, 1, 2);
    put(bytes, bits, 2);
    put(bytes, compression, 4);
    for (int i = 0; i < 3; ++i)
        put(bytes, 0, 4);
    put(bytes, colors, 4);
    put(bytes, 0, 4);
    return bytes;
}

}  // namespace

TEST(MovieFrame, FrameOf24Bits_HasItsLowestRowFirstAndPaddedRows)
{
    const auto form = read_frame_form(header(1, 2, 24));
    ASSERT_TRUE(form);
    EXPECT_EQ(frame_bytes(*form), 8U);
    const Bytes bytes{1, 2, 3, 0, 4, 5, 6, 0};
    FramePicture picture;

    ASSERT_TRUE(convert_frame(*form, bytes, picture));
    EXPECT_EQ(picture.width, 1);
    EXPECT_EQ(picture.height, 2);
    EXPECT_EQ(picture.pixels, (std::vector<std::uint32_t>{0x060504, 0x030201}));
}

TEST(MovieFrame, NegativeHeight_HasItsTopRowFirst)
{
    const auto form = read_frame_form(header(1, -2, 32));
    ASSERT_TRUE(form);
    const Bytes bytes{1, 2, 3, 0, 4, 5, 6, 0};
    FramePicture picture;

    ASSERT_TRUE(convert_frame(*form, bytes, picture));
    EXPECT_EQ(picture.pixels, (std::vector<std::uint32_t>{0x030201, 0x060504}));
}

TEST(MovieFrame, Frames8And16Bits_HaveTheirColours)
{
    Bytes with_palette = header(2, 1, 8, 0, 2);
    put(with_palette, 0x112233, 4);
    put(with_palette, 0xFF445566, 4);
    const auto indexed = read_frame_form(with_palette);
    ASSERT_TRUE(indexed);
    FramePicture picture;
    ASSERT_TRUE(convert_frame(*indexed, Bytes{1, 7, 0, 0}, picture));
    EXPECT_EQ(picture.pixels, (std::vector<std::uint32_t>{0x445566, 0}));

    const auto high = read_frame_form(header(2, 1, 16));
    ASSERT_TRUE(high);
    ASSERT_TRUE(convert_frame(*high, Bytes{0x00, 0x7C, 0x1F, 0x00}, picture));
    EXPECT_EQ(picture.pixels, (std::vector<std::uint32_t>{0xFF0000, 0x0000FF}));
}

TEST(MovieFrame, FormsThatCannotBe_AreRefused)
{
    EXPECT_FALSE(read_frame_form(Bytes(39, 0)));
    EXPECT_FALSE(read_frame_form(header(0, 4, 24)));
    EXPECT_FALSE(read_frame_form(header(4, 0, 24)));
    EXPECT_FALSE(read_frame_form(header(-4, 4, 24)));
    EXPECT_FALSE(read_frame_form(header(4, 4, 4)));
    EXPECT_FALSE(read_frame_form(header(4, 4, 24, 1)));
    EXPECT_FALSE(read_frame_form(header(INT32_MAX, INT32_MAX, 32)));
    EXPECT_FALSE(read_frame_form(header(1, INT32_MIN, 24)));
    Bytes long_header = header(4, 4, 24);
    long_header[0] = 200;
    EXPECT_FALSE(read_frame_form(long_header));
}

TEST(MovieFrame, TooFewBytes_ChangeNothing)
{
    const auto form = read_frame_form(header(3, 3, 24));
    FramePicture picture;
    picture.width = 7;

    EXPECT_FALSE(convert_frame(*form, Bytes(frame_bytes(*form) - 1), picture));
    EXPECT_EQ(picture.width, 7);
}

TEST(MovieFrame, AnyHeader_IsRefusedOrConverted)
{
    std::mt19937 random(5);
    int accepted = 0;
    for (int i = 0; i < 20'000; ++i) {
        Bytes bytes = header(static_cast<std::int32_t>(random() % 40) - 5,
                             static_cast<std::int32_t>(random() % 40) - 20,
                             8U * static_cast<std::uint32_t>(random() % 6), random() % 8 == 0);
        bytes.resize(40 + random() % 1100);
        for (std::size_t at = 40; at < bytes.size(); ++at)
            bytes[at] = static_cast<unsigned char>(random());
        bytes[random() % bytes.size()] = static_cast<unsigned char>(random());
        const auto form = read_frame_form(bytes);
        if (!form || frame_bytes(*form) > 1 << 20)
            continue;
        FramePicture picture;
        EXPECT_TRUE(convert_frame(*form, Bytes(frame_bytes(*form), 0xFF), picture));
        ++accepted;
    }
    EXPECT_GT(accepted, 1000);
}

TEST(MovieFrame, FitInto_KeepsProportionsInTheMiddle)
{
    EXPECT_EQ(fit_into(16, 12, 160, 200), (FittedArea{0, 40, 160, 120}));
    EXPECT_EQ(fit_into(16, 12, 400, 120), (FittedArea{120, 0, 160, 120}));
    EXPECT_EQ(fit_into(1000, 1, 10, 10).height, 1);
    EXPECT_EQ(fit_into(0, 12, 10, 10), FittedArea{});
    EXPECT_EQ(fit_into(4, 4, 0, 10), FittedArea{});
}
