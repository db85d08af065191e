#include "TestPictures.h"

#include "foundation/GException.h"
#include "foundation/GObjectFileFormat.h"
#include "foundation/GSortedCollection.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

GObjectFileFormat* format_of(const std::string& file)
{
    return GObjectFileFormat::Find(file.c_str());
}

}  // namespace

TEST(ImageFileFormat, EveryPicture_IsRecognisedAsPixelMap)
{
    for (const char* name :
         {"rgb8.png", "baseline.jpg", "rgb24.bmp", "rgb24.tga", "plain.gif", "rgb8.tif"}) {
        GObjectFileFormat* format = format_of(data_file(name));
        ASSERT_NE(format, nullptr) << name;
        EXPECT_EQ(format->read_object_class_name(data_file(name).c_str()), "PixelMap") << name;
    }
}

TEST(ImageFileFormat, OtherFiles_AreNotRecognised)
{
    const TemporaryFolder folder;
    write_file(folder.file("empty.tga"), {});
    write_file(folder.file("text.tga"), {'h', 'e', 'l', 'l', 'o'});

    EXPECT_EQ(format_of(folder.file("empty.tga")), nullptr);
    EXPECT_EQ(format_of(folder.file("text.tga")), nullptr);
    EXPECT_EQ(format_of(folder.file("missing.png")), nullptr);
    EXPECT_EQ(format_of(data_file("../TestPictures.cpp")), nullptr);
}

TEST(ImageFileFormat, ReadObject_GivesAMap)
{
    const std::string file = data_file("rgba8.png");

    auto* map = zmr::class_cast<PixelMap>(format_of(file)->read_object(file.c_str()));

    ASSERT_NE(map, nullptr);
    EXPECT_EQ(pixel_of(*map, 2, 2), (TestPixel{test_color(2, 2), test_alpha(2, 2)}));
    GStreamable::Destroy(map);
}

TEST(ImageFileFormat, ReadObject_OfDamagedPictureThrowsAndOfOtherFileIsNull)
{
    const TemporaryFolder folder;
    std::vector<unsigned char> bytes = data_bytes("rgb8.png");
    bytes.resize(bytes.size() - 20);
    write_file(folder.file("cut.png"), bytes);
    GObjectFileFormat* format = format_of(folder.file("cut.png"));
    ASSERT_NE(format, nullptr);

    EXPECT_THROW(format->read_object(folder.file("cut.png").c_str()), GLibraryException);
    EXPECT_EQ(format->read_object(folder.file("missing.png").c_str()), nullptr);
}

TEST(ImageFileFormat, WriteObject_WritesMapsByTheExtension)
{
    const TemporaryFolder folder;
    PixelMap map = test_map(AbstractImage::Format32);
    GSortedCollection other;
    GObjectFileFormat* format = format_of(data_file("rgb8.png"));

    EXPECT_EQ(format->write_object(folder.file("a.tga").c_str(), &map), 1);
    EXPECT_EQ(format->write_object(folder.file("a.lob").c_str(), &map), 0);
    EXPECT_EQ(format->write_object(folder.file("b.png").c_str(), &other), 0);
    EXPECT_EQ(format->write_object(folder.file("b.png").c_str(), nullptr), 0);

    PixelMap read(0, 0, AbstractImage::Format24, nullptr);
    read.load(folder.file("a.tga").c_str());
    EXPECT_TRUE(same_pixels(read, map));
}
