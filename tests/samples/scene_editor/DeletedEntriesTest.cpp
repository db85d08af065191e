#include "scene_editor/core/DeletedEntries.h"

#include "SampleLibrary.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "scene_editor/core/LibraryPaths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

using namespace editor;
using testing::ElementsAre;

namespace {

bool go_on(std::size_t, std::size_t)
{
    return true;
}

std::vector<std::string> names_in(ObjectDatabase& database, const DirectoryPath& path)
{
    GStringCollection found;
    database.get_names(resource_path(path), found, false);
    std::vector<std::string> names;
    for (long i = 0; i < found.count; ++i)
        names.emplace_back(found.at(i));
    return names;
}

std::vector<std::string> names_of(const std::vector<ListedEntry>& entries)
{
    std::vector<std::string> names;
    for (const ListedEntry& entry : entries)
        names.push_back(entry.name);
    return names;
}

/// A sample library that is open for changes.
class DeletedEntriesTest : public testing::Test {
protected:
    SampleLibrary library_;
    ObjectDatabase database_{library_.file().c_str(), GIO::OpenReadWrite};
};

}  // namespace

TEST_F(DeletedEntriesTest, Deleted_IsGoneAndComesBackWithAllThatBelongsToIt)
{
    database_.get_mediator("root a")->set_attribute(new ODB_TextDescriptionAttribute("red"), true);

    const auto deleted = delete_entries(database_, {}, {{0, "root a"}, {1, "gone"}}, go_on);
    EXPECT_THAT(names_of(deleted), ElementsAre("root a", "gone"));  // neither is there now
    EXPECT_FALSE(database_.object_exists("root a"));
    EXPECT_EQ(deletions_kept(database_), 1U);

    const RestoredEntries restored = restore_last_deletion(database_, go_on);
    EXPECT_EQ(restored.count, 1U);
    EXPECT_EQ(restored.name, "root a");
    EXPECT_THAT(restored.renamed, testing::IsEmpty());
    ODB_Mediator* const mediator = database_.get_mediator("root a");
    ASSERT_NE(mediator, nullptr);
    EXPECT_TRUE(mediator->has_icon());
    const zmr::OwnedObject<> text(
        mediator->get_attribute(&ODB_TextDescriptionAttribute::metaclass_));
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(static_cast<ODB_TextDescriptionAttribute&>(*text).get_text(), "red");
    const zmr::OwnedObject<> object(mediator->get_object());
    EXPECT_NE(zmr::class_cast<PixelMap>(object.get()), nullptr);
    EXPECT_EQ(deletions_kept(database_), 0U);
}

TEST_F(DeletedEntriesTest, Deletions_AreTakenBackFromTheLastToTheFirst)
{
    static_cast<void>(delete_entries(database_, {"deep", "er"}, {{0, "one"}, {1, "two"}}, go_on));
    static_cast<void>(delete_entries(database_, {"Plain"}, {{0, "three"}}, go_on));
    EXPECT_EQ(deletions_kept(database_), 2U);

    RestoredEntries restored = restore_last_deletion(database_, go_on);
    EXPECT_THAT(restored.path, ElementsAre("Plain"));
    restored = restore_last_deletion(database_, go_on);
    EXPECT_EQ(restored.count, 2U);
    EXPECT_THAT(restored.path, ElementsAre("deep", "er"));
    EXPECT_THAT(names_in(database_, {"deep", "er"}), ElementsAre("one", "two"));
    EXPECT_EQ(restore_last_deletion(database_, go_on).count, 0U);
}

TEST_F(DeletedEntriesTest, Restored_OntoANameInUse_GetsANumber)
{
    static_cast<void>(delete_entries(database_, {}, {{0, "root a"}}, go_on));
    add_picture(database_, GResourcePath(), "root a", 4, 4, false);

    const RestoredEntries restored = restore_last_deletion(database_, go_on);
    EXPECT_THAT(restored.renamed, ElementsAre("root a 2"));
    EXPECT_THAT(names_in(database_, {}), ElementsAre("Root C", "root a", "root a 2", "root b"));
}

TEST_F(DeletedEntriesTest, ReopenedLibrary_StillTakesItBack)
{
    static_cast<void>(delete_entries(database_, {}, {{0, "root a"}}, go_on));
    database_.close();
    database_.open(library_.file().c_str(), GIO::OpenReadWrite);

    EXPECT_EQ(restore_last_deletion(database_, go_on).name, "root a");
}

TEST_F(DeletedEntriesTest, ExternalObject_KeepsItsFileUntilTheDeletedAreRemovedForGood)
{
    const PixelMap picture(4, 4, AbstractImage::Format24, nullptr);
    database_.append_object(&picture, GString("outside"), new ODB_ExternalObject("outside.lob"));
    const std::string file = library_.beside("outside.lob");
    ASSERT_TRUE(std::ifstream(file).good());

    static_cast<void>(delete_entries(database_, {}, {{0, "outside"}}, go_on));
    EXPECT_TRUE(std::ifstream(file).good());
    static_cast<void>(restore_last_deletion(database_, go_on));
    const zmr::OwnedObject<> object(database_.get_object("outside"));
    EXPECT_NE(object, nullptr);

    static_cast<void>(delete_entries(database_, {}, {{0, "outside"}}, go_on));
    EXPECT_TRUE(empty_deleted(database_, go_on));
    EXPECT_FALSE(std::ifstream(file).good());
    EXPECT_EQ(deletions_kept(database_), 0U);
}

TEST_F(DeletedEntriesTest, ReferenceToADeletedEntry_HasItsObjectAgainWhenThatIsBack)
{
    database_.append_object(nullptr, GString("again"),
                            new ODB_ReferenceToObject(database_, mediator_name({}, "root a")));
    static_cast<void>(delete_entries(database_, {}, {{0, "root a"}}, go_on));
    EXPECT_EQ(database_.get_object("again"), nullptr);

    static_cast<void>(restore_last_deletion(database_, go_on));
    const zmr::OwnedObject<> object(database_.get_object("again"));
    EXPECT_NE(object, nullptr);
}

TEST_F(DeletedEntriesTest, Stopped_LeavesTheRestWhereItIs)
{
    const auto stop_at_one = [](std::size_t done, std::size_t) { return done < 1; };
    const auto deleted =
        delete_entries(database_, {}, {{0, "root a"}, {1, "root b"}, {2, "Root C"}}, stop_at_one);

    EXPECT_THAT(names_of(deleted), ElementsAre("root a"));
    EXPECT_THAT(names_in(database_, {}), ElementsAre("Root C", "root b"));
}

TEST_F(DeletedEntriesTest, Steps_AreToldWithTheirNumber)
{
    std::vector<std::size_t> told;
    const auto note = [&told](std::size_t done, std::size_t total) {
        told.push_back(10 * done + total);
        return true;
    };
    static_cast<void>(delete_entries(database_, {}, {{0, "root a"}, {1, "root b"}}, note));

    EXPECT_THAT(told, ElementsAre(2, 12));
}
