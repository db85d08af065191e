#include "odb/ODB_ObjectPlacement.h"

#include "TestObjects.h"
#include "foundation/Redirection.h"
#include "foundation/fpstream.h"
#include "foundation/mpstream.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_ReferenceToObject.h"
#include "store/GObjectFilePlacement.h"
#include "store/GObjectPlace.h"
#include "store/LibraryFile.h"
#include "store/ResourceFileServer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>

namespace {

GResourceFullName mediator_of(const char* name)
{
    return {GResourcePath(), GString(name), ObjectDatabase::MediatorResourceType};
}

GObjectPlace place_in(const std::string& file, const char* name)
{
    GObjectPlace place;
    place = new ODB_ObjectPlacement(file.c_str(), GResourcePath(), GString(name));
    return place;
}

std::string note_at(const GObjectPlace& place)
{
    const std::unique_ptr<GObject> object(place.get(false));
    const auto* const note = zmr::class_cast<TestNote>(object.get());
    return note == nullptr ? "(none)" : note->note().text;
}

GFile native(const std::string& name)
{
    GFile file(name.c_str());
    file.expand();
    return file;
}

GFile asked_for;
std::string answer;

bool ask(GFile& file)
{
    asked_for = file;
    file = answer.c_str();
    return !answer.empty();
}

}  // namespace

TEST(ODB_ObjectPlacement, Constructors_ExpandAFileAndTakeADatabases)
{
    OdbTest test;
    const ODB_ObjectPlacement by_path("some/../library.odb", path_of({"d"}), GString("lamp"));
    const ODB_ObjectPlacement by_name("library.odb", mediator_of("lamp"));
    const ODB_ObjectPlacement of_database(test.database, path_of({"d"}), GString("lamp"));
    const ODB_ObjectPlacement of_database_by_name(test.database, mediator_of("lamp"));

    EXPECT_EQ(by_path.get_filename(), native("library.odb"));
    EXPECT_EQ(by_name.get_filename(), native("library.odb"));
    EXPECT_TRUE(
        by_path.get_object_resource_name() ==
        GResourceFullName(path_of({"d"}), GString("lamp"), ObjectDatabase::MediatorResourceType));
    EXPECT_TRUE(by_name.get_object_resource_name() == mediator_of("lamp"));
    EXPECT_EQ(of_database.get_filename(), test.database.get_filename());
    EXPECT_TRUE(of_database.get_object_resource_name() == by_path.get_object_resource_name());
    EXPECT_EQ(of_database_by_name.get_filename(), test.database.get_filename());
}

TEST(ODB_ObjectPlacement, GetClassAndExistence)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    test.database.close();
    ODB_ObjectPlacement there(test.file().c_str(), mediator_of("lamp"));
    ODB_ObjectPlacement nothing(test.file().c_str(), mediator_of("nothing"));
    ODB_ObjectPlacement no_file(test.folder.file("none.odb").c_str(), mediator_of("lamp"));

    EXPECT_TRUE(there.place_exists());
    EXPECT_EQ(there.get_object_class_id(), &TestNote::metaclass_);
    EXPECT_EQ(note_at(place_in(test.file(), "lamp")), "a lamp");
    for (ODB_ObjectPlacement* const missing : {&nothing, &no_file}) {
        EXPECT_FALSE(missing->place_exists());
        EXPECT_EQ(missing->get_object_class_id(), nullptr);
        EXPECT_EQ(missing->get_object(false), nullptr);
    }
    EXPECT_FALSE(std::filesystem::exists(test.folder.path() / "none.odb"));
}

TEST(ODB_ObjectPlacement, Put_NewEntry_IsInternalAndOnTheDisk)
{
    OdbTest test;
    const GObjectPlace place = place_in(test.file(), "lamp");
    TestNote object("a lamp");

    ASSERT_TRUE(place.put(&object, false));

    EXPECT_EQ(note_at(place), "a lamp");
    EXPECT_TRUE(test.database.get_mediator(GString("lamp"))
                    ->hasTheSameClassAs(&ODB_InternalObject::metaclass_));
}

TEST(ODB_ObjectPlacement, Put_IntoAnEntry_KeepsIconAndAttributes)
{
    OdbTest test;
    test.add("lamp", "old");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    mediator->set_icon(new PixelMap(5, 2, AbstractImage::MapFormat(6), nullptr));
    mediator->set_attribute(new TestRating(3), true);
    TestNote object("new");

    ASSERT_TRUE(place_in(test.file(), "lamp").put(&object, false));

    EXPECT_EQ(test.database.get_mediator(GString("lamp")), mediator) << "shared by all clients";
    EXPECT_EQ(mediator->get_DB(), &test.database);
    EXPECT_EQ(test.note_of("lamp"), "new");
    ASSERT_NE(mediator->get_icon(), nullptr);
    EXPECT_EQ(mediator->get_icon()->get_width(), 5);
    const std::unique_ptr<ODB_ObjectAttribute> kept(
        mediator->get_attribute(&TestRating::metaclass_));
    EXPECT_NE(kept, nullptr);
}

TEST(ODB_ObjectPlacement, Put_NullOrNoStreamable_IsFalse)
{
    struct Plain : GObject {};
    OdbTest test;
    Plain plain;
    const GObjectPlace place = place_in(test.file(), "lamp");

    EXPECT_FALSE(place.put(nullptr, false));
    EXPECT_FALSE(place.put(&plain, false));

    EXPECT_FALSE(test.database.object_exists(GString("lamp")));
}

TEST(ODB_ObjectPlacement, Put_FileThatCannotBeWritten_IsFalseAndNothingIsWritten)
{
    const TemporaryFolder folder;
    std::ofstream(folder.file("text.odb")) << "no library";
    TestNote object("x");

    EXPECT_FALSE(place_in(folder.file("text.odb"), "lamp").put(&object, false));
    EXPECT_FALSE(place_in(folder.file("none/lib.odb"), "lamp").put(&object, false));
    EXPECT_FALSE(place_in(folder.file("text.odb"), "lamp").remove());

    std::ifstream in(folder.file("text.odb"));
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>(in), {}}), "no library");
}

TEST(ODB_ObjectPlacement, LibraryThatAnotherProcessWrites_IsReadAndNotWritten)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    test.database.close();
    zmr::LibraryFile writer;  // to this process as another one
    ASSERT_EQ(writer.open(test.file(), zmr::LibraryAccess::Write).status,
              zmr::LibraryOpenStatus::Ok);
    const GObjectPlace place = place_in(test.file(), "lamp");
    TestNote object("new");

    EXPECT_FALSE(place.put(&object, false));
    EXPECT_FALSE(place.remove());
    EXPECT_FALSE(place.copy_to(place_in(test.file(), "copy")));

    EXPECT_EQ(note_at(place), "a lamp");
    writer.close();
    EXPECT_TRUE(place.put(&object, false));
    EXPECT_EQ(note_at(place), "new");
}

TEST(ODB_ObjectPlacement, Remove_TakesTheEntry_AndTellsOnlyWhetherTheFileIsFine)
{
    OdbTest test;
    test.add("lamp", "x");
    test.database.close();
    const GObjectPlace place = place_in(test.file(), "lamp");

    EXPECT_TRUE(place.remove());
    EXPECT_EQ(note_at(place), "(none)");
    EXPECT_TRUE(place.remove());
    static_cast<void>(place_in(test.folder.file("none.odb"), "lamp").remove());
    EXPECT_FALSE(std::filesystem::exists(test.folder.path() / "none.odb"));
}

TEST(ODB_ObjectPlacement, CopyFromTo_TwoEntries_CopiesWithIconAndAttributes)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    test.database.get_mediator(GString("lamp"))->set_attribute(new TestRating(3), true);
    const std::string other = test.folder.file("other.odb");

    EXPECT_TRUE(place_in(test.file(), "lamp").copy_to(place_in(other, "vase")));

    ObjectDatabase target(other.c_str(), GIO::OpenRead);
    EXPECT_EQ(OdbTest::note_of(target, "vase"), "a lamp");
    const std::unique_ptr<ODB_ObjectAttribute> copied(
        target.get_mediator(GString("vase"))->get_attribute(&TestRating::metaclass_));
    EXPECT_NE(copied, nullptr);
}

TEST(ODB_ObjectPlacement, CopyFromTo_MissingSource_IsHandledAndNotOk)
{
    const TemporaryFolder folder;
    ODB_ObjectPlacement from(folder.file("none.odb").c_str(), mediator_of("lamp"));
    ODB_ObjectPlacement to(folder.file("other.odb").c_str(), mediator_of("lamp"));
    bool ok = true;

    EXPECT_TRUE(from.copy_object_from_to(from, to, ok));

    EXPECT_FALSE(ok);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "other.odb"));
}

TEST(ODB_ObjectPlacement, CopyFromTo_WithAFilePlacement_IsNotHandled)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    ODB_ObjectPlacement entry(test.file().c_str(), mediator_of("lamp"));
    const GObjectFilePlacement file(test.folder.file("a.lob").c_str(), false, nullptr);
    for (const bool before : {false, true}) {
        bool ok = before;
        EXPECT_FALSE(entry.copy_object_from_to(entry, file, ok));
        EXPECT_FALSE(entry.copy_object_from_to(file, entry, ok));
        EXPECT_EQ(ok, before);
    }

    // The place falls back on reading and writing.
    const GObjectPlace to_file(test.folder.file("a.lob").c_str(), false, nullptr);
    EXPECT_TRUE(place_in(test.file(), "lamp").copy_to(to_file));
    EXPECT_EQ(note_at(to_file), "a lamp");
    EXPECT_TRUE(to_file.copy_to(place_in(test.file(), "vase")));
    EXPECT_EQ(test.note_of("vase"), "a lamp");
}

TEST(ODB_ObjectPlacement, CompareItems_FileAndName)
{
    const ODB_ObjectPlacement a("a.odb", mediator_of("lamp"));

    EXPECT_TRUE(a.compare_items(ODB_ObjectPlacement("./a.odb", mediator_of("lamp"))));
    EXPECT_FALSE(a.compare_items(ODB_ObjectPlacement("b.odb", mediator_of("lamp"))));
    EXPECT_FALSE(a.compare_items(ODB_ObjectPlacement("a.odb", mediator_of("vase"))));
    EXPECT_FALSE(a.compare_items(GObjectFilePlacement("a.odb", false, nullptr)));
}

TEST(ODB_ObjectPlacement, GetReadableForm_FileThenPathAndNameInBrackets)
{
    const ODB_ObjectPlacement placement("a.odb", path_of({"x", "y"}), GString("lamp"));
    GString text("former");

    placement.get_readable_form(text);

    EXPECT_EQ(text, (native("a.odb") + "<x/y/lamp>"));
}

TEST(ODB_ObjectPlacement, GetShared_IsTrackedByThePlace)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    const GObjectPlace place = place_in(test.file(), "lamp");

    std::unique_ptr<GObject> first(place.get(true));
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(place.get(true), first.get());
    EXPECT_EQ(place.placement->get_shared_object(), first.get());
    first.reset();
    EXPECT_EQ(place.placement->get_shared_object(), nullptr);
    TestNote put("y");
    ASSERT_TRUE(place.put(&put, true));
    EXPECT_EQ(place.placement->get_shared_object(), &put);
}

TEST(ODB_ObjectPlacement, ApplicationsClient_SeesTheSameMediators)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    const ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));

    EXPECT_EQ(note_at(place_in(test.file(), "lamp")), "a lamp");

    EXPECT_EQ(test.database.get_mediator(GString("lamp")), mediator);
    EXPECT_EQ(mediator->get_DB(), &test.database);
    EXPECT_EQ(test.database.server->clients.count, 1);
}

TEST(ODB_ObjectPlacement, ChangeNotExists_NoAskFunction_LeavesWhatRedirectionGives)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    test.database.close();
    const TemporaryFolder away;
    ODB_ObjectPlacement plain(away.file("library.odb").c_str(), mediator_of("lamp"));
    plain.change_not_exists();
    EXPECT_EQ(plain.get_filename(), native(away.file("library.odb")));

    auto redirection = std::make_unique<RedirectionFile>();
    auto* const item = new RedirectionItem("*.odb");
    item->v_insert(gnewstr(test.folder.file("").c_str()));
    redirection->v_insert(item);
    fpbase::SetRedirectionFile(std::move(redirection));
    ODB_ObjectPlacement redirected(away.file("library.odb").c_str(), mediator_of("lamp"));
    redirected.change_not_exists();
    fpbase::SetRedirectionFile(nullptr);

    EXPECT_TRUE(redirected.place_exists());
}

TEST(ODB_ObjectPlacement, ChangeNotExists_AsksAndTakesTheAnswer)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    test.database.close();
    GObjectFilePlacement::s_AskFunction = &ask;
    const GObjectPlace place = place_in(test.folder.file("none.odb"), "lamp");
    ODB_ObjectPlacement empty("", mediator_of("lamp"));
    asked_for = GFile();
    answer.clear();
    empty.change_not_exists();
    const bool asked_for_empty = !asked_for.is_empty();
    const std::string refused = note_at(place);
    answer = test.file();

    const std::string given = note_at(place);
    GObjectFilePlacement::s_AskFunction = nullptr;

    EXPECT_FALSE(asked_for_empty);
    EXPECT_EQ(refused, "(none)");
    EXPECT_EQ(given, "a lamp");
    EXPECT_EQ(place.placement->get_filename(), native(test.file()));
}

TEST(ODB_ObjectPlacement, Stream_RoundTripAndEveryOlderVersion)
{
    ODB_ObjectPlacement placement("/x/a.odb", path_of({"d"}), GString("lamp"));
    const std::unique_ptr<GStreamable> copy(placement.clone(true));
    const auto* const back = zmr::class_cast<ODB_ObjectPlacement>(copy.get());
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(back->compare_items(placement));

    ompstream out;
    placement.write(out);
    impstream in(out.bytes());
    EXPECT_EQ(in.readByte(), 1);

    const auto read_back = [](unsigned char version, auto write_name) {
        ompstream written;
        written.writeByte(2);
        written.writeString("ODB_ObjectPlacement");
        written.writeByte(version);
        written.writeByte(0);
        struct Base : GStreamable {};
        Base().write(written);
        written << GFile("a.odb");
        write_name(written);
        impstream source(written.bytes());
        std::unique_ptr<ODB_ObjectPlacement> read(source.read_pointer<ODB_ObjectPlacement>());
        EXPECT_EQ(source.remaining(), 0);
        return read;
    };
    const GResourceFullName name(path_of({"d"}), GString("n"), GString("t"));
    const auto old = read_back(0, [](opstream& stream) { stream << GString("n"); });
    const auto present = read_back(1, [&](opstream& stream) { stream << name; });
    const auto newer = read_back(77, [&](opstream& stream) { stream << name; });
    EXPECT_TRUE(old->get_object_resource_name() == mediator_of("n"));
    EXPECT_TRUE(present->get_object_resource_name() == name);
    EXPECT_TRUE(newer->get_object_resource_name() == name);
    EXPECT_EQ(old->get_filename(), native("a.odb"));
}

TEST(ODB_ObjectPlacement, OfAReference_GivesTheHostsObject)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    test.database.append_object(nullptr, GString("also"),
                                new ODB_ReferenceToObject(test.database, mediator_of("lamp")));

    EXPECT_EQ(note_at(place_in(test.file(), "also")), "a lamp");
}
