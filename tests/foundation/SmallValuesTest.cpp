#include "foundation/Checksum.h"
#include "foundation/GException.h"
#include "foundation/GRect.h"
#include "foundation/TGSNumber.h"
#include "foundation/Vector3D.h"
#include "foundation/mpstream.h"

#include "platform/PlatformRecordsOfLane.h"

#include <gtest/gtest.h>

#include <limits>
#include <string_view>
#include <type_traits>

TEST(GRect, FromThePlatformsRectangle_TakesItsSides)
{
    RECT rectangle;
    rectangle.left = -1;
    rectangle.top = 2;
    rectangle.right = 30;
    rectangle.bottom = 40;
    const GRect converted(rectangle);

    EXPECT_EQ(converted, GRect(-1, 2, 30, 40));
    EXPECT_EQ(converted.width(), 31);
    EXPECT_EQ(converted.height(), 38);
    EXPECT_FALSE(converted.is_empty());
}

TEST(GRect, Sizes_DoNotOverflow)
{
    constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(GRect(kLow, 0, kHigh, 1).width(), 0xFFFFFFFFll);
    EXPECT_TRUE(GRect(kHigh, 0, kLow, 1).is_empty());
    EXPECT_TRUE(GRect().is_empty());
}

TEST(GRect, OldFormat_IsFourSignedWords)
{
    ompstream out;
    for (const int side : {-5, 3, 32767, -32768})
        out.writeWord(static_cast<std::uint16_t>(side));
    impstream in(out.bytes());
    GRect rectangle;
    rectangle.read_old(in);

    EXPECT_EQ(rectangle, GRect(-5, 3, 32767, -32768));
    EXPECT_EQ(in.remaining(), 0);
}

TEST(GRect, OldFormatCutShort_ChangesNothing)
{
    const unsigned char bytes[7] = {1, 0, 2, 0, 3, 0, 4};
    for (std::size_t length = 0; length <= sizeof bytes; ++length) {
        impstream in(std::span(bytes, length));
        GRect rectangle(9, 9, 9, 9);
        EXPECT_THROW(rectangle.read_old(in), GStreamException) << length;
        EXPECT_EQ(rectangle, GRect(9, 9, 9, 9));
    }
}

TEST(Vector3D, Operators_WorkByComponent)
{
    const Vector3D a{1, 2, 3};
    const Vector3D b{4, -5, 6};
    EXPECT_EQ(a + b, (Vector3D{5, -3, 9}));
    EXPECT_EQ(a - b, (Vector3D{-3, 7, -3}));
    EXPECT_EQ(-a, (Vector3D{-1, -2, -3}));
    EXPECT_EQ(a * 2, (Vector3D{2, 4, 6}));
    EXPECT_EQ(2 * a, a * 2);
    EXPECT_EQ((a * 2) / 2, a);
    EXPECT_EQ(dot(a, b), 12);
    EXPECT_EQ(cross(Vector3D{1, 0, 0}, Vector3D{0, 1, 0}), (Vector3D{0, 0, 1}));
    EXPECT_EQ(dot(cross(a, b), a), 0);
    EXPECT_EQ(Vector3D(), (Vector3D{0, 0, 0}));
}

TEST(Vector3D, Length_OfHugeComponentsIsFinite)
{
    EXPECT_DOUBLE_EQ((Vector3D{2, 3, 6}).length(), 7);
    EXPECT_DOUBLE_EQ((Vector3D{3e200, 0, 4e200}).length(), 5e200);
}

TEST(TGSNumber, ConvertsToItsFloatingPointType)
{
    const TGSNumber<double, 1> length(2.5);
    const TGSNumber<float, 1> other(1.5f);
    EXPECT_DOUBLE_EQ(length / 2, 1.25);
    EXPECT_FLOAT_EQ(other, 1.5f);
    EXPECT_DOUBLE_EQ((TGSNumber<double, 1>()), 0.0);
    EXPECT_FALSE((std::is_convertible_v<double, TGSNumber<double, 1>>));
}

TEST(Checksum, KnownValues)
{
    constexpr std::string_view kDigits = "123456789";
    EXPECT_EQ(g_mem_CRC32(kDigits.data(), 9, 0), 0xCBF43926u);
    EXPECT_EQ(g_mem_CRC32(kDigits.data(), 9), 0xCBF43926u);
    EXPECT_EQ(g_mem_CRC32("a", 1), 0xE8B7BE43u);
    EXPECT_EQ(g_mem_CRC32("", 0), 0u);
}

TEST(Checksum, Pieces_GiveTheChecksumOfTheWhole)
{
    constexpr std::string_view kDigits = "123456789";
    for (unsigned long cut = 0; cut <= 9; ++cut)
        EXPECT_EQ(g_mem_CRC32(kDigits.data() + cut, 9 - cut, g_mem_CRC32(kDigits.data(), cut)),
                  0xCBF43926u);
    EXPECT_EQ(g_mem_CRC32(nullptr, 5, 77), 77u);
}
