#include "TestPictures.h"

#include "foundation/GException.h"
#include "foundation/fpstream.h"
#include "foundation/mpstream.h"
#include "graphics/ImageReaderWriterList.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

struct Found {
    std::unique_ptr<FileImageInfo> info;
    std::unique_ptr<AbstractImageReaderWriter> reader;
};

Found look_at(ipstream& in)
{
    Found found;
    AbstractImageReaderWriter* reader = nullptr;
    found.info.reset(AbstractImageReaderWriter::ReadInfo(in, &reader));
    found.reader.reset(reader);
    return found;
}

}  // namespace

TEST(ImageReaderWriter, ReadInfo_TellsTheHeadAndGivesAReaderThatReads)
{
    ifpstream in(data_file("rgba8.png").c_str());
    ASSERT_TRUE(in.good());

    const Found found = look_at(in);

    ASSERT_NE(found.info, nullptr);
    EXPECT_EQ(found.info->width, kTestWidth);
    EXPECT_EQ(found.info->height, kTestHeight);
    EXPECT_EQ(found.info->format, AbstractImage::Format32);
    EXPECT_EQ(found.info->format_name, "PNG");
    ASSERT_NE(found.reader, nullptr);
    PixelMap map(0, 0, AbstractImage::Format24, nullptr);
    found.reader->read_image(in, map);
    EXPECT_EQ(pixel_of(map, 4, 3), (TestPixel{test_color(4, 3), test_alpha(4, 3)}));
    EXPECT_EQ(found.reader->get_filter().get_display_string(), "PNG (*.png)");
}

TEST(ImageReaderWriter, ReadInfo_KnowsEveryFormatAndTurnedSizes)
{
    const std::pair<const char*, const char*> expected[] = {{"rgb24.bmp", "BMP"},
                                                            {"rgb24.tga", "TGA"},
                                                            {"plain.gif", "GIF"},
                                                            {"rgb8.tif", "TIFF"},
                                                            {"turned6.jpg", "JPEG"}};
    for (const auto& [file, format] : expected) {
        ifpstream in(data_file(file).c_str());
        const Found found = look_at(in);
        ASSERT_NE(found.info, nullptr) << file;
        EXPECT_EQ(found.info->format_name, format);
    }
    ifpstream in(data_file("turned6.jpg").c_str());
    const Found turned = look_at(in);
    EXPECT_EQ(turned.info->width, 24);
    EXPECT_EQ(turned.info->height, 32);
}

TEST(ImageReaderWriter, ReadInfo_OfAnotherOrDamagedFileIsNull)
{
    std::vector<unsigned char> bytes = data_bytes("rgb8.png");
    bytes.resize(bytes.size() / 2);
    const std::vector<unsigned char> contents[] = {{}, {1, 2, 3}, bytes};
    for (const auto& content : contents) {
        impstream in(content);
        const Found found = look_at(in);
        EXPECT_EQ(found.info, nullptr);
        EXPECT_EQ(found.reader, nullptr);
    }
}

TEST(ImageReaderWriter, ReadInfo_TakesANullReader)
{
    ifpstream in(data_file("rgb8.png").c_str());

    const std::unique_ptr<FileImageInfo> info(AbstractImageReaderWriter::ReadInfo(in, nullptr));

    EXPECT_NE(info, nullptr);
}

TEST(ImageReaderWriter, ReadImage_OfDamagedPictureKeepsTheMap)
{
    std::vector<unsigned char> bytes = data_bytes("rgb8.png");
    impstream whole(bytes);
    const Found found = look_at(whole);
    bytes.resize(bytes.size() - 20);
    impstream in(bytes);
    PixelMap map = test_map(AbstractImage::Format32);
    const PixelMap before = map;

    EXPECT_THROW(found.reader->read_image(in, map), GLibraryException);
    EXPECT_TRUE(same_pixels(map, before));
}

TEST(ImageReaderWriter, GetAllInfo_ListsReadersAndWritersInOrder)
{
    const auto names = [](unsigned mode) {
        ImageReaderWriterList list;
        const int count = AbstractImageReaderWriter::GetAllInfo(list, mode, 0);
        EXPECT_EQ(count, list.count);
        std::string joined;
        for (long index = 0; index < list.count; ++index)
            joined += list.at(index)->get_filter().get_dialog_string().text;
        return joined;
    };

    EXPECT_EQ(names(AbstractImageReaderWriter::kReaders),
              "PNG (*.png)|*.png|JPEG (*.jpg;*.jpeg)|*.jpg;*.jpeg|BMP (*.bmp;*.dib)|*.bmp;*.dib|"
              "TGA (*.tga;*.targa)|*.tga;*.targa|GIF (*.gif)|*.gif|TIFF (*.tif;*.tiff)|"
              "*.tif;*.tiff|");
    EXPECT_EQ(names(AbstractImageReaderWriter::kWriters),
              "PNG (*.png)|*.png|JPEG (*.jpg;*.jpeg)|*.jpg;*.jpeg|BMP (*.bmp;*.dib)|*.bmp;*.dib|"
              "TGA (*.tga;*.targa)|*.tga;*.targa|");
}

TEST(ImageReaderWriter, WriteImage_ComesBackFromTheStream)
{
    ImageReaderWriterList writers;
    AbstractImageReaderWriter::GetAllInfo(writers, AbstractImageReaderWriter::kWriters, 0);
    const PixelMap map = test_map(AbstractImage::Format32);
    for (long index = 0; index < writers.count; ++index) {
        ompstream out;
        writers.at(index)->write_image(out, map);
        impstream in(out.bytes());
        PixelMap read(0, 0, AbstractImage::Format24, nullptr);

        writers.at(index)->read_image(in, read);

        const GString name = writers.at(index)->get_filter().get_name();
        EXPECT_EQ(read.get_width(), kTestWidth) << name.text;
        EXPECT_EQ(same_pixels(read, map), name != GString("JPEG")) << name.text;
    }
}

TEST(ImageReaderWriter, WriteImage_RefusesEmptyMapsAndReadOnlyFormats)
{
    ImageReaderWriterList all;
    AbstractImageReaderWriter::GetAllInfo(all, AbstractImageReaderWriter::kReaders, 0);
    const PixelMap empty(0, 0, AbstractImage::Format24, nullptr);
    const PixelMap map = test_map(AbstractImage::Format24);
    for (long index = 0; index < all.count; ++index) {
        ompstream out;
        EXPECT_THROW(all.at(index)->write_image(out, empty), GLibraryException);
        if (!all.at(index)->can_write()) {
            EXPECT_THROW(all.at(index)->write_image(out, map), GLibraryException);
        }
    }
}

TEST(ImageFileFilter, Texts_ComeFromNameAndPatterns)
{
    const ImageFileFilter filter("JPEG", "*.jpg;*.jpeg");

    EXPECT_EQ(filter.get_display_string(), "JPEG (*.jpg;*.jpeg)");
    EXPECT_EQ(filter.get_patterns(), "*.jpg;*.jpeg");
    EXPECT_EQ(filter.get_dialog_string(), "JPEG (*.jpg;*.jpeg)|*.jpg;*.jpeg|");
    EXPECT_EQ(filter.get_default_extension(), "jpg");
}
