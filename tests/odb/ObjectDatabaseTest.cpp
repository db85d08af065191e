#include "TestObjects.h"
#include "foundation/GException.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "store/LibraryFile.h"
#include "store/ResourceFileServer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

PixelMap* new_icon(int width)
{
    return new PixelMap(width, 2, AbstractImage::MapFormat(6), nullptr);
}

int icon_width(ObjectDatabase& database, const char* name)
{
    ODB_Mediator* const mediator = database.get_mediator(GString(name));
    const PixelMap* const icon = mediator == nullptr ? nullptr : mediator->get_icon();
    return icon == nullptr ? 0 : icon->get_width();
}

struct Heard {
    int count = 0;
    ResourceFileServer* server = nullptr;
    ODB_Mediator* mediator = nullptr;

    static void hear(GCallBackReason, void* info, void* user)
    {
        const auto& modified = *static_cast<ObjectDatabase::MediatorModifiedInfo*>(
            static_cast<ResourceFile::Reason_BaseInfo*>(info));
        auto& heard = *static_cast<Heard*>(user);
        ++heard.count;
        heard.server = modified.server;
        heard.mediator = modified.mediator;
    }
};

}  // namespace

TEST(ObjectDatabase, BuiltByName_IsUnopened)
{
    const GMetaClass* const metaclass = GMetaClass::FindByName("ObjectDatabase");
    ASSERT_NE(metaclass, nullptr);
    const std::unique_ptr<GRTTIObject> built(metaclass->buildObject());

    const auto* const database = zmr::class_cast<ObjectDatabase>(built.get());
    ASSERT_NE(database, nullptr);
    EXPECT_EQ(database->server, nullptr);
    EXPECT_EQ(database->io_mode(), 3);
    EXPECT_NE(metaclass->isKindOf(&ResourceFile::metaclass_), nullptr);
}

TEST(ObjectDatabase, AppendAndGet_GivesTheObjectBackAfterReopening)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    EXPECT_EQ(test.note_of("lamp"), "a lamp");
    test.database.close();

    ObjectDatabase again(test.file().c_str(), GIO::OpenRead);

    EXPECT_EQ(OdbTest::note_of(again, "lamp"), "a lamp");
    EXPECT_EQ(again.get_type(), ObjectDatabase::MediatorResourceType);
}

TEST(ObjectDatabase, Append_EqualMediator_LeavesOldResourcesAndOverwritesTheObject)
{
    OdbTest test;
    test.add("lamp", "old");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    TestRating rating(4);
    mediator->set_attribute(&rating, false);

    test.add("lamp", "new");  // a new mediator of the same class and name is equal

    EXPECT_EQ(test.note_of("lamp"), "new");
    const std::unique_ptr<ODB_ObjectAttribute> kept(
        test.database.get_mediator(GString("lamp"))->get_attribute(&TestRating::metaclass_));
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(static_cast<TestRating&>(*kept).stars, 4);
}

TEST(ObjectDatabase, Append_TheSameMediatorPointer_LeavesOldResources)
{
    OdbTest test;
    test.add("lamp", "old");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    TestRating rating(2);
    mediator->set_attribute(&rating, false);
    TestNote object("new");

    test.database.append_object(&object, GString("lamp"), mediator);

    EXPECT_EQ(test.database.get_mediator(GString("lamp")), mediator);
    EXPECT_EQ(test.note_of("lamp"), "new");
    const std::unique_ptr<ODB_ObjectAttribute> kept(
        mediator->get_attribute(&TestRating::metaclass_));
    EXPECT_NE(kept, nullptr);
}

TEST(ObjectDatabase, Append_UnequalMediator_RemovesTheOldObjectAndServesItsIcon)
{
    OdbTest test;
    test.add("lamp", "old");
    test.database.get_mediator(GString("lamp"))->set_icon(new_icon(7));
    const GResourceFullName object(GResourcePath(), GString("lamp"),
                                   ODB_InternalObject::GetDefaultResourceType());
    ASSERT_TRUE(test.database.exist(object));
    TestNote phantom("nowhere");

    test.database.append_object(&phantom, GString("lamp"), new TestPhantom);

    EXPECT_FALSE(test.database.exist(object));
    EXPECT_EQ(icon_width(test.database, "lamp"), 7);
    EXPECT_TRUE(
        test.database.get_mediator(GString("lamp"))->hasTheSameClassAs(&TestPhantom::metaclass_));
}

TEST(ObjectDatabase, Append_ObjectThatThrowsWhileWritten_LeavesTheFormerOne)
{
    struct Throwing : TestNote {
        void write(opstream&) override { throw GLibraryException("no"); }
    };
    OdbTest test;
    test.add("lamp", "old");
    Throwing object;

    EXPECT_THROW(test.database.append_object(&object, GString("lamp"), nullptr), GLibraryException);

    EXPECT_EQ(test.note_of("lamp"), "old");
}

TEST(ObjectDatabase, Append_ALargeObject_IsCommittedTogetherWithItsMediator)
{
    // Its stream is written after the object: what another process sees then is what a crash
    // leaves.
    struct Spy : ODB_InternalObject {
        explicit Spy(std::string library) : library_(std::move(library)) {}
        void write(opstream& out) override
        {
            zmr::LibraryFile other;
            ASSERT_EQ(other.open(library_, zmr::LibraryAccess::Read).status,
                      zmr::LibraryOpenStatus::Ok);
            seen_early = other.exists(zmr::LibraryPath(), "big", GetDefaultResourceType().view());
            asked = true;
            ODB_InternalObject::write(out);
        }
        std::string library_;
        bool asked = false;
        bool seen_early = false;
    };
    OdbTest test;
    test.add("first", "x");
    test.database.flush();
    std::string large;
    std::mt19937 random(1);
    for (int i = 0; i < 6'000'000; ++i)  // more than is held back outside a scope
        large += static_cast<char>(1 + random() % 255);
    TestNote object(large.c_str());
    auto* const spy = new Spy(test.file());

    test.database.append_object(&object, GString("big"), spy);

    EXPECT_TRUE(spy->asked);
    EXPECT_FALSE(spy->seen_early);
    zmr::LibraryFile other;
    ASSERT_EQ(other.open(test.file(), zmr::LibraryAccess::Read).status, zmr::LibraryOpenStatus::Ok);
    EXPECT_TRUE(other.exists(zmr::LibraryPath(), "big",
                             ODB_InternalObject::GetDefaultResourceType().view()))
        << "the scope's end commits what is due";
    EXPECT_TRUE(
        other.exists(zmr::LibraryPath(), "big", ObjectDatabase::MediatorResourceType.view()));
}

TEST(ObjectDatabase, RemoveObject_IconStaysUntilPack)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    test.add("vase", "a vase");
    test.database.get_mediator(GString("lamp"))->set_icon(new_icon(7));
    test.database.get_mediator(GString("vase"))->set_icon(new_icon(9));

    test.database.remove_object(GString("lamp"));
    EXPECT_FALSE(test.database.object_exists(GString("lamp")));
    EXPECT_TRUE(test.database.exist(OdbTest::icon_of("lamp")));
    test.database.pack();

    EXPECT_FALSE(test.database.exist(OdbTest::icon_of("lamp")));
    EXPECT_TRUE(test.database.exist(OdbTest::icon_of("vase")));
    EXPECT_EQ(test.note_of("vase"), "a vase");
}

TEST(ObjectDatabase, Pack_FindsIconsInSubdirectories)
{
    OdbTest test;
    TestNote object("x");
    const GResourcePath deep = path_of({"a", "b"});
    test.database.append_object(&object, deep, GString("lamp"), nullptr);
    test.database.get_mediator(deep, GString("lamp"))->set_icon(new_icon(3));
    const GResourceFullName icon(deep, GString("lamp"), ObjectDatabase::ODB_IconResourceType);

    test.database.remove_object(deep, GString("lamp"));
    ASSERT_TRUE(test.database.exist(icon));
    test.database.pack();

    EXPECT_FALSE(test.database.exist(icon));
}

TEST(ObjectDatabase, PackWithProgress_RemovesIconsToo_AlsoThroughTheBase)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    test.database.get_mediator(GString("lamp"))->set_icon(new_icon(3));
    test.database.remove_object(GString("lamp"));
    ASSERT_TRUE(test.database.exist(OdbTest::icon_of("lamp")));

    ResourceFile& file = test.database;
    EXPECT_TRUE(file.pack([](std::uint64_t, std::uint64_t) { return true; }));

    EXPECT_FALSE(test.database.exist(OdbTest::icon_of("lamp")));
    ObjectDatabase reading(test.file().c_str(), GIO::OpenRead);
    EXPECT_FALSE(reading.pack([](std::uint64_t, std::uint64_t) { return true; }));
}

TEST(ObjectDatabase, ReadOnly_RemoveRenameAndEmptyChangeNothing)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    test.database.close();
    ObjectDatabase reader(test.file().c_str(), GIO::OpenRead);

    reader.remove_object(GString("lamp"));
    reader.rename_object(GString("lamp"), GString("vase"));
    reader.empty();
    reader.pack();

    EXPECT_EQ(OdbTest::note_of(reader, "lamp"), "a lamp");
    EXPECT_FALSE(reader.object_exists(GString("vase")));
    reader.close();
    ObjectDatabase again(test.file().c_str(), GIO::OpenRead);
    EXPECT_EQ(OdbTest::note_of(again, "lamp"), "a lamp");
}

TEST(ObjectDatabase, CopyTo_AnotherClientOfTheSameFile_DoesNothing)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    ObjectDatabase other(test.file().c_str(), GIO::OpenReadWrite);
    ASSERT_EQ(other.server, test.database.server);

    test.database.copy_to(other);

    GStringCollection names;
    other.get_names(names, true);
    ASSERT_EQ(names.count, 1);
    EXPECT_STREQ(names.at(0), "lamp");
}

TEST(ObjectDatabase, CopyTo_AnotherFile_CopiesObjectsIconsAndAttributes)
{
    OdbTest test;
    TestNote object("deep");
    test.add("lamp", "a lamp");
    test.database.append_object(&object, path_of({"d"}), GString("vase"), nullptr);
    test.database.get_mediator(GString("lamp"))->set_icon(new_icon(7));
    test.database.get_mediator(GString("lamp"))->set_attribute(new TestRating(5), true);
    ObjectDatabase target(test.folder.file("other.odb").c_str(), GIO::OpenReadWrite);

    test.database.copy_to(target);

    EXPECT_EQ(OdbTest::note_of(target, "lamp"), "a lamp");
    EXPECT_EQ(icon_width(target, "lamp"), 7);
    const std::unique_ptr<ODB_ObjectAttribute> rating(
        target.get_mediator(GString("lamp"))->get_attribute(&TestRating::metaclass_));
    ASSERT_NE(rating, nullptr);
    const std::unique_ptr<GStreamable> vase(target.get_object(path_of({"d"}), GString("vase")));
    ASSERT_NE(vase, nullptr);
    EXPECT_EQ(TestRating::alive, 1);
}

TEST(ObjectDatabase, CopyObjectTo_SameFileAndName_DoesNothing)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    const ODB_Mediator* const before = test.database.get_mediator(GString("lamp"));

    test.database.copy_object_to(GString("lamp"), test.database, GString("lamp"));

    EXPECT_EQ(test.database.get_mediator(GString("lamp")), before);
    EXPECT_EQ(test.note_of("lamp"), "a lamp");
}

TEST(ObjectDatabase, CopyObjectTo_SameFileOtherName_MakesASecondObject)
{
    OdbTest test;
    test.add("lamp", "a lamp");

    test.database.copy_object_to(GString("lamp"), test.database, GString("vase"));
    test.database.remove_object(GString("lamp"));

    EXPECT_EQ(test.note_of("vase"), "a lamp");
    EXPECT_EQ(test.database.get_mediator(GString("vase"))->get_object_class_name(), "TestNote");
}

TEST(ObjectDatabase, CopyObjectTo_BareNames_UseTheSourcesDirectoryOnBothSides)
{
    OdbTest test;
    TestNote object("x");
    test.database.current_path = path_of({"d"});
    test.database.append_object(&object, GString("lamp"), nullptr);
    ObjectDatabase target(test.folder.file("other.odb").c_str(), GIO::OpenReadWrite);
    target.current_path = path_of({"elsewhere"});

    test.database.copy_object_to(GString("lamp"), target, GString("lamp"));

    EXPECT_TRUE(target.object_exists(path_of({"d"}), GString("lamp")));
    EXPECT_FALSE(target.object_exists(path_of({"elsewhere"}), GString("lamp")));
}

TEST(ObjectDatabase, Close_OneOfTwoClients_MediatorsStayAndMoveToTheOther)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    ObjectDatabase other(test.file().c_str(), GIO::OpenReadWrite);
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    ASSERT_EQ(mediator->get_DB(), &test.database);
    ASSERT_EQ(other.get_mediator(GString("lamp")), mediator);

    test.database.close();

    EXPECT_EQ(mediator->get_DB(), &other);
    const std::unique_ptr<GStreamable> object(mediator->get_object());
    EXPECT_NE(object, nullptr);
}

TEST(ObjectDatabase, SetType_OnAnOpenDatabase_HasNoEffect)
{
    OdbTest test;

    test.database.set_type(GString("something else"));

    EXPECT_EQ(test.database.get_type(), ObjectDatabase::MediatorResourceType);
}

TEST(ObjectDatabase, GetContents_ReadsNoObject)
{
    OdbTest test;
    for (int i = 0; i < 20; ++i)
        test.add(("n" + std::to_string(i)).c_str(), "x");
    test.database.close();
    ObjectDatabase again(test.file().c_str(), GIO::OpenRead);
    const int reads_before = TestNote::reads;

    ODB_MediatorsArray contents;
    again.get_contents(contents, true);

    EXPECT_EQ(contents.count, 20);
    EXPECT_EQ(TestNote::reads, reads_before);
}

TEST(ObjectDatabase, GetContents_AddsToTheResult)
{
    OdbTest test;
    test.add("lamp", "x");

    ODB_MediatorsArray contents;
    test.database.get_contents(contents, false);
    test.database.get_contents(contents, false);

    EXPECT_EQ(contents.count, 2);
}

TEST(ObjectDatabase, GetContents_RecursiveOnly_GoesIntoSubdirectories)
{
    OdbTest test;
    TestNote object("x");
    test.database.append_object(&object, path_of({"a", "b"}), GString("deep"), nullptr);
    test.add("flat", "x");

    ODB_MediatorsArray flat;
    test.database.get_contents(GResourcePath(), flat, false);
    ODB_MediatorsArray all;
    test.database.get_contents(GResourcePath(), all, true);

    EXPECT_EQ(flat.count, 1);
    EXPECT_EQ(all.count, 2);
}

TEST(ObjectDatabase, GetContents_ResourceOfAnotherClass_IsSkipped)
{
    OdbTest test;
    TestNote note("not a mediator");
    test.add("lamp", "x");
    test.database.put(&note, GString("odd"), ObjectDatabase::MediatorResourceType, false);

    ODB_MediatorsArray contents;
    test.database.get_contents(contents, true);

    ASSERT_EQ(contents.count, 1);
    EXPECT_EQ(contents.at(0).get_DB_key(), "lamp");
    EXPECT_EQ(test.database.get_mediator(GString("odd")), nullptr);
}

TEST(ObjectDatabase, GetCachedMediators_ListsOnlyWhatIsInMemory)
{
    OdbTest test;
    test.add("lamp", "x");
    test.add("vase", "x");
    test.database.close();
    ObjectDatabase again(test.file().c_str(), GIO::OpenRead);

    ODB_MediatorsArray none;
    again.get_cached_mediators(GResourcePath(), none, true);
    static_cast<void>(again.get_mediator(GString("vase")));
    ODB_MediatorsArray one;
    again.get_cached_mediators(GResourcePath(), one, true);

    EXPECT_EQ(none.count, 0);
    ASSERT_EQ(one.count, 1);
    EXPECT_EQ(one.at(0).get_DB_key(), "vase");
}

TEST(ObjectDatabase, GetNames_EmptiesTheResultAndSorts)
{
    OdbTest test;
    test.add("b", "x");
    test.add("a", "x");
    test.add("B", "x");
    GStringCollection names;
    names.v_insert(gnewstr("stale"));

    test.database.get_names(names, false);

    ASSERT_EQ(names.count, 3);
    EXPECT_STREQ(names.at(0), "B");
    EXPECT_STREQ(names.at(1), "a");
    EXPECT_STREQ(names.at(2), "b");
}

TEST(ObjectDatabase, RenameObject_ByTheMediatorsOwnName_MovesEverything)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    mediator->set_icon(new_icon(7));
    GResourceFullName target = mediator->get_DB_resname();
    target.name = "vase";

    test.database.rename_object(mediator->get_DB_resname(), target);

    EXPECT_FALSE(test.database.object_exists(GString("lamp")));
    EXPECT_EQ(test.database.get_mediator(GString("vase")), mediator);
    EXPECT_EQ(mediator->get_DB_key(), "vase");
    EXPECT_EQ(test.note_of("vase"), "a lamp");
    EXPECT_TRUE(test.database.exist(OdbTest::icon_of("vase")));
    EXPECT_FALSE(test.database.exist(OdbTest::icon_of("lamp")));
}

TEST(ObjectDatabase, RemoveObject_ByTheMediatorsOwnName_RemovesAll)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));

    test.database.remove_object(mediator->get_DB_resname());

    EXPECT_FALSE(test.database.object_exists(GString("lamp")));
    EXPECT_EQ(test.note_of("lamp"), "(none)");
}

TEST(ObjectDatabase, RenamedDirectory_AttachedMediatorsLearnTheirNewNames)
{
    OdbTest test;
    TestNote object("x");
    test.database.append_object(&object, path_of({"a", "b"}), GString("lamp"), nullptr);
    ODB_Mediator* const mediator = test.database.get_mediator(path_of({"a", "b"}), GString("lamp"));

    test.database.rename(GResourceFullName(path_of({"a"}), GString(), GString()),
                         GResourceFullName(path_of({"c"}), GString(), GString()));

    EXPECT_TRUE(mediator->get_DB_resname().path() == path_of({"c", "b"}));
    EXPECT_EQ(test.database.get_mediator(path_of({"c", "b"}), GString("lamp")), mediator);
    const std::unique_ptr<GStreamable> moved(mediator->get_object());
    EXPECT_NE(moved, nullptr);
}

TEST(ObjectDatabase, RenamedDirectory_MediatorsAtEveryDepthAndOfEachClientLearnTheirNames)
{
    OdbTest test;
    ObjectDatabase second(test.database);
    TestNote object("x");
    const GResourcePath paths[] = {path_of({"a"}), path_of({"a", "b"}), path_of({"a", "b", "a"}),
                                   path_of({"ab"})};
    for (const GResourcePath& path : paths)
        for (const char* name : {"one", "two"})
            test.database.append_object(&object, path, GString(name), nullptr);
    test.database.unload({paths[1], GString("two"), ObjectDatabase::MediatorResourceType});
    ASSERT_NE(second.get_mediator(paths[1], GString("two")), nullptr);

    test.database.rename(GResourceFullName(path_of({"a"}), GString(), GString()),
                         GResourceFullName(path_of({"c", "d"}), GString(), GString()));

    const GResourcePath moved[] = {path_of({"c", "d"}), path_of({"c", "d", "b"}),
                                   path_of({"c", "d", "b", "a"}), path_of({"ab"})};
    for (const GResourcePath& path : moved)
        for (const char* name : {"one", "two"}) {
            const ODB_Mediator* const mediator = test.database.get_mediator(path, GString(name));
            ASSERT_NE(mediator, nullptr);
            EXPECT_TRUE(mediator->get_DB_resname().path() == path);
            EXPECT_EQ(mediator->get_DB_key(), name);
        }
}

TEST(ObjectDatabase, AppendedUnderANameBeyondTheLimits_LeavesNoEntryAndNoFile)
{
    OdbTest odb;
    const GString name(std::string(70000, 'n'));
    const TestNote note("a lamp");
    odb.database.append_object(&note, name, new ODB_ExternalObject("lamp.lob"));

    EXPECT_EQ(odb.database.get_mediator(name), nullptr);
    EXPECT_FALSE(std::filesystem::exists(odb.folder.file("lamp.lob")));
}

TEST(ObjectDatabase, RenamedOntoANameBeyondTheLimits_NothingChanges)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    GResourcePath deep;
    for (int i = 0; i < 100; ++i)
        deep += GString("level");

    test.database.rename_object(GResourcePath(), GString("lamp"), deep, GString("lamp"));

    EXPECT_EQ(test.note_of("lamp"), "a lamp");
    EXPECT_EQ(test.database.get_mediator(GString("lamp"))->get_DB_resname().count, 0);
}

TEST(ObjectDatabase, RenamedDirectory_OfAnotherFile_ChangesNothingHere)
{
    OdbTest test;
    TestNote object("x");
    ObjectDatabase other(test.folder.file("other.odb").c_str(), GIO::OpenReadWrite);
    test.database.append_object(&object, path_of({"a"}), GString("lamp"), nullptr);
    other.append_object(&object, path_of({"a"}), GString("lamp"), nullptr);
    const ODB_Mediator* const here = test.database.get_mediator(path_of({"a"}), GString("lamp"));

    other.rename(GResourceFullName(path_of({"a"}), GString(), GString()),
                 GResourceFullName(path_of({"z"}), GString(), GString()));

    EXPECT_TRUE(here->get_DB_resname().path() == path_of({"a"}));
}

TEST(ObjectDatabase, Modified_IsHeardByListeners)
{
    OdbTest test;
    test.add("lamp", "x");
    Heard heard;
    ResourceFile::RegisterCallback(ObjectDatabase::Reason_MediatorModified, &Heard::hear, &heard);
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));

    mediator->modified();
    ResourceFile::UnRegisterCallback(GAnyReason, &Heard::hear, &heard);
    mediator->modified();

    EXPECT_EQ(heard.count, 1);
    EXPECT_EQ(heard.server, test.database.server);
    EXPECT_EQ(heard.mediator, mediator);
}

TEST(ObjectDatabase, Empty_RemovesEverything)
{
    OdbTest test;
    TestNote object("x");
    test.add("lamp", "x");
    test.database.append_object(&object, path_of({"a"}), GString("deep"), nullptr);

    test.database.empty();

    ODB_MediatorsArray contents;
    test.database.get_contents(GResourcePath(), contents, true);
    EXPECT_EQ(contents.count, 0);
    EXPECT_EQ(test.note_of("lamp"), "(none)");
}

TEST(ObjectDatabase, ShrinkFilename_InsideItsDirectory_BecomesRelative)
{
    OdbTest test;
    GFile inside(test.folder.file("models/lamp.lob").c_str());
    GFile outside("/elsewhere/lamp.lob");

    test.database.shrink_filename(inside);
    test.database.shrink_filename(outside);

    EXPECT_EQ(inside.compare("models/lamp.lob"), 0);
    EXPECT_EQ(outside.compare("/elsewhere/lamp.lob"), 0);
}

TEST(ObjectDatabase, Unopened_EveryOperationIsHarmless)
{
    ObjectDatabase database;
    TestNote object("x");

    database.remove_object(GString("lamp"));
    database.rename_object(GString("lamp"), GString("vase"));
    database.empty();
    database.pack();
    database.flush();

    EXPECT_EQ(database.get_object(GString("lamp")), nullptr);
    EXPECT_EQ(database.get_mediator(GString("lamp")), nullptr);
    EXPECT_FALSE(database.object_exists(GString("lamp")));
    EXPECT_NE(database.get_default_mediator(), nullptr);
}

TEST(ObjectDatabase, Stream_GivesAClientOfTheSameFile)
{
    OdbTest test;
    test.add("lamp", "x");

    const std::unique_ptr<GStreamable> copy(test.database.clone(true));

    auto* const database = zmr::class_cast<ObjectDatabase>(copy.get());
    ASSERT_NE(database, nullptr);
    EXPECT_EQ(database->server, test.database.server);
}

TEST(ObjectDatabase, GetObject_HoldsTheServersLockOnlyWhileItLoads)
{
    OdbTest test;
    test.add("lamp", "x");

    const std::unique_ptr<GStreamable> object(test.database.get_object(GString("lamp")));

    bool taken = false;
    std::thread other([&] {
        const GSingleLock locked(test.database.server->lock);
        taken = true;
    });
    other.join();
    EXPECT_TRUE(taken);
    EXPECT_NE(object, nullptr);
}
