// Names of files and folders that trip programs: objects stored under them are read back, or, where
// the system can't have such a name, under a made-up one.

#include "TestObjects.h"
#include "foundation/FileSystem.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_ObjectPlacement.h"
#include "platform/FileDevice.h"
#include "store/GObjectPlace.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

const std::vector<std::string>& awkward_names()
{
    static const std::vector<std::string> names = {
        // Letters of all kinds, UTF-8.
        "\xC3\xA9t\xC3\xA9.lob",                             // composed
        "e\xCC\x81te\xCC\x81.lob",                           // the same, decomposed
        "\xE6\xA8\xA1\xE5\x9E\x8B.lob",                      // Chinese
        "\xE3\x81\x8B\xE3\x82\x99.lob",                      // Japanese, with a combining mark
        "\xED\x95\x9C\xEA\xB8\x80.lob",                      // Korean
        "\xD0\xBB\xD0\xB0\xD0\xBC\xD0\xBF\xD0\xB0.lob",      // Cyrillic
        "\xCE\xBB\xCE\xAC\xCE\xBC\xCF\x80\xCE\xB1.lob",      // Greek
        "\xD7\x9E\xD7\xA0\xD7\x95\xD7\xA8\xD7\x94.lob",      // Hebrew, right to left
        "\xD9\x85\xD8\xB5\xD8\xA8\xD8\xA7\xD8\xAD.lob",      // Arabic
        "\xE0\xB8\x82\xE0\xB8\xA7\xE0\xB8\x94.lob",          // Thai
        "\xF0\x9F\x92\xA1.lob",                              // beyond the first 65,536
        "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x9A\x80.lob",  // joined by an invisible letter
        "\xF0\xA0\x80\x8B.lob",
        "stra\xC3\x9F"
        "e.lob",
        "\xC4\xB0stanbul.lob",
        "\xEF\xAC\x81n.lob",             // a ligature
        "a\xC2\xA0z.lob",                // a space that does not break
        "a\xE2\x80\xAEz.lob",            // turns the direction of writing
        "a\xEF\xBB\xBFz.lob",            // a byte order mark inside
        "\xEF\xBC\x8F\xEF\xBC\x9A.lob",  // wide slash and colon
        // Spaces.
        "a b.lob",
        " begins with one.lob",
        "two  in a row.lob",
        "before the dot .lob",
        "ends with one ",
        "   ",
        // Dots.
        ".hidden",
        "..two in front",
        "no extension",
        "many.dots.in.a.row.lob",
        "ends with one.",
        "ends with three...",
        "...",
        ".lob.",
        // Marks.
        "a'b.lob",
        "a%20b.lob",
        "a%s%n.lob",
        "$HOME.lob",
        "a&b;c|d.lob",
        "a#b.lob",
        "a+b=c,d.lob",
        "[a]{b}(c).lob",
        "a@b!c~d`e^f.lob",
        "-rf.lob",
        "ab:c.lob",
        "C:",
        "a<b>c.lob",
        "a\"b.lob",
        "a\tb.lob",
        "a\nb.lob",
        "a\x01"
        "b.lob",
        "a\x7F"
        "b.lob",
        "a*b.lob",
        "a?b.lob",
        // Names of devices.
        "CON",
        "nul.lob",
        "Aux",
        "COM1.lob",
        "LPT9",
        "PRN.tar.gz",
        "CONIN$",
        // Long ones.
        std::string(251, 'n') + ".lob",
        std::string(255, 'm'),
        std::string(256, 'o') + ".lob",
        std::string(3000, 'p') + ".lob",
        "\xE6\xA8\xA1" + std::string(200, 'q') + ".lob",
        // No text at all.
        "\xFF\xFE.lob",
        "\xC3.lob",
        "\xED\xA0\x80.lob",  // half of a pair
        // Separators.
        "sub\\name.lob",
        "sub//twice.lob",
        "./here.lob",
        "sub/../up and down.lob",
    };
    return names;
}

ODB_ExternalObject* external(ObjectDatabase& database, const std::string& name)
{
    return zmr::class_cast<ODB_ExternalObject>(database.get_mediator(GString(name.c_str())));
}

std::string key_of(std::size_t number)
{
    return "entry " + std::to_string(number);
}

}  // namespace

TEST(AwkwardNames, ThereAreSixtyAndMore)
{
    EXPECT_GE(awkward_names().size(), 60U);
}

TEST(AwkwardNames, ObjectFiles_EachIsReadBackAndRemoved)
{
    OdbTest test;
    std::filesystem::create_directory(test.folder.path() / "sub");
    const auto& names = awkward_names();
    for (std::size_t i = 0; i < names.size(); ++i) {
        TestNote note(key_of(i).c_str());
        test.database.append_object(&note, GString(key_of(i).c_str()),
                                    new ODB_ExternalObject(names[i].c_str()));
    }
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(test.note_of(key_of(i).c_str()), key_of(i)) << names[i];
    test.database.close();

    ObjectDatabase again(test.file().c_str(), GIO::OpenReadWrite);
    for (std::size_t i = 0; i < names.size(); ++i) {
        SCOPED_TRACE(names[i]);
        EXPECT_EQ(OdbTest::note_of(again, key_of(i).c_str()), key_of(i));
        const ODB_ExternalObject* const mediator = external(again, key_of(i));
        ASSERT_NE(mediator, nullptr);
        const GFile file = mediator->get_filename();
        EXPECT_TRUE(file.exists());
        again.copy_object_to(GString(key_of(i).c_str()), again,
                             GString((key_of(i) + " copy").c_str()));
        again.remove_object(GString(key_of(i).c_str()));
        EXPECT_FALSE(file.exists());
        EXPECT_EQ(OdbTest::note_of(again, (key_of(i) + " copy").c_str()), key_of(i));
    }
    again.empty();
    again.close();
    // Nothing is left but the library and the directories.
    int left = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(test.folder.path()))
        left += entry.is_directory() ? 0 : 1;
    EXPECT_EQ(left, 1);
}

TEST(AwkwardNames, EntriesAndPaths_EachIsReadBack)
{
    OdbTest test;
    const auto& names = awkward_names();
    std::size_t kept = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        TestNote note(key_of(i).c_str());
        const GResourcePath path = path_of({names[i].c_str()});
        test.database.append_object(&note, path, GString(names[i].c_str()), nullptr);
        kept += names[i].size() <= 1024 ? 1 : 0;
    }
    test.database.close();

    ObjectDatabase again(test.file().c_str(), GIO::OpenRead);
    ODB_MediatorsArray contents;
    again.get_contents(contents, true);
    EXPECT_EQ(contents.count, static_cast<long>(kept));
    for (std::size_t i = 0; i < names.size(); ++i) {
        const ODB_ObjectPlacement placement(again, path_of({names[i].c_str()}),
                                            GString(names[i].c_str()));
        GObjectPlace place;
        place = new ODB_ObjectPlacement(placement);
        const std::unique_ptr<GObject> object(place.get(false));
        const auto* const note = zmr::class_cast<TestNote>(object.get());
        EXPECT_EQ(note != nullptr, names[i].size() <= 1024) << names[i];
        if (note != nullptr) {
            EXPECT_EQ(note->note(), key_of(i).c_str()) << names[i];
        }
    }
}

TEST(AwkwardNames, Folders_ALibraryInEachFindsItsFilesAfterMoving)
{
    const TemporaryFolder folder;
    const auto& names = awkward_names();
    for (std::size_t i = 0; i < names.size(); ++i) {
        SCOPED_TRACE(names[i]);
        GFile directory(folder.file("").c_str());
        directory.expand();
        directory.add_name(names[i].c_str());
        if (!directory.valid() || directory.isMask() || names[i].find("sub") == 0 ||
            names[i].find("./") == 0)
            continue;  // no folder's name here
        ASSERT_TRUE(FileSystem::CreateDirectoryA(directory));
        GFile library = directory;
        library.add_name("l.odb");
        {
            ObjectDatabase database(library.text, GIO::OpenReadWrite);
            ASSERT_NE(database.server, nullptr) << database.open_error().text;
            for (const char* const file : {"given.lob", static_cast<const char*>(nullptr)}) {
                TestNote note(names[i].c_str());
                database.append_object(&note, GString(file == nullptr ? "made up" : "given"),
                                       new ODB_ExternalObject(file));
            }
        }
        ObjectDatabase again(library.text, GIO::OpenReadWrite);
        EXPECT_EQ(OdbTest::note_of(again, "given"), names[i]);
        EXPECT_EQ(OdbTest::note_of(again, "made up"), names[i]);
        again.empty();
        again.close();
        static_cast<void>(zmr::FileSystemDevice::Real().remove(library.text));
    }
}

TEST(AwkwardNames, PlacesThatCannotBeWritten_CostTheirObjectsOnly)
{
    OdbTest test;
    std::ofstream(test.folder.file("a file")) << "x";
    const std::string names[] = {"none/a.lob", "a file/a.lob", "//server.invalid/share/a.lob",
                                 "sub/none/deep/a.lob",
                                 std::string(60, 'd') + "/" + std::string(200, 'n')};
    for (const std::string& name : names) {
        TestNote note("lost");
        test.database.append_object(&note, GString(name.c_str()),
                                    new ODB_ExternalObject(name.c_str()));
    }
    test.add("lamp", "a lamp");
    test.database.close();

    ObjectDatabase again(test.file().c_str(), GIO::OpenReadWrite);
    for (const std::string& name : names) {
        ASSERT_NE(external(again, name), nullptr) << name;
        EXPECT_EQ(OdbTest::note_of(again, name.c_str()), "(none)") << name;
        EXPECT_EQ(external(again, name)->get_object_class_name(), "TestNote");
        again.remove_object(GString(name.c_str()));
    }
    EXPECT_EQ(OdbTest::note_of(again, "lamp"), "a lamp");
}
