#include "scene_editor/core/LibraryTransfer.h"

#include "SampleLibrary.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "scene_editor/core/LibraryPaths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

using namespace editor;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

bool go_on(std::size_t, std::size_t)
{
    return true;
}

// A bitmap file of one pixel of 24 bits.
std::string small_bitmap()
{
    std::string bytes(58, '\0');
    bytes.replace(0, 2, "BM");
    bytes[2] = 58;
    bytes[10] = 54;  // where the pixels begin
    bytes[14] = 40;  // of the second header
    bytes[18] = 1;
    bytes[22] = 1;
    bytes[26] = 1;
    bytes[28] = 24;
    bytes[34] = 4;
    return bytes;
}

/// Two open libraries; the second is empty.
class LibraryTransferTest : public testing::Test {
protected:
    SampleLibrary library_;
    ObjectDatabase source_{library_.file().c_str(), GIO::OpenReadWrite};
    ObjectDatabase target_{library_.beside("target.odb").c_str(), GIO::OpenReadWrite};
};

}  // namespace

TEST_F(LibraryTransferTest, Copy_TakesObjectIconAndAttributes)
{
    source_.get_mediator("root a")->set_attribute(new ODB_TextDescriptionAttribute("red"), true);
    const TransferResult result =
        copy_entries(source_, {}, {{0, "root a"}, {1, "root b"}}, target_, {"into"}, go_on);

    EXPECT_EQ(result.done, 2U);
    EXPECT_THAT(result.refused, IsEmpty());
    ODB_Mediator* const copy = target_.get_mediator(mediator_name({"into"}, "root a"));
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(copy->has_icon());
    const zmr::OwnedObject<> text(copy->get_attribute(&ODB_TextDescriptionAttribute::metaclass_));
    EXPECT_NE(text, nullptr);
    const zmr::OwnedObject<> object(copy->get_object());
    EXPECT_NE(object, nullptr);
}

TEST_F(LibraryTransferTest, Copy_OntoANameInUse_ReplacesNothing)
{
    add_picture(target_, GResourcePath(), "root a", 3, 3, false);
    const TransferResult result = copy_entries(source_, {}, {{0, "root a"}}, target_, {}, go_on);

    EXPECT_THAT(result.renamed, ElementsAre("root a 2"));
    const zmr::OwnedObject<> former(target_.get_object("root a"));
    ASSERT_NE(zmr::class_cast<PixelMap>(former.get()), nullptr);
    EXPECT_EQ(zmr::class_cast<PixelMap>(former.get())->get_width(), 3);
}

TEST_F(LibraryTransferTest, CopiedReference_GoesOnStandingForTheSameEntry)
{
    source_.append_object(nullptr, GString("again"),
                          new ODB_ReferenceToObject(source_, mediator_name({}, "root a")));
    source_.get_mediator("again")->set_attribute(new ODB_TextDescriptionAttribute("own"), true);
    source_.flush();
    const TransferResult result = copy_entries(source_, {}, {{0, "again"}}, target_, {}, go_on);

    EXPECT_EQ(result.done, 1U);
    ODB_Mediator* const copy = target_.get_mediator("again");
    ASSERT_TRUE(ODB_Mediator::IsReference(copy));
    const zmr::OwnedObject<> object(copy->get_object());
    EXPECT_NE(zmr::class_cast<PixelMap>(object.get()), nullptr);
    const zmr::OwnedObject<> text(copy->get_attribute(&ODB_TextDescriptionAttribute::metaclass_));
    EXPECT_NE(text, nullptr);
}

TEST_F(LibraryTransferTest, CopyIntoTheSameLibrary_IsAnEntryOfItsOwn)
{
    ObjectDatabase other(library_.file().c_str(), GIO::OpenReadWrite);
    const TransferResult result =
        copy_entries(source_, {}, {{0, "root a"}}, other, {"Plain"}, go_on);

    EXPECT_EQ(result.done, 1U);
    EXPECT_TRUE(source_.object_exists(mediator_name({"Plain"}, "root a")));
    EXPECT_TRUE(source_.object_exists("root a"));
}

TEST_F(LibraryTransferTest, Copy_OfWhatIsGoneAndStopped_TellsAndKeepsTheRest)
{
    const auto stop_at_two = [](std::size_t done, std::size_t) { return done < 2; };
    const TransferResult result = copy_entries(
        source_, {}, {{0, "gone"}, {1, "root a"}, {2, "root b"}}, target_, {}, stop_at_two);

    EXPECT_EQ(result.done, 1U);
    EXPECT_THAT(result.refused, ElementsAre("\"gone\" is not there any more."));
    EXPECT_FALSE(target_.object_exists("root b"));
}

TEST_F(LibraryTransferTest, AddedFiles_AreObjectsWithIconsUnderFreeNames)
{
    const std::string picture = library_.beside("badge.bmp");
    std::ofstream(picture, std::ios::binary) << small_bitmap();
    const std::string text = library_.beside("notes.xyz");
    std::ofstream(text) << "no picture";

    TransferResult result = add_files(source_, {"new"}, {picture, text, picture}, go_on);

    EXPECT_EQ(result.done, 2U);
    EXPECT_THAT(result.renamed, ElementsAre("badge 2.bmp"));
    ASSERT_EQ(result.refused.size(), 1U);
    EXPECT_THAT(result.refused[0], HasSubstr("notes.xyz"));
    ODB_Mediator* const entry = source_.get_mediator(mediator_name({"new"}, "badge.bmp"));
    ASSERT_NE(entry, nullptr);
    EXPECT_TRUE(entry->has_icon());
}

TEST(LibraryTransferText, TellsWhatIsNotAsAsked)
{
    TransferResult result;
    result.done = 1;
    EXPECT_EQ(transfer_text(result, "copied"), "1 entry copied.");
    result.done = 2000;
    result.renamed = {"a 2"};
    result.refused.assign(11, "no.");
    const std::string text = transfer_text(result, "added");
    EXPECT_THAT(text, HasSubstr("2,000 entries added."));
    EXPECT_THAT(text, HasSubstr("a 2"));
    EXPECT_THAT(text, HasSubstr("and 3 more."));
}

TEST(LibraryPaths, NumberedName_PutsTheNumberInFrontOfTheExtension)
{
    EXPECT_EQ(numbered_name("ring.obj", 2), "ring 2.obj");
    EXPECT_EQ(numbered_name("ring", 3), "ring 3");
    EXPECT_EQ(numbered_name(".hidden", 2), ".hidden 2");
    EXPECT_EQ(numbered_name("Version 1.234567", 2), "Version 1.234567 2");
}
