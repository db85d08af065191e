#include "TestPictures.h"

#include "foundation/GException.h"
#include "graphics/ImageCodecs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

namespace {

/// All pictures of data/, or those of one kind.
std::vector<std::string> pictures(const std::string& extension = {})
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(ZMR_TEST_DATA)) {
        const std::string name = entry.path().filename().string();
        if (entry.is_regular_file() && (extension.empty() || name.ends_with(extension)))
            names.push_back(name);
    }
    return names;
}

enum class Outcome { Read, Refused };

/// Loads bytes from outside. Any other outcome than these two ends the test.
Outcome outcome_of(const std::vector<unsigned char>& bytes)
{
    PixelMap map(0, 0, AbstractImage::Format24, nullptr);
    try {
        map.load(bytes);
    } catch (const GLibraryException&) {
        EXPECT_FALSE(map.isValid());
        return Outcome::Refused;
    }
    EXPECT_TRUE(map.isValid());
    return Outcome::Read;
}

std::vector<unsigned char> cut(const std::vector<unsigned char>& bytes, std::size_t length)
{
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)};
}

std::vector<unsigned char> with_bytes(std::vector<unsigned char> bytes, std::size_t place,
                                      const std::vector<unsigned char>& patch)
{
    std::copy(patch.begin(), patch.end(), bytes.begin() + static_cast<std::ptrdiff_t>(place));
    return bytes;
}

}  // namespace

TEST(DamagedPicture, CutAtEveryLength_IsRefusedOrWhole)
{
    for (const std::string& name : pictures()) {
        const auto bytes = data_bytes(name);
        ASSERT_EQ(outcome_of(bytes), Outcome::Read) << name;
        for (std::size_t length = 0; length < bytes.size(); ++length)
            static_cast<void>(outcome_of(cut(bytes, length)));
    }
}

TEST(DamagedPicture, CutInThePixels_IsRefused)
{
    for (const char* extension : {".png", ".jpg", ".gif", ".tif", ".bmp", ".tga"})
        for (const std::string& name : pictures(extension)) {
            if (name == "multiplied.tga" || name == "two_frames.gif")
                continue;  // end in data that is not needed
            const auto bytes = data_bytes(name);
            EXPECT_EQ(outcome_of(cut(bytes, bytes.size() * 3 / 4)), Outcome::Refused) << name;
        }
}

TEST(DamagedPicture, RandomBitFlips_EndInAPictureOrARefusal)
{
    std::mt19937 random(20240607);
    for (const std::string& name : pictures()) {
        const auto bytes = data_bytes(name);
        for (int round = 0; round < 60; ++round) {
            auto changed = bytes;
            const int flips = 1 + static_cast<int>(random() % 4);
            for (int flip = 0; flip < flips; ++flip)
                changed[random() % changed.size()] ^=
                    static_cast<unsigned char>(1u << (random() % 8));
            static_cast<void>(outcome_of(changed));
        }
    }
}

TEST(DamagedPicture, FlippedPngData_IsRefusedByItsChecksum)
{
    auto bytes = data_bytes("rgb8.png");
    bytes[8 + 25 + 8 + 10] ^= 1;  // within the rows

    EXPECT_EQ(outcome_of(bytes), Outcome::Refused);
}

TEST(DamagedPicture, FalseSizes_AreRefusedWithoutTheirMemory)
{
    const std::vector<unsigned char> huge = {0xff, 0xff, 0xff, 0x7f};
    const std::vector<unsigned char> large = {0, 0x40, 0, 0};  // 16,384
    const auto bmp = data_bytes("rgb24.bmp");
    EXPECT_EQ(outcome_of(with_bytes(bmp, 18, huge)), Outcome::Refused);
    EXPECT_EQ(outcome_of(with_bytes(bmp, 22, huge)), Outcome::Refused);
    EXPECT_EQ(outcome_of(with_bytes(bmp, 22, {0, 0, 0, 0x80})), Outcome::Refused);
    EXPECT_EQ(outcome_of(with_bytes(bmp, 18, {0, 0, 0, 0})), Outcome::Refused);
    const auto runs = data_bytes("runs8.bmp");
    EXPECT_EQ(outcome_of(with_bytes(with_bytes(runs, 18, large), 22, large)), Outcome::Refused);
    const auto tga = data_bytes("rgb24_runs.tga");
    EXPECT_EQ(outcome_of(with_bytes(tga, 12, {0xff, 0xff, 0xff, 0xff})), Outcome::Refused);
    const auto gif = data_bytes("plain.gif");
    EXPECT_EQ(outcome_of(with_bytes(gif, 6, {0xff, 0xff, 0xff, 0xff})), Outcome::Refused);
}

TEST(DamagedPicture, FalseSizeInPng_IsRefusedBeforeItIsDecoded)
{
    auto bytes = data_bytes("rgb8.png");
    bytes = with_bytes(bytes, 16, {0, 0, 0x40, 0, 0, 0, 0x40, 0});

    EXPECT_THROW(static_cast<void>(zmr::read_image_head(zmr::ImageKind::Png, bytes)),
                 GLibraryException);
}

TEST(DamagedPicture, FalsePlacesInTiff_AreRefused)
{
    const auto bytes = data_bytes("rgb8.tif");
    EXPECT_EQ(outcome_of(with_bytes(bytes, 4, {0xff, 0xff, 0xff, 0xff})), Outcome::Refused);
    EXPECT_EQ(outcome_of(with_bytes(bytes, 4, {0, 0, 0, 0})), Outcome::Refused);
}

TEST(DamagedPicture, BmpRunsBeyondTheRow_AreClipped)
{
    auto bytes = data_bytes("runs8_skip.bmp");
    const std::size_t runs = bytes.size() - 12;
    bytes[runs] = 255;

    PixelMap map(0, 0, AbstractImage::Format24, nullptr);
    map.load(bytes);

    EXPECT_EQ(map.get_pixel(6, 4), palette_entry(3));
    EXPECT_EQ(map.get_pixel(0, 3), palette_entry(0));
}

TEST(DamagedPicture, BytesOfNoPicture_AreRefused)
{
    EXPECT_EQ(outcome_of({}), Outcome::Refused);
    EXPECT_EQ(outcome_of({'B'}), Outcome::Refused);
    EXPECT_EQ(outcome_of(std::vector<unsigned char>(1000)), Outcome::Refused);
    EXPECT_EQ(outcome_of(std::vector<unsigned char>(1000, 0xff)), Outcome::Refused);
    const std::string text = "BM is how this letter begins, but it is no picture at all.";
    EXPECT_EQ(outcome_of({text.begin(), text.end()}), Outcome::Refused);
}
