#include "odb/ODB_ReferenceToObject.h"

#include "TestObjects.h"
#include "foundation/mpstream.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_MediatorsArray.h"
#include "store/LibraryFile.h"
#include "store/ResourceFileServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <vector>

namespace {

GResourceFullName mediator_of(const char* name)
{
    return {GResourcePath(), GString(name), ObjectDatabase::MediatorResourceType};
}

PixelMap* new_icon(int width)
{
    return new PixelMap(width, 2, AbstractImage::MapFormat(6), nullptr);
}

ODB_ReferenceToObject* reference(ObjectDatabase& database, const char* name)
{
    return zmr::class_cast<ODB_ReferenceToObject>(database.get_mediator(GString(name)));
}

/// A reference that a test may own. It streams under the name of its base.
class OpenReference : public ODB_ReferenceToObject {
public:
    using ODB_ReferenceToObject::ODB_ReferenceToObject;
    ~OpenReference() override = default;
};

/// Puts a reference into `database` that points at `target` in the library `file`.
void add_reference(ObjectDatabase& database, const char* name, const std::string& file,
                   const char* target)
{
    database.append_object(nullptr, GString(name),
                           new ODB_ReferenceToObject(file.c_str(), mediator_of(target)));
}

/// Writes a mediator's resource as a damaged or older file may hold it.
void put_reference_raw(ObjectDatabase& database, const char* name, const std::string& file,
                       const char* target)
{
    OpenReference detached(file.c_str(), mediator_of(target));
    database.put(&detached, mediator_of(name), false);
}

/// Whether another program could open the library for writing: nobody of this process has it open.
bool is_free(const std::string& file)
{
    zmr::LibraryFile library;
    return library.open(file, zmr::LibraryAccess::Write).status == zmr::LibraryOpenStatus::Ok;
}

/// Several libraries in one folder.
struct Libraries {
    [[nodiscard]] std::string file(const char* name) const { return folder.file(name); }
    void make(const char* name, const char* entry, const char* note) const
    {
        ObjectDatabase database(file(name).c_str(), GIO::OpenReadWrite);
        TestNote object(note);
        database.append_object(&object, GString(entry), nullptr);
    }
    TemporaryFolder folder;
};

}  // namespace

TEST(ODB_ReferenceToObject, WithinOneLibrary_ForwardsObjectIconAndClass)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    add_reference(test.database, "also", test.file(), "lamp");

    ODB_ReferenceToObject* const also = reference(test.database, "also");
    ASSERT_NE(also, nullptr);
    EXPECT_TRUE(also->is_reference());
    EXPECT_FALSE(test.database.get_mediator(GString("lamp"))->is_reference());
    EXPECT_EQ(also->get_object_class_name(), "TestNote");
    EXPECT_EQ(also->get_object_class_identifier(), &TestNote::metaclass_);
    EXPECT_EQ(test.note_of("also"), "a lamp");
    EXPECT_EQ(also->get_referenced_DB_filename(), test.database.get_filename());
    EXPECT_TRUE(also->get_referenced_object_resname() == mediator_of("lamp"));

    EXPECT_FALSE(also->has_icon());
    also->set_icon(new_icon(9));
    ASSERT_NE(test.database.get_mediator(GString("lamp"))->get_icon(), nullptr);
    EXPECT_EQ(also->get_icon(), test.database.get_mediator(GString("lamp"))->get_icon());
    EXPECT_TRUE(also->has_icon());
    also->unload_icon();
    EXPECT_EQ(also->get_icon()->get_width(), 9);
}

TEST(ODB_ReferenceToObject, MadeWithTheHoldersOwnFile_BecomesOneWithinTheLibrary)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    add_reference(test.database, "also", test.file(), "lamp");
    ompstream out;

    reference(test.database, "also")->write(out);

    impstream in(out.bytes());
    EXPECT_EQ(in.readByte(), 2);
    EXPECT_EQ(in.readByte(), 3);
    GString class_name;
    in >> class_name;
    EXPECT_EQ(class_name, "TestNote");
    EXPECT_EQ(in.readByte(), 1);
    GResourceFullName target;
    in >> target;
    EXPECT_TRUE(target == mediator_of("lamp"));
    EXPECT_EQ(in.remaining(), 0);
}

TEST(ODB_ReferenceToObject, HoldersFileByAnotherName_BecomesOneWithinTheLibrary)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    test.database.flush();
    const std::string alias = test.folder.file("alias.odb");
    std::filesystem::create_hard_link(test.file(), alias);

    add_reference(test.database, "also", alias, "lamp");

    EXPECT_EQ(reference(test.database, "also")->get_referenced_DB_filename(),
              test.database.get_filename());
    EXPECT_EQ(test.note_of("also"), "a lamp");
    test.database.close();
    EXPECT_TRUE(is_free(test.file()));
}

TEST(ODB_ReferenceToObject, IntoAnotherLibrary_SurvivesReopening)
{
    const Libraries libraries;
    libraries.make("b.odb", "lamp", "a lamp");
    ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
    add_reference(a, "also", libraries.file("b.odb"), "lamp");
    EXPECT_EQ(OdbTest::note_of(a, "also"), "a lamp");
    a.close();

    ObjectDatabase again(libraries.file("a.odb").c_str(), GIO::OpenRead);

    GFile expected(libraries.file("b.odb").c_str());
    expected.expand();
    EXPECT_EQ(reference(again, "also")->get_referenced_DB_filename(), expected);
    EXPECT_EQ(OdbTest::note_of(again, "also"), "a lamp");
    EXPECT_EQ(reference(again, "also")->get_object_class_name(), "TestNote");
}

TEST(ODB_ReferenceToObject, MadeFromADatabase_TakesItsFile)
{
    const Libraries libraries;
    libraries.make("b.odb", "lamp", "a lamp");
    ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
    ObjectDatabase b(libraries.file("b.odb").c_str(), GIO::OpenReadWrite);

    a.append_object(nullptr, GString("also"), new ODB_ReferenceToObject(b, mediator_of("lamp")));

    EXPECT_EQ(reference(a, "also")->get_referenced_DB_filename(), b.get_filename());
    EXPECT_EQ(OdbTest::note_of(a, "also"), "a lamp");
}

TEST(ODB_ReferenceToObject, ToAReferenceIntoAThirdLibrary_PointsStraightAtItsHost)
{
    const Libraries libraries;
    libraries.make("c.odb", "lamp", "a lamp");
    {
        ObjectDatabase b(libraries.file("b.odb").c_str(), GIO::OpenReadWrite);
        add_reference(b, "middle", libraries.file("c.odb"), "lamp");
    }
    ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);

    add_reference(a, "also", libraries.file("b.odb"), "middle");

    GFile third(libraries.file("c.odb").c_str());
    third.expand();
    EXPECT_EQ(reference(a, "also")->get_referenced_DB_filename(), third);
    EXPECT_TRUE(reference(a, "also")->get_referenced_object_resname() == mediator_of("lamp"));
    a.close();
    std::filesystem::remove(libraries.file("b.odb"));
    ObjectDatabase again(libraries.file("a.odb").c_str(), GIO::OpenRead);
    EXPECT_EQ(OdbTest::note_of(again, "also"), "a lamp");
}

TEST(ODB_ReferenceToObject, ToAReferenceThatLeadsBack_BecomesOneWithinTheLibrary)
{
    const Libraries libraries;
    libraries.make("a.odb", "lamp", "a lamp");
    {
        ObjectDatabase b(libraries.file("b.odb").c_str(), GIO::OpenReadWrite);
        add_reference(b, "middle", libraries.file("a.odb"), "lamp");
    }
    ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);

    add_reference(a, "also", libraries.file("b.odb"), "middle");

    EXPECT_EQ(reference(a, "also")->get_referenced_DB_filename(), a.get_filename());
    EXPECT_EQ(OdbTest::note_of(a, "also"), "a lamp");
    EXPECT_TRUE(is_free(libraries.file("b.odb")));
}

TEST(ODB_ReferenceToObject, AtItself_HasNoHost)
{
    OdbTest test;
    add_reference(test.database, "self", test.file(), "self");
    put_reference_raw(test.database, "again", test.file(), "again");

    for (const char* name : {"self", "again"}) {
        EXPECT_EQ(test.note_of(name), "(none)");
        EXPECT_EQ(reference(test.database, name)->get_icon(), nullptr);
        EXPECT_FALSE(reference(test.database, name)->has_icon());
    }
}

TEST(ODB_ReferenceToObject, CirclesThatDoNotPassTheStart_End)
{
    OdbTest test;
    // start -> x -> y -> x
    put_reference_raw(test.database, "x", test.file(), "y");
    put_reference_raw(test.database, "y", test.file(), "x");
    put_reference_raw(test.database, "start", test.file(), "x");

    EXPECT_EQ(test.note_of("start"), "(none)");
    EXPECT_EQ(test.note_of("x"), "(none)");
}

TEST(ODB_ReferenceToObject, CirclesThroughTwoLibraries_EndAndReleaseBoth)
{
    const Libraries libraries;
    libraries.make("a.odb", "lamp", "a");
    libraries.make("b.odb", "lamp", "b");
    {
        ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
        ObjectDatabase b(libraries.file("b.odb").c_str(), GIO::OpenReadWrite);
        put_reference_raw(a, "x", libraries.file("b.odb"), "x");
        put_reference_raw(b, "x", libraries.file("a.odb"), "x");
        put_reference_raw(a, "start", libraries.file("b.odb"), "x");
        EXPECT_EQ(OdbTest::note_of(a, "start"), "(none)");
        EXPECT_EQ(OdbTest::note_of(b, "x"), "(none)");
    }

    EXPECT_TRUE(is_free(libraries.file("a.odb")));
    EXPECT_TRUE(is_free(libraries.file("b.odb")));
}

TEST(ODB_ReferenceToObject, LongChains_EndByTheirLength)
{
    OdbTest test;
    test.add("n0", "the host");
    const auto name = [](int i) { return "n" + std::to_string(i); };
    for (int i = 1; i <= 600; ++i)
        put_reference_raw(test.database, name(i).c_str(), test.file(), name(i - 1).c_str());

    EXPECT_EQ(test.note_of("n1"), "the host");
    EXPECT_EQ(test.note_of(name(ODB_ReferenceToObject::kMostSteps).c_str()), "the host");
    EXPECT_EQ(test.note_of(name(ODB_ReferenceToObject::kMostSteps + 1).c_str()), "(none)");
    EXPECT_EQ(test.note_of("n600"), "(none)");
}

TEST(ODB_ReferenceToObject, ChainToAndFroBetweenTwoLibraries_OfAnyLengthEnds)
{
    const Libraries libraries;
    libraries.make("a.odb", "n0", "the host");
    libraries.make("b.odb", "other", "x");
    constexpr int kLength = 3000;
    const auto name = [](int i) { return "n" + std::to_string(i); };
    {
        ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
        ObjectDatabase b(libraries.file("b.odb").c_str(), GIO::OpenReadWrite);
        for (int i = 1; i <= kLength; ++i)
            put_reference_raw(i % 2 == 0 ? a : b, name(i).c_str(),
                              libraries.file(i % 2 == 0 ? "b.odb" : "a.odb"), name(i - 1).c_str());
    }
    {
        ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenRead);
        // From the far end: each attaches the next.
        static_cast<void>(OdbTest::note_of(a, name(kLength).c_str()));
        EXPECT_EQ(OdbTest::note_of(a, "n2"), "the host");
        ODB_MediatorsArray contents;
        a.get_contents(contents, true);
        EXPECT_EQ(contents.count, 1 + kLength / 2);
    }
    EXPECT_TRUE(is_free(libraries.file("a.odb")));
    EXPECT_TRUE(is_free(libraries.file("b.odb")));
}

TEST(ODB_ReferenceToObject, MissingLibraryOrEntry_GivesNullAndKeepsTheClass)
{
    const Libraries libraries;
    libraries.make("b.odb", "lamp", "a lamp");
    {
        ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
        add_reference(a, "also", libraries.file("b.odb"), "lamp");
        add_reference(a, "nothing", libraries.file("b.odb"), "nothing");
    }
    std::filesystem::remove(libraries.file("b.odb"));
    {
        ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
        EXPECT_EQ(OdbTest::note_of(a, "also"), "(none)");
        EXPECT_EQ(reference(a, "also")->get_icon(), nullptr);
        EXPECT_EQ(reference(a, "also")->get_object_class_name(), "TestNote");
        EXPECT_EQ(reference(a, "nothing")->get_object_class_name(), "");
    }

    EXPECT_FALSE(std::filesystem::exists(libraries.file("b.odb"))) << "looking makes no file";
}

TEST(ODB_ReferenceToObject, TargetRenamed_IsDeadAndStillListed)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    add_reference(test.database, "also", test.file(), "lamp");

    test.database.rename_object(GString("lamp"), GString("vase"));

    EXPECT_EQ(test.note_of("also"), "(none)");
    EXPECT_EQ(reference(test.database, "also")->get_icon(), nullptr);
    EXPECT_EQ(reference(test.database, "also")->get_object_class_name(), "TestNote");
}

TEST(ODB_ReferenceToObject, SetIcon_WithoutAHost_FreesTheMap)
{
    OdbTest test;
    add_reference(test.database, "also", test.file(), "nothing");

    reference(test.database, "also")->set_icon(new_icon(4));  // a leak would be told

    EXPECT_EQ(reference(test.database, "also")->get_icon(), nullptr);
    EXPECT_FALSE(test.database.exist(OdbTest::icon_of("also")));
}

TEST(ODB_ReferenceToObject, SetIcon_IntoAnotherLibrary_IsKeptThere)
{
    const Libraries libraries;
    libraries.make("b.odb", "lamp", "a lamp");
    {
        ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
        add_reference(a, "also", libraries.file("b.odb"), "lamp");
        reference(a, "also")->set_icon(new_icon(11));
        EXPECT_EQ(reference(a, "also")->get_icon()->get_width(), 11);
    }

    ObjectDatabase b(libraries.file("b.odb").c_str(), GIO::OpenRead);
    ASSERT_NE(b.get_mediator(GString("lamp"))->get_icon(), nullptr);
    EXPECT_EQ(b.get_mediator(GString("lamp"))->get_icon()->get_width(), 11);
}

TEST(ODB_ReferenceToObject, SetIcon_HostAttachedToAReadingClient_IsKeptToo)
{
    const Libraries libraries;
    libraries.make("b.odb", "lamp", "a lamp");
    {
        ObjectDatabase reader(libraries.file("b.odb").c_str(), GIO::OpenRead);
        ASSERT_NE(reader.get_mediator(GString("lamp")), nullptr);
        ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
        add_reference(a, "also", libraries.file("b.odb"), "lamp");
        reference(a, "also")->set_icon(new_icon(12));
        a.close();
        EXPECT_EQ(reader.get_mediator(GString("lamp"))->get_DB(), &reader);
    }

    ObjectDatabase b(libraries.file("b.odb").c_str(), GIO::OpenRead);
    ASSERT_NE(b.get_mediator(GString("lamp"))->get_icon(), nullptr);
    EXPECT_EQ(b.get_mediator(GString("lamp"))->get_icon()->get_width(), 12);
}

TEST(ODB_ReferenceToObject, SetIcon_WhileAnotherProcessWritesTheLibrary_IsNotKeptAndGoesOnReading)
{
    const Libraries libraries;
    libraries.make("b.odb", "lamp", "a lamp");
    ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
    add_reference(a, "also", libraries.file("b.odb"), "lamp");
    {
        zmr::LibraryFile writer;  // to this process as another one
        ASSERT_EQ(writer.open(libraries.file("b.odb"), zmr::LibraryAccess::Write).status,
                  zmr::LibraryOpenStatus::Ok);

        reference(a, "also")->set_icon(new_icon(13));

        EXPECT_EQ(OdbTest::note_of(a, "also"), "a lamp");
    }
    a.close();
    ObjectDatabase b(libraries.file("b.odb").c_str(), GIO::OpenRead);
    EXPECT_EQ(b.get_mediator(GString("lamp"))->get_icon(), nullptr);
}

TEST(ODB_ReferenceToObject, Attributes_AreItsOwn)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    add_reference(test.database, "also", test.file(), "lamp");

    reference(test.database, "also")->set_attribute(new TestRating(5), true);

    const std::unique_ptr<ODB_ObjectAttribute> own(
        reference(test.database, "also")->get_attribute(&TestRating::metaclass_));
    const std::unique_ptr<ODB_ObjectAttribute> of_host(
        test.database.get_mediator(GString("lamp"))->get_attribute(&TestRating::metaclass_));
    EXPECT_NE(own, nullptr);
    EXPECT_EQ(of_host, nullptr);
    EXPECT_TRUE(test.database.exist({GResourcePath(), GString("also"), GString("TestRating")}));
}

TEST(ODB_ReferenceToObject, Store_WritesNoObject)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    TestNote other("other");

    test.database.append_object(&other, GString("also"),
                                new ODB_ReferenceToObject(test.database, mediator_of("lamp")));

    EXPECT_EQ(test.note_of("also"), "a lamp");
    EXPECT_EQ(test.note_of("lamp"), "a lamp");
    EXPECT_FALSE(test.database.exist(
        {GResourcePath(), GString("also"), ODB_InternalObject::GetDefaultResourceType()}));
}

TEST(ODB_ReferenceToObject, Removed_LeavesItsTarget_AndACopyIsASecondReference)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    add_reference(test.database, "also", test.file(), "lamp");
    test.database.copy_object_to(GString("also"), test.database, GString("second"));

    test.database.remove_object(GString("also"));

    EXPECT_EQ(test.note_of("lamp"), "a lamp");
    EXPECT_EQ(test.note_of("second"), "a lamp");
    EXPECT_TRUE(test.database.get_mediator(GString("second"))->is_reference());
}

TEST(ODB_ReferenceToObject, HoldsTheOtherLibraryOpenWhileAttached)
{
    const Libraries libraries;
    libraries.make("b.odb", "lamp", "a lamp");
    ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
    add_reference(a, "also", libraries.file("b.odb"), "lamp");
    add_reference(a, "more", libraries.file("b.odb"), "lamp");
    ObjectDatabase b(libraries.file("b.odb").c_str(), GIO::OpenRead);
    ASSERT_EQ(b.server->clients.count, 2) << "references of one library share a client";

    a.close();

    EXPECT_EQ(b.server->clients.count, 1);
}

TEST(ODB_ReferenceToObject, ReadingAnotherLibrary_LeavesItToOtherWriters)
{
    const Libraries libraries;
    libraries.make("b.odb", "lamp", "a lamp");
    ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
    add_reference(a, "also", libraries.file("b.odb"), "lamp");
    ASSERT_EQ(OdbTest::note_of(a, "also"), "a lamp");

    EXPECT_TRUE(is_free(libraries.file("b.odb")));
}

TEST(ODB_ReferenceToObject, EachLibraryRefersToTheOther_ClosedInAnyOrderBothAreFree)
{
    const Libraries libraries;
    libraries.make("a.odb", "lamp", "of a");
    libraries.make("b.odb", "lamp", "of b");
    {
        ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
        add_reference(a, "r1", libraries.file("b.odb"), "lamp");
        add_reference(a, "r2", libraries.file("b.odb"), "s1");
        ObjectDatabase b(libraries.file("b.odb").c_str(), GIO::OpenReadWrite);
        add_reference(b, "s1", libraries.file("a.odb"), "lamp");
        add_reference(b, "s2", libraries.file("a.odb"), "r1");
        put_reference_raw(a, "raw1", libraries.file("b.odb"), "raw2");
        put_reference_raw(b, "raw2", libraries.file("a.odb"), "raw3");
        put_reference_raw(a, "raw3", libraries.file("b.odb"), "lamp");
    }
    // Which client a mediator is attached to depends on who asked first, and closing hands it on:
    // all orders of opening, asking and closing of two clients on each side.
    std::vector<int> order = {0, 1, 2, 3};
    int orders = 0;
    do {
        for (int asked = 0; asked < 16; ++asked) {
            SCOPED_TRACE(testing::Message() << orders << " asked " << asked);
            std::vector<std::unique_ptr<ObjectDatabase>> clients(4);
            for (std::size_t i = 0; i < 4; ++i) {
                const auto which = static_cast<std::size_t>(order[i]);
                clients[which] = std::make_unique<ObjectDatabase>(
                    libraries.file(which < 2 ? "a.odb" : "b.odb").c_str(), GIO::OpenReadWrite);
                if ((asked >> i & 1) != 0) {
                    ODB_MediatorsArray contents;
                    clients[which]->get_contents(contents, true);
                }
            }
            for (const std::size_t which : {std::size_t{1}, std::size_t{2}, std::size_t{0}}) {
                clients[which]->close();
                if (which == 0)
                    break;
                // What is still open goes on working.
                ASSERT_EQ(OdbTest::note_of(*clients[0], "r1"), "of b");
                ASSERT_EQ(OdbTest::note_of(*clients[0], "raw1"), "of b");
                ASSERT_EQ(OdbTest::note_of(*clients[3], "s1"), "of a");
                ASSERT_EQ(OdbTest::note_of(*clients[3], "s2"), "of b");
            }
            ASSERT_EQ(OdbTest::note_of(*clients[3], "s1"), "of a");
            clients[3]->close();
            ASSERT_TRUE(is_free(libraries.file("a.odb")));
            ASSERT_TRUE(is_free(libraries.file("b.odb")));
        }
        ++orders;
    } while (std::next_permutation(order.begin(), order.end()));
    EXPECT_EQ(orders, 24);
}

TEST(ODB_ReferenceToObject, TwoClients_ClosingOneHandsTheReferencesOn)
{
    const Libraries libraries;
    libraries.make("b.odb", "lamp", "a lamp");
    ObjectDatabase first(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
    ObjectDatabase second(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
    add_reference(first, "also", libraries.file("b.odb"), "lamp");
    ODB_Mediator* const mediator = second.get_mediator(GString("also"));
    ASSERT_EQ(mediator->get_DB(), &first);

    first.close();

    EXPECT_EQ(mediator->get_DB(), &second);
    EXPECT_EQ(OdbTest::note_of(second, "also"), "a lamp");
}

TEST(ODB_ReferenceToObject, Read_EveryOlderVersion)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    const auto read_back = [](unsigned char version, auto write_items) {
        ompstream out;
        out.writeByte(2);
        out.writeString("ODB_ReferenceToObject");
        out.writeByte(version);
        out.writeByte(3);
        out << GString("TestNote");
        write_items(out);
        impstream in(out.bytes());
        auto* const mediator = in.read_pointer<ODB_ReferenceToObject>();
        EXPECT_EQ(in.remaining(), 0);
        return mediator;
    };
    const GResourceFullName deep(path_of({"p"}), GString("n"), GString("t"));
    struct Case {
        ODB_ReferenceToObject* mediator;
        GResourceFullName target;
        const char* file;
    };
    const Case cases[] = {
        {read_back(0, [](opstream& out) { out << GFile("/b.odb") << GString("n"); }),
         mediator_of("n"), "/b.odb"},
        {read_back(1, [&](opstream& out) { out << GFile("/b.odb") << deep; }), deep, "/b.odb"},
        {read_back(2,
                   [&](opstream& out) {
                       out.writeByte(0);
                       out << GFile("/b.odb") << deep;
                   }),
         deep, "/b.odb"},
        {read_back(2,
                   [&](opstream& out) {
                       out.writeByte(1);
                       out << deep;
                   }),
         deep, ""},
        {read_back(9,
                   [&](opstream& out) {
                       out.writeByte(7);
                       out << deep;
                   }),
         deep, ""},
    };
    for (const Case& one : cases) {
        ASSERT_NE(one.mediator, nullptr);
        EXPECT_TRUE(one.mediator->get_referenced_object_resname() == one.target);
        EXPECT_EQ(one.mediator->get_referenced_DB_filename(), one.file);
        EXPECT_EQ(one.mediator->get_object(), nullptr) << "detached";
        GStreamable::Destroy(one.mediator);
    }
}

TEST(ODB_ReferenceToObject, Stream_IntoAnotherLibrary_HoldsTheWholeName)
{
    const Libraries libraries;
    libraries.make("b.odb", "lamp", "a lamp");
    ObjectDatabase a(libraries.file("a.odb").c_str(), GIO::OpenReadWrite);
    add_reference(a, "also", libraries.file("b.odb"), "lamp");
    ompstream out;

    reference(a, "also")->write(out);

    impstream in(out.bytes());
    EXPECT_EQ(in.readByte(), 2);
    in.skipBytes(1);
    GString class_name;
    in >> class_name;
    EXPECT_EQ(in.readByte(), 0);
    GFile file;
    in >> file;
    EXPECT_FALSE(file.isRelativePath());
    GResourceFullName target;
    in >> target;
    EXPECT_TRUE(target == mediator_of("lamp"));
    EXPECT_EQ(in.remaining(), 0);
}
