#include "scene_editor/core/LibrarySession.h"

#include "SampleLibrary.h"
#include "foundation/mpstream.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_MovieAttribute.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "scene_editor/core/LibraryPaths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

using editor::DirectoryPath;
using editor::EntryRows;
using editor::LibraryOpened;
using editor::LibraryRefused;
using editor::LibrarySession;
using editor::WorkDone;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

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

bool go_on(std::size_t, std::size_t)
{
    return true;
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

    const LibrarySession::Removed removed =
        session.remove({}, {{0, "root a"}, {1, "Root C"}}, go_on);
    EXPECT_EQ(removed.reason, std::nullopt);
    EXPECT_EQ(removed.entries.size(), 2U);
    EXPECT_THAT(all_rows(session, {}), ElementsAre("deep:", "Plain:", "root b:PixelMap"));
}

TEST(LibrarySession, NothingOpen_ChangesAreRefused)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    session.close();

    EXPECT_THAT(session.rename({}, "root a", "b").value_or(""), HasSubstr("No library"));
    EXPECT_THAT(session.remove({}, {{0, "root a"}}, go_on).reason.value_or(""),
                HasSubstr("No library"));
    EXPECT_THAT(session.describe({}, "root a", "x").value_or(""), HasSubstr("No library"));
    EXPECT_THAT(session.save({"x", {}}).value_or(""), HasSubstr("No library"));
    EXPECT_TRUE(std::holds_alternative<editor::ChangeRefused>(session.restore(go_on)));
    EXPECT_FALSE(session.pack(go_on).is_as_asked);
    EXPECT_FALSE(session.add({}, {"x"}, go_on).is_as_asked);
    EXPECT_FALSE(session.copy({}, {}, library.beside("other.odb"), {}, go_on).is_as_asked);
    EXPECT_FALSE(std::ifstream(library.beside("other.odb")).good());
    EXPECT_EQ(session.deletions(), 0U);
}

TEST(LibrarySession, Removed_IsHiddenAndComesBack)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    static_cast<void>(session.remove({}, {{0, "root a"}}, go_on));

    EXPECT_EQ(session.deletions(), 1U);
    EXPECT_THAT(all_rows(session, {}),
                ElementsAre("deep:", "Plain:", "root b:PixelMap", "Root C:PixelMap"));
    EXPECT_EQ(session.list_directories({}).directories.size(), 2U);
    const editor::LibraryResult result = session.restore(go_on);
    ASSERT_TRUE(std::holds_alternative<editor::EntriesRestored>(result));
    EXPECT_EQ(std::get<editor::EntriesRestored>(result).name, "root a");
    EXPECT_EQ(all_rows(session, {}).size(), 5U);
    EXPECT_EQ(session.deletions(), 0U);
}

TEST(LibrarySession, Pack_EndsWhatCouldBeTakenBackAndCutsTheFile)
{
    const SampleLibrary library(2000, 1);
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    std::vector<editor::ListedEntry> entries;
    for (editor::EntryRows::Id i = 0; i < 1999; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "entry %06u", i);
        entries.push_back({i, name});
    }
    ASSERT_EQ(session.remove({}, entries, go_on).entries.size(), entries.size());
    const auto before = std::filesystem::file_size(library.file());

    EXPECT_TRUE(session.pack(go_on).is_as_asked);
    EXPECT_LT(std::filesystem::file_size(library.file()), before / 4);
    EXPECT_EQ(session.deletions(), 0U);
    EXPECT_EQ(all_rows(session, {}).size(), 1U);
}

TEST(LibrarySession, LookAgain_FindsWhatAnotherClientPutInAndTookOut)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    static_cast<void>(all_rows(session, {}));
    EXPECT_FALSE(session.look_again());

    ObjectDatabase other(library.file().c_str(), GIO::OpenReadWrite);
    add_picture(other, GResourcePath(), "another", 2, 2, false);
    add_picture(other, GResourcePath(), "zebra", 2, 2, false);
    other.remove_object("root b");
    other.rename_object("Root C", "root d");
    const auto found = session.look_again();

    ASSERT_TRUE(found);
    EXPECT_EQ(found->listing, 1U);
    EXPECT_THAT(found->come, UnorderedElementsAre("another", "zebra", "root d"));
    EXPECT_THAT(found->gone, UnorderedElementsAre("root b", "Root C"));
    EXPECT_FALSE(found->has_other_directories);
    EXPECT_FALSE(session.look_again());
}

TEST(LibrarySession, LookAgain_TellsOfNothingElse)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    EXPECT_FALSE(session.look_again());
    static_cast<void>(all_rows(session, {"Plain"}));
    ObjectDatabase other(library.file().c_str(), GIO::OpenReadWrite);
    add_picture(other, GResourcePath(), "of the root", 2, 2, false);
    other.get_mediator(editor::mediator_name({"Plain"}, "three"))->modified();
    EXPECT_FALSE(session.look_again());
    session.begin_listing(2, {"Plain"});
    add_picture(other, editor::resource_path({"Plain"}), "new", 2, 2, false);
    EXPECT_FALSE(session.look_again());  // its rows are still to come

    while (session.is_listing())
        static_cast<void>(session.next_rows(10));
    const auto found = session.look_again();

    ASSERT_TRUE(found);
    EXPECT_EQ(found->listing, 2U);
    EXPECT_THAT(found->come, ElementsAre("new"));
    session.close();
    EXPECT_FALSE(session.look_again());
}

TEST(LibrarySession, LookAgain_TellsThatThereAreOtherDirectories)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    static_cast<void>(all_rows(session, {}));
    // What is deleted goes to a directory that nobody sees.
    ASSERT_EQ(session.remove({}, {{2, "root a"}}, go_on).entries.size(), 1U);
    const auto deleted = session.look_again();
    ASSERT_TRUE(deleted);
    EXPECT_THAT(deleted->gone, ElementsAre("root a"));
    EXPECT_FALSE(deleted->has_other_directories);

    ObjectDatabase other(library.file().c_str(), GIO::OpenReadWrite);
    add_picture(other, editor::resource_path({"newer"}), "one", 2, 2, false);
    const auto made = session.look_again();
    ASSERT_TRUE(made);
    EXPECT_TRUE(made->has_other_directories);
    EXPECT_THAT(made->come, IsEmpty());

    other.rename({editor::resource_path({"newer"}), GString(), GString()},
                 {editor::resource_path({"older"}), GString(), GString()});
    const auto renamed = session.look_again();
    ASSERT_TRUE(renamed);
    EXPECT_TRUE(renamed->has_other_directories);
}

TEST(LibrarySession, Pack_TellsHowFarItHasComeAndStopsWhenAsked)
{
    const SampleLibrary library;
    const auto file_bytes = [&library] { return std::filesystem::file_size(library.file()); };
    {
        ResourceFile file(library.file().c_str(), GIO::OpenReadWrite);
        std::string content(3 << 20, 'a');
        for (const char* const name : {"gap", "kept", "last"}) {
            impstream in(content.data(), static_cast<long>(content.size()));
            file.copy_from({GResourcePath(), GString(name), GString("raw")}, in, -1, 0);
        }
        file.remove({GResourcePath(), GString("gap"), GString("raw")});
    }
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    const auto before = file_bytes();

    const WorkDone stopped = session.pack([](std::size_t, std::size_t) { return false; });
    EXPECT_FALSE(stopped.is_as_asked);
    EXPECT_THAT(stopped.text, HasSubstr("stopped"));
    std::size_t last = 0;
    std::size_t total = 0;
    const WorkDone done = session.pack([&](std::size_t now, std::size_t all) {
        EXPECT_GE(now, last);
        EXPECT_LE(now, all);
        last = now;
        total = all;
        return true;
    });

    EXPECT_TRUE(done.is_as_asked) << done.text;
    EXPECT_GE(last, 3U << 10);  // of KiB
    EXPECT_LE(total - last, 64U);  // what of the index moves is not told
    EXPECT_LT(file_bytes(), before - (2U << 20));
    EXPECT_EQ(all_rows(session, {}).size(), 5U);
}

TEST(LibrarySession, ListingWithAFilter_GivesWhatItWantsAndAllDirectories)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    session.begin_listing(1, {}, {"PixelMap", false, "root .*"});
    EntryRows rows;
    while (session.is_listing())
        rows.append(session.next_rows(2).rows);

    EXPECT_EQ(rows.directories(), 2U);
    EXPECT_EQ(rows.entries(), 2U);
}

TEST(LibrarySession, Rows_TellReferencesAndExternalObjectsAndWhetherTheyAreThere)
{
    const SampleLibrary library;
    {
        ObjectDatabase database(library.file().c_str(), GIO::OpenReadWrite);
        const PixelMap picture(4, 4, AbstractImage::Format24, nullptr);
        database.append_object(&picture, GString("outside"), new ODB_ExternalObject("outside.lob"));
        database.append_object(&picture, GString("lost file"), new ODB_ExternalObject("lost.lob"));
        database.append_object(
            nullptr, GString("again"),
            new ODB_ReferenceToObject(database, editor::mediator_name({}, "root a")));
        database.append_object(
            nullptr, GString("astray"),
            new ODB_ReferenceToObject(database, editor::mediator_name({}, "none")));
    }
    std::filesystem::remove(library.beside("lost.lob"));
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    using editor::Holding;

    EXPECT_EQ(session.look_at({}, "again")->holding, Holding::Reference);
    EXPECT_EQ(session.look_at({}, "outside")->holding, Holding::External);
    EXPECT_EQ(session.look_at({}, "root a")->holding, Holding::Inside);
    EXPECT_EQ(session.look_at({}, "none"), std::nullopt);
    EXPECT_EQ(session.load_row({}, "again", 32).holding, Holding::Reference);
    EXPECT_NE(session.load_row({}, "again", 32).icon, nullptr);
    EXPECT_EQ(session.load_row({}, "astray", 32).holding, Holding::Lost);
    EXPECT_EQ(session.load_row({}, "outside", 32).holding, Holding::External);
    EXPECT_EQ(session.load_row({}, "lost file", 32).holding, Holding::Lost);
    EXPECT_EQ(session.load_preview({}, "again", 64).preview.holding, "Reference to root a");
    EXPECT_EQ(session.load_preview({}, "astray", 64).preview.holding,
              "Reference to none, which is not there");
    EXPECT_EQ(session.load_preview({}, "outside", 64).preview.holding, "In the file outside.lob");
    EXPECT_EQ(session.load_preview({}, "lost file", 64).preview.holding,
              "In the file lost.lob, which is missing");
}

TEST(LibrarySession, Description_IsSetShownAndRemoved)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));

    EXPECT_EQ(session.describe({}, "root a", "A red one"), std::nullopt);
    EXPECT_EQ(session.load_row({}, "root a", 32).description, "A red one");
    EXPECT_EQ(session.load_preview({}, "root a", 32).preview.description, "A red one");
    EXPECT_EQ(session.describe({}, "root a", ""), std::nullopt);
    EXPECT_EQ(session.load_row({}, "root a", 32).description, "");
    EXPECT_THAT(session.describe({}, "none", "x").value_or(""), HasSubstr("not there"));
}

TEST(LibrarySession, NamedPicturesAndMovie_AreTold)
{
    const SampleLibrary library;
    std::ofstream(library.beside("short.avi")) << "RIFF";
    {
        ObjectDatabase database(library.file().c_str(), GIO::OpenReadWrite);
        ODB_Mediator* const mediator = database.get_mediator("root a");
        ODB_PixelMapAttribute pictures;
        mediator->set_attribute(&pictures, false);
        PixelMap side(30, 20, AbstractImage::Format24, nullptr);
        pictures.add_map("side", &side);
        pictures.add_map("Front", &side);
        ODB_MovieAttribute movie;
        mediator->set_attribute(&movie, false);
        movie.set_movie(library.beside("short.avi").c_str());
    }
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    const editor::PreviewLoaded preview = session.load_preview({}, "root a", 16).preview;

    EXPECT_THAT(preview.pictures, ElementsAre("Front", "side"));
    EXPECT_THAT(preview.movie, HasSubstr("sample.odb+"));
    const editor::PreviewLoaded side = session.load_picture({}, "root a", "side", 16);
    EXPECT_EQ(side.picture_name, "side");
    ASSERT_NE(side.picture, nullptr);
    EXPECT_EQ(side.picture->get_width(), 30);
    ASSERT_NE(side.smaller, nullptr);
    EXPECT_EQ(side.smaller->get_width(), 16);
    EXPECT_THAT(side.pictures, ElementsAre("Front", "side"));
    EXPECT_EQ(session.load_picture({}, "root a", "back", 16).picture, nullptr);
    EXPECT_EQ(session.load_preview({}, "root b", 16).preview.movie, "");
}

TEST(LibrarySession, AnotherClientOfTheFile_IsHeard)
{
    const SampleLibrary library;
    std::vector<std::string> heard;
    LibrarySession session(
        [&heard](const DirectoryPath& path, const std::string& name) {
            heard.push_back(std::to_string(path.size()) + " " + name);
        },
        [&heard](const DirectoryPath& from, const DirectoryPath& to) {
            heard.push_back(from.back() + " to " + to.back());
        });
    static_cast<void>(session.open(library.file()));
    const SampleLibrary elsewhere;
    ObjectDatabase stranger(elsewhere.file().c_str(), GIO::OpenReadWrite);
    ObjectDatabase other(library.file().c_str(), GIO::OpenReadWrite);

    stranger.get_mediator("root a")->modified();
    other.get_mediator("root a")->modified();
    other.get_mediator(editor::mediator_name({"deep", "er"}, "one"))->modified();
    other.rename({editor::resource_path({"Plain"}), GString(), GString()},
                 {editor::resource_path({"Plane"}), GString(), GString()});
    EXPECT_EQ(session.describe({}, "root b", "x"), std::nullopt);
    EXPECT_THAT(heard, ElementsAre("0 root a", "2 one", "Plain to Plane", "0 root b"));

    session.close();
    other.get_mediator("root a")->modified();
    EXPECT_EQ(heard.size(), 4U);
}

TEST(LibrarySession, Copy_ToALibraryThatIsMadeAndToOneOfAnotherKind)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));
    const std::string file = library.beside("made.odb");

    EXPECT_EQ(session.copy({}, {{0, "root a"}}, file, {"red"}, go_on).text, "1 entry copied.");
    {
        ObjectDatabase made(file.c_str(), GIO::OpenRead);
        EXPECT_TRUE(made.object_exists(editor::mediator_name({"red"}, "root a")));
    }
    const std::string other = library.beside("other.res");
    {
        ResourceFile made(other.c_str(), GIO::OpenReadWrite);
        made.set_type("some other kind");
        PixelMap content(2, 2, AbstractImage::Format24, nullptr);
        made.put(&content, "one", "a type", false);
    }
    const editor::WorkDone refused = session.copy({}, {{0, "root a"}}, other, {}, go_on);
    EXPECT_FALSE(refused.is_as_asked);
    EXPECT_THAT(refused.text, HasSubstr("another kind"));
    std::ofstream(library.beside("text.odb")) << "just a text";
    EXPECT_FALSE(
        session.copy({}, {{0, "root a"}}, library.beside("text.odb"), {}, go_on).is_as_asked);
}

TEST(LibrarySession, Filters_AreKeptInTheLibrary)
{
    const SampleLibrary library;
    LibrarySession session;
    static_cast<void>(session.open(library.file()));

    EXPECT_EQ(session.save({"red", {"PixelMap", false, {}}}), std::nullopt);
    EXPECT_NE(session.save({"", {"PixelMap", false, {}}}), std::nullopt);
    EXPECT_EQ(session.filters().filters.size(), 1U);
    EXPECT_EQ(session.remove_saved("red"), std::nullopt);
    EXPECT_EQ(session.filters().filters.size(), 0U);
}
