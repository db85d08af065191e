#include "TestPictures.h"

#include "foundation/GException.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr unsigned char kScan[] = {0xff, 0xda};

/// Where the coded data of a JPEG starts.
std::ptrdiff_t coded_data_of(const std::vector<unsigned char>& bytes)
{
    const auto scan = std::search(bytes.begin(), bytes.end(), std::begin(kScan), std::end(kScan));
    return scan - bytes.begin() + 2 + scan[3];
}

std::string failure_of(const std::vector<unsigned char>& bytes)
{
    PixelMap map(0, 0, AbstractImage::Format24, nullptr);
    try {
        map.load(bytes);
        return {};
    } catch (const GLibraryException& error) {
        return error.what();
    }
}

}  // namespace

TEST(NativeCodecs, WideGreyTiffWithAlpha_KeepsItsAlpha)
{
    PixelMap map(0, 0, AbstractImage::Format24, nullptr);
    map.load(data_file("native/grey_alpha16.tif").c_str());

    ASSERT_EQ(map.get_width(), kTestWidth);
    for (int y = 0; y < kTestHeight; ++y)
        for (int x = 0; x < kTestWidth; ++x) {
            const unsigned char grey = test_grey(x, y);
            EXPECT_EQ(pixel_of(map, x, y), (TestPixel{{grey, grey, grey}, test_alpha(x, y)}));
        }
}

TEST(NativeCodecs, JpegWithoutPartOfItsCodedData_IsRefused)
{
    for (const char* name : {"baseline.jpg", "progressive.jpg"}) {
        std::vector<unsigned char> bytes = data_bytes(name);
        const std::ptrdiff_t start = coded_data_of(bytes);
        bytes.erase(bytes.begin() + start + 4, bytes.end() - 2);

        EXPECT_NE(failure_of(bytes).find("the JPEG data is damaged"), std::string::npos) << name;
    }
}

TEST(NativeCodecs, JpegWithBytesBehindItsEnd_IsRead)
{
    std::vector<unsigned char> bytes = data_bytes("baseline.jpg");
    bytes.insert(bytes.end(), 100, 'x');

    EXPECT_EQ(failure_of(bytes), "");
}

TEST(NativeCodecs, PngWithDamagedTextChunk_IsReadWithoutIt)
{
    // A chunk of a megabyte of zeros, as its length says, with a wrong checksum: only a warning.
    const std::vector<unsigned char> picture = data_bytes("rgb8.png");
    constexpr std::ptrdiff_t kBehindHeader = 8 + 25;
    std::vector<unsigned char> bytes(picture.begin(), picture.begin() + kBehindHeader);
    const unsigned char head[] = {0, 0x10, 0, 0, 't', 'E', 'X', 't'};
    bytes.insert(bytes.end(), std::begin(head), std::end(head));
    bytes.insert(bytes.end(), (1u << 20) + 4, 0);
    bytes.insert(bytes.end(), picture.begin() + kBehindHeader, picture.end());

    EXPECT_EQ(failure_of(bytes), "");
}
