#include "graphics/Resampling.h"
#include "graphics/RowSums.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

using zmr::PixelBuffer;

PixelBuffer random_picture(int width, int height, int channels, unsigned seed)
{
    std::mt19937 random(seed);
    PixelBuffer picture(width, height, channels);
    for (std::size_t index = 0; index < picture.size_bytes(); ++index)
        picture.data()[index] = static_cast<unsigned char>(random());
    return picture;
}

PixelBuffer flat_picture(int width, int height, const std::vector<unsigned char>& pixel)
{
    PixelBuffer picture(width, height, static_cast<int>(pixel.size()));
    for (std::size_t index = 0; index < picture.size_bytes(); ++index)
        picture.data()[index] = pixel[index % pixel.size()];
    return picture;
}

/// How much of source pixel `source` lies under pixel `index` of a side.
double overlap(int source, int index, int from, int to)
{
    const double left = std::max<double>(source, static_cast<double>(index) * from / to);
    const double right = std::min<double>(source + 1, static_cast<double>(index + 1) * from / to);
    return std::max(right - left, 0.0);
}

/// The mean over the covered area as the definition says, in doubles.
std::vector<double> area_mean(const PixelBuffer& source, int x, int y, int width, int height)
{
    std::vector<double> sum(4);
    double area = 0;
    for (int row = 0; row < source.height(); ++row)
        for (int column = 0; column < source.width(); ++column) {
            const double weight = overlap(column, x, source.width(), width) *
                                  overlap(row, y, source.height(), height);
            if (weight == 0)
                continue;
            const unsigned char* pixel = source.pixel(column, row);
            const double alpha = source.has_alpha() ? pixel[3] : 255;
            for (int part = 0; part < 3; ++part)
                sum[static_cast<std::size_t>(part)] += weight * pixel[part] * alpha;
            sum[3] += weight * alpha;
            area += weight;
        }
    for (int part = 0; part < 3; ++part)
        sum[static_cast<std::size_t>(part)] /= std::max(sum[3], 1e-9);
    sum[3] /= area;
    return sum;
}

/// The largest difference from the definition over all pixels.
double worst_of_shrinking(const PixelBuffer& source, int width, int height)
{
    const PixelBuffer result = zmr::scaled_smooth(source, width, height);
    double worst = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::vector<double> expected = area_mean(source, x, y, width, height);
            for (int part = 0; part < result.channels(); ++part)
                worst = std::max(worst, std::abs(result.pixel(x, y)[part] -
                                                 expected[static_cast<std::size_t>(part)]));
        }
    return worst;
}

}  // namespace

TEST(Resampling, Shrinking_IsTheMeanOverTheArea)
{
    for (const int channels : {3, 4}) {
        EXPECT_LE(worst_of_shrinking(random_picture(64, 48, channels, 1), 8, 6), 0.51) << channels;
        EXPECT_LE(worst_of_shrinking(random_picture(61, 47, channels, 2), 9, 46), 0.51) << channels;
        EXPECT_LE(worst_of_shrinking(random_picture(50, 3, channels, 3), 49, 1), 0.51) << channels;
        EXPECT_LE(worst_of_shrinking(random_picture(1, 200, channels, 4), 1, 3), 0.51) << channels;
    }
}

TEST(Resampling, ShrinkingManyRows_IsExactToo)
{
    EXPECT_LE(worst_of_shrinking(random_picture(5, 70000, 4, 5), 2, 1), 0.51);
    EXPECT_LE(worst_of_shrinking(random_picture(4, 70000, 3, 6), 3, 1), 0.51);
}

TEST(Resampling, FlatPictures_KeepTheirColorAtEverySize)
{
    for (const auto& pixel :
         {std::vector<unsigned char>{7, 128, 255}, std::vector<unsigned char>{200, 3, 77, 255},
          std::vector<unsigned char>{200, 3, 77, 1}, std::vector<unsigned char>{1, 254, 99, 130}}) {
        const PixelBuffer picture = flat_picture(37, 23, pixel);
        for (const int side : {1, 2, 5, 22, 23, 36, 38, 100}) {
            const PixelBuffer result = zmr::scaled_smooth(picture, side, side + 1);
            for (std::size_t index = 0; index < result.size_bytes(); ++index)
                ASSERT_EQ(result.data()[index], pixel[index % pixel.size()]) << side;
        }
    }
}

TEST(Resampling, TransparentPixels_LendNoColor)
{
    PixelBuffer picture(2, 1, 4);
    const unsigned char pixels[] = {10, 20, 30, 255, 250, 250, 250, 0};
    std::copy(std::begin(pixels), std::end(pixels), picture.data());

    const PixelBuffer result = zmr::scaled_smooth(picture, 1, 1);

    EXPECT_EQ(result.data()[0], 10);
    EXPECT_EQ(result.data()[1], 20);
    EXPECT_EQ(result.data()[2], 30);
    EXPECT_EQ(result.data()[3], 128);
}

TEST(Resampling, TransparentPicture_StaysClear)
{
    const PixelBuffer result = zmr::scaled_smooth(flat_picture(9, 9, {50, 60, 70, 0}), 4, 4);

    for (std::size_t index = 0; index < result.size_bytes(); ++index)
        EXPECT_EQ(result.data()[index], 0);
}

TEST(Resampling, FineStripes_BecomeGreyAndNotABeat)
{
    PixelBuffer picture(2048, 64, 3);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 2048; ++x)
            std::fill_n(picture.pixel(x, y), 3, static_cast<unsigned char>(x % 2 == 0 ? 0 : 254));

    const PixelBuffer result = zmr::scaled_smooth(picture, 96, 3);

    for (std::size_t index = 0; index < result.size_bytes(); ++index)
        EXPECT_NEAR(result.data()[index], 127, 6);
}

TEST(Resampling, Growing_RunsEvenlyBetweenThePixels)
{
    PixelBuffer picture(2, 1, 3);
    std::fill_n(picture.pixel(0, 0), 3, static_cast<unsigned char>(0));
    std::fill_n(picture.pixel(1, 0), 3, static_cast<unsigned char>(200));

    const PixelBuffer result = zmr::scaled_smooth(picture, 8, 2);

    const int expected[] = {0, 0, 25, 75, 125, 175, 200, 200};
    for (int x = 0; x < 8; ++x)
        EXPECT_EQ(result.pixel(x, 1)[0], expected[x]) << x;
}

TEST(Resampling, Nearest_TakesThePixelUnderTheCentre)
{
    PixelBuffer picture(4, 1, 3);
    for (int x = 0; x < 4; ++x)
        std::fill_n(picture.pixel(x, 0), 3, static_cast<unsigned char>(x));

    const PixelBuffer smaller = zmr::scaled_nearest(picture, 2, 1);
    EXPECT_EQ(smaller.pixel(0, 0)[0], 1);
    EXPECT_EQ(smaller.pixel(1, 0)[0], 3);
    const PixelBuffer larger = zmr::scaled_nearest(picture, 8, 2);
    for (int x = 0; x < 8; ++x)
        EXPECT_EQ(larger.pixel(x, 1)[0], x / 2);
}

TEST(RowSums, AllVariants_GiveTheSameNumbers)
{
    const zmr::RowSums& best = zmr::RowSums::Best();
    const zmr::RowSums& baseline = zmr::RowSums::Baseline();
    for (const int width : {1, 3, 4, 5, 513, 700})
        for (const int rows : {0, 1, 2, 3, 4, 5, 9}) {
            const PixelBuffer picture = random_picture(width, 10, 4, 7);
            const auto count = static_cast<std::size_t>(width);
            std::vector<std::uint32_t> first(count * 4);
            std::vector<std::uint32_t> second(count * 4);

            best.sum_with_alpha(picture.data(), picture.row_bytes(), rows, count, first.data());
            baseline.sum_with_alpha(picture.data(), picture.row_bytes(), rows, count,
                                    second.data());
            EXPECT_EQ(first, second) << width << " by " << rows;
            best.sum_bytes(picture.data(), picture.row_bytes(), rows, count * 4, first.data());
            baseline.sum_bytes(picture.data(), picture.row_bytes(), rows, count * 4, second.data());
            EXPECT_EQ(first, second) << width << " by " << rows;

            std::vector<float> mixed(count * 4);
            std::vector<float> expected(count * 4);
            best.combine(first.data(), second.data(), 0.25f, first.data(), 0.75f, count * 4,
                         mixed.data());
            baseline.combine(first.data(), second.data(), 0.25f, first.data(), 0.75f, count * 4,
                             expected.data());
            EXPECT_EQ(mixed, expected) << width << " by " << rows;
        }
}
