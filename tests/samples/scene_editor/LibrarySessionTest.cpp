#include "scene_editor/core/LibrarySession.h"

#include "SampleLibrary.h"
#include "odb/ODB_Mediator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

using editor::DirectoryPath;
using editor::EntryRows;
using editor::LibraryOpened;
using editor::LibraryRefused;
using editor::LibrarySession;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::vector<std::string> all_rows(LibrarySession& session, const DirectoryPath& path)
{
    session.begin_listing(1, path);
    EntryRows rows;
    while (session.is_listing())
        rows.append(session.next_rows(2).rows);
    std::vector<std::string> names;
    for (const EntryRows::Id id : rows.shown())
        names.push_back(std::string(rows.name(id)) + ":" + std::string(rows.class_name(id)));
    return names;
}

std::string refusal(LibrarySession& session, const std::string& file)
{
    const editor::LibraryResult result = session.open(file);
    const auto* const refused = std::get_if<LibraryRefused>(&result);
    return refused != nullptr ? refused->reason : "it was opened";
}

}  // namespace

TEST(LibrarySession, Listing_GivesDirectoriesThenEntriesByNameWithTheirClasses)
{
    const SampleLibrary library;
    LibrarySession session;
    const editor::LibraryResult result = session.open(library.file());

    ASSERT_TRUE(std::holds_alternative<LibraryOpened>(result));
    EXPECT_TRUE(std::get<LibraryOpened>(result).is_writable);
    EXPECT_THAT(all_rows(session, {}), ElementsAre("deep:", "Plain:", "root a:PixelMap",
                                                   "root b:PixelMap", "Root C:PixelMap"));
    EXPECT_THAT(all_rows(session, {"deep", "er"}), ElementsAre("one:PixelMap", "two:PixelMap"));
    EXPECT_THAT(all_rows(session, {"no such"}), ElementsAre());
}

TEST(LibrarySession, EmptyDirectory_HasOneBatchThatIsTheLast)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    session.begin_listing(9, {"no such"});

    ASSERT_TRUE(session.is_listing());
    const editor::RowsListed rows = session.next_rows(10);
    EXPECT_EQ(rows.listing, 9U);
    EXPECT_TRUE(rows.is_last);
    EXPECT_FALSE(session.is_listing());
}

TEST(LibrarySession, Directories_TellWhetherMoreLieBelow)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    const editor::DirectoriesListed listed = session.list_directories({});

    ASSERT_EQ(listed.directories.size(), 2U);
    EXPECT_EQ(listed.directories[0].name, "deep");
    EXPECT_TRUE(listed.directories[0].has_subdirectories);
    EXPECT_EQ(listed.directories[1].name, "Plain");
    EXPECT_FALSE(listed.directories[1].has_subdirectories);
}

TEST(LibrarySession, Open_MissingFile_IsRefusedByNameAndNotMade)
{
    const SampleLibrary library;
    LibrarySession session;
    const std::string file = library.beside("missing.odb");

    EXPECT_THAT(refusal(session, file), HasSubstr("missing.odb"));
    EXPECT_FALSE(std::ifstream(file).good());
    EXPECT_FALSE(session.is_open());
}

TEST(LibrarySession, Open_NoLibrary_IsRefusedAndKept)
{
    const SampleLibrary library;
    const std::string file = library.beside("text.odb");
    std::ofstream(file) << "just a text";
    LibrarySession session;

    EXPECT_THAT(refusal(session, file), HasSubstr("text.odb"));
    std::string first_word;
    std::ifstream(file) >> first_word;
    EXPECT_EQ(first_word, "just");
}

TEST(LibrarySession, Open_ResourceFileOfAnotherKind_IsRefusedAndKeepsItsKind)
{
    const SampleLibrary library;
    const std::string file = library.beside("other.res");
    {
        ResourceFile other(file.c_str(), GIO::OpenReadWrite);
        other.set_type("some other kind");
        PixelMap content(2, 2, AbstractImage::Format24, nullptr);
        other.put(&content, "one", "a type", false);
    }
    LibrarySession session;

    EXPECT_THAT(refusal(session, file), HasSubstr("another kind"));
    EXPECT_EQ(ResourceFile(file.c_str(), GIO::OpenRead).get_type(), "some other kind");
}

TEST(LibrarySession, Icon_IsFittedAndNullWhereThereIsNone)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));

    const auto wide = session.load_icon({}, "root a", 32);
    ASSERT_NE(wide, nullptr);
    EXPECT_EQ(wide->get_width(), 32);
    EXPECT_EQ(wide->get_height(), 16);
    const auto small = session.load_icon({}, "Root C", 32);
    ASSERT_NE(small, nullptr);
    EXPECT_EQ(small->get_width(), 16);
    EXPECT_EQ(session.load_icon({}, "root b", 32), nullptr);
    EXPECT_EQ(session.load_icon({}, "no such", 32), nullptr);
}

TEST(LibrarySession, Preview_OfAPicture_IsThePictureItself)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    const editor::PreviewLoaded preview = session.load_preview({}, "root a", 64).preview;

    ASSERT_NE(preview.picture, nullptr);
    EXPECT_EQ(preview.picture->get_width(), 200);
    ASSERT_NE(preview.smaller, nullptr);
    EXPECT_EQ(preview.smaller->get_width(), 64);
    EXPECT_EQ(preview.class_name, "PixelMap");
    EXPECT_EQ(preview.caption, "200 \xC3\x97 100 pixels");
}

TEST(LibrarySession, Preview_OfAMissingEntry_SaysSo)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));

    EXPECT_EQ(session.load_preview({}, "no such", 64).preview.picture, nullptr);
    EXPECT_THAT(session.load_preview({}, "no such", 64).preview.caption, HasSubstr("not there"));
}

TEST(LibrarySession, Rename_IsCommittedWithTheIcon)
{
    const SampleLibrary library;
    {
        LibrarySession session;
        static_cast<void>(session.open(library.file()));
        EXPECT_EQ(session.rename({}, "root a", "root z"), std::nullopt);
    }
    ObjectDatabase database(library.file().c_str(), GIO::OpenRead);
    EXPECT_FALSE(database.object_exists("root a"));
    ASSERT_NE(database.get_mediator("root z"), nullptr);
    EXPECT_TRUE(database.get_mediator("root z")->has_icon());
}

TEST(LibrarySession, Rename_ToAnEmptyOrUsedName_IsRefusedAndChangesNothing)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));

    EXPECT_THAT(session.rename({}, "root a", "").value_or(""), HasSubstr("name"));
    EXPECT_THAT(session.rename({}, "root a", "root b").value_or(""), HasSubstr("already"));
    EXPECT_THAT(session.rename({}, "gone", "x").value_or(""), HasSubstr("not there"));
    EXPECT_EQ(all_rows(session, {}).size(), 5U);
}

TEST(LibrarySession, Remove_TakesAllNamedEntries)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));

    EXPECT_EQ(session.remove({}, {{0, "root a"}, {1, "Root C"}}), std::nullopt);
    EXPECT_THAT(all_rows(session, {}), ElementsAre("deep:", "Plain:", "root b:PixelMap"));
}

TEST(LibrarySession, NothingOpen_ChangesAreRefused)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    session.close();

    EXPECT_THAT(session.rename({}, "root a", "b").value_or(""), HasSubstr("No library"));
    EXPECT_THAT(session.remove({}, {{0, "root a"}}).value_or(""), HasSubstr("No library"));
}
