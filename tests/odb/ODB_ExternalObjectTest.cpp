#include "odb/ODB_ExternalObject.h"

#include "TestObjects.h"
#include "foundation/FileSystem.h"
#include "foundation/mpstream.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_ObjectDatabaseFormat.h"
#include "store/GObjectFilePlacement.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>

namespace {

namespace fs = std::filesystem;

/// A mediator whose protected operations tests may call.
class OpenExternal : public ODB_ExternalObject {
public:
    using ODB_ExternalObject::ODB_ExternalObject;
    using ODB_ExternalObject::set_DB;
    using ODB_ExternalObject::store_object;
    ~OpenExternal() override = default;
};

GFile native(const std::string& name)
{
    GFile file(name.c_str());
    file.expand();
    return file;
}

ODB_ExternalObject* external(ObjectDatabase& database, const char* name)
{
    return zmr::class_cast<ODB_ExternalObject>(database.get_mediator(GString(name)));
}

void add_external(ObjectDatabase& database, const char* name, const char* note, const char* file)
{
    TestNote object(note);
    database.append_object(&object, GString(name), new ODB_ExternalObject(file));
}

/// Copies the files and folders of one folder into another, which may hold such already.
void copy_folder(const fs::path& from, const fs::path& to)
{
    for (const auto& entry : fs::recursive_directory_iterator(from)) {
        const fs::path target = to / entry.path().lexically_relative(from);
        if (entry.is_directory())
            fs::create_directories(target);
        else
            fs::copy_file(entry.path(), target, fs::copy_options::overwrite_existing);
    }
}

int files_in(const fs::path& directory)
{
    return fs::exists(directory) ? static_cast<int>(std::distance(fs::directory_iterator(directory),
                                                                  fs::directory_iterator()))
                                 : 0;
}

}  // namespace

TEST(ODB_ExternalObject, Registered_BuiltByNameWithBaseMediator)
{
    const GMetaClass* const metaclass = GMetaClass::FindByName("ODB_ExternalObject");
    ASSERT_NE(metaclass, nullptr);

    auto* const built = zmr::class_cast<ODB_ExternalObject>(metaclass->buildObject());

    ASSERT_NE(built, nullptr);
    EXPECT_TRUE(built->get_filename().is_empty());
    EXPECT_TRUE(built->get_DB_filename().is_empty());
    EXPECT_NE(metaclass->isKindOf(&ODB_Mediator::metaclass_), nullptr);
    GStreamable::Destroy(built);
}

TEST(ODB_ExternalObject, ConstructedFromAPlace_TakesACopy)
{
    const GObjectPlace place("/somewhere/a.lob", false, nullptr);
    OpenExternal mediator{place};

    EXPECT_TRUE(mediator.get_place() == place);
    EXPECT_NE(mediator.get_place().placement, place.placement);
    EXPECT_EQ(mediator.get_filename(), place.placement->get_filename());
}

TEST(ODB_ExternalObject, Append_WithoutAName_GathersInLOBJS)
{
    OdbTest test;
    for (const char* name : {"a", "b", "c"})
        add_external(test.database, name, name, nullptr);

    const GFile directory = native(test.folder.file("LOBJS"));
    for (const char* name : {"a", "b", "c"}) {
        const GFile file = external(test.database, name)->get_filename();
        EXPECT_EQ(file.get_directory(), directory);
        EXPECT_EQ(file.get_extension(), "lob");
        EXPECT_EQ(file.get_name().view().size(), 12U);
        EXPECT_TRUE(file.exists());
        EXPECT_EQ(test.note_of(name), name);
    }
    EXPECT_EQ(files_in(fs::path(test.folder.path() / "LOBJS")), 3);
}

TEST(ODB_ExternalObject, LOBJSCannotBeMade_TheFileLiesBesideTheDatabase)
{
    OdbTest test;
    std::ofstream(test.folder.file("LOBJS")) << "a file is in the way";

    add_external(test.database, "lamp", "x", nullptr);

    const GFile file = external(test.database, "lamp")->get_filename();
    EXPECT_EQ(file.get_directory(), native(test.folder.file("")));
    EXPECT_EQ(file.get_extension(), "lob");
    EXPECT_EQ(test.note_of("lamp"), "x");
}

TEST(ODB_ExternalObject, RelativeName_ResolvesBesideTheDatabaseAndIsKept)
{
    OdbTest test;

    add_external(test.database, "lamp", "a lamp", "lamp.lob");

    EXPECT_EQ(external(test.database, "lamp")->get_filename(),
              native(test.folder.file("lamp.lob")));
    EXPECT_EQ(external(test.database, "lamp")->relative_filename(), "lamp.lob");
    EXPECT_EQ(external(test.database, "lamp")->get_DB_filename(), test.database.get_filename());
    EXPECT_EQ(test.note_of("lamp"), "a lamp");
}

TEST(ODB_ExternalObject, AbsoluteName_IsKept_AlsoInTheStream)
{
    OdbTest test;
    const TemporaryFolder elsewhere;
    const GFile file = native(elsewhere.file("lamp.lob"));

    add_external(test.database, "lamp", "a lamp", file.text);

    EXPECT_EQ(external(test.database, "lamp")->get_filename(), file);
    EXPECT_EQ(external(test.database, "lamp")->relative_filename(), file);
    test.database.close();
    ObjectDatabase again(test.file().c_str(), GIO::OpenRead);
    EXPECT_EQ(external(again, "lamp")->get_filename(), file);
    EXPECT_EQ(OdbTest::note_of(again, "lamp"), "a lamp");
}

TEST(ODB_ExternalObject, MovedTogether_DatabaseAndFilesFindEachOther)
{
    OdbTest test;
    add_external(test.database, "lamp", "a lamp", "lamp.lob");
    add_external(test.database, "vase", "a vase", nullptr);
    test.database.close();
    const TemporaryFolder target;
    copy_folder(test.folder.path(), target.path());
    for (const auto& entry : fs::directory_iterator(test.folder.path()))
        fs::remove_all(entry.path());

    ObjectDatabase moved(target.file("library.odb").c_str(), GIO::OpenRead);

    EXPECT_EQ(external(moved, "lamp")->get_filename(), native(target.file("lamp.lob")));
    EXPECT_EQ(OdbTest::note_of(moved, "lamp"), "a lamp");
    EXPECT_EQ(OdbTest::note_of(moved, "vase"), "a vase");
}

TEST(ODB_ExternalObject, StoredTwice_WritesTheSameFile)
{
    OdbTest test;
    add_external(test.database, "lamp", "old", nullptr);
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    const GFile file = external(test.database, "lamp")->get_filename();
    TestNote changed("new");

    test.database.append_object(&changed, GString("lamp"), mediator);

    EXPECT_EQ(external(test.database, "lamp")->get_filename(), file);
    EXPECT_EQ(test.note_of("lamp"), "new");
    EXPECT_EQ(files_in(fs::path(test.folder.path() / "LOBJS")), 1);
}

TEST(ODB_ExternalObject, StoreNull_TakesTheClassOfTheFile)
{
    OdbTest test;
    TestNote object("x");
    const GObjectPlace place(test.folder.file("given.lob").c_str(), false, nullptr);
    ASSERT_TRUE(place.put(&object, false));

    test.database.append_object(nullptr, GString("lamp"), new ODB_ExternalObject("given.lob"));
    test.database.append_object(nullptr, GString("none"), new ODB_ExternalObject("missing.lob"));

    EXPECT_EQ(test.database.get_mediator(GString("lamp"))->get_object_class_name(), "TestNote");
    EXPECT_EQ(test.database.get_mediator(GString("lamp"))->get_object_class_identifier(),
              &TestNote::metaclass_);
    EXPECT_EQ(test.database.get_mediator(GString("none"))->get_object_class_name(), "");
    EXPECT_EQ(test.note_of("lamp"), "x");
    EXPECT_EQ(test.note_of("none"), "(none)");
}

TEST(ODB_ExternalObject, RemoveObject_TakesTheFileAlong)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "lamp.lob");
    ASSERT_TRUE(fs::exists(test.folder.path() / "lamp.lob"));

    test.database.remove_object(GString("lamp"));

    EXPECT_FALSE(fs::exists(test.folder.path() / "lamp.lob"));
    EXPECT_FALSE(test.database.object_exists(GString("lamp")));
}

TEST(ODB_ExternalObject, RemovedInAScope_TheFileGoesAtItsEnd)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "lamp.lob");
    {
        const ResourceFile::CommitScope scope(test.database);
        test.database.remove_object(GString("lamp"));
        EXPECT_TRUE(fs::exists(test.folder.path() / "lamp.lob"));
    }

    EXPECT_FALSE(fs::exists(test.folder.path() / "lamp.lob"));
}

TEST(ODB_ExternalObject, RemovedAndStoredAnewInOneScope_TheFileStays)
{
    OdbTest test;
    add_external(test.database, "lamp", "old", "lamp.lob");
    {
        const ResourceFile::CommitScope scope(test.database);
        test.database.remove_object(GString("lamp"));
        add_external(test.database, "vase", "new", "lamp.lob");
    }

    EXPECT_EQ(test.note_of("vase"), "new");
    EXPECT_FALSE(test.database.object_exists(GString("lamp")));
}

TEST(ODB_ExternalObject, Empty_RemovesAllFiles)
{
    OdbTest test;
    for (const char* name : {"a", "b", "c"})
        add_external(test.database, name, name, nullptr);

    test.database.empty();

    EXPECT_EQ(files_in(fs::path(test.folder.path() / "LOBJS")), 0);
}

TEST(ODB_ExternalObject, UnequalMediatorTakesItsPlace_TheFormerFileGoes)
{
    OdbTest test;
    add_external(test.database, "lamp", "old", "lamp.lob");

    test.add("lamp", "new");

    EXPECT_FALSE(fs::exists(test.folder.path() / "lamp.lob"));
    EXPECT_EQ(test.note_of("lamp"), "new");
}

TEST(ODB_ExternalObject, ReadOnly_RemoveObject_LeavesTheFile)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "lamp.lob");
    test.database.close();
    ObjectDatabase reader(test.file().c_str(), GIO::OpenRead);

    reader.remove_object(GString("lamp"));
    reader.empty();

    EXPECT_EQ(OdbTest::note_of(reader, "lamp"), "x");
}

TEST(ODB_ExternalObject, Rename_KeepsTheFile)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "lamp.lob");

    test.database.rename_object(GString("lamp"), GString("vase"));

    EXPECT_EQ(test.note_of("vase"), "x");
    EXPECT_EQ(external(test.database, "vase")->get_filename(),
              native(test.folder.file("lamp.lob")));
}

TEST(ODB_ExternalObject, RenameOntoIt_RemovesItsFile)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "lamp.lob");
    add_external(test.database, "vase", "y", "vase.lob");
    test.add("inside", "z");
    const fs::path lamp = test.folder.path() / "lamp.lob";
    const fs::path vase = test.folder.path() / "vase.lob";

    test.database.rename_object(GString("lamp"), GString("vase"));
    EXPECT_EQ(test.note_of("vase"), "x");
    EXPECT_TRUE(fs::exists(lamp));
    EXPECT_FALSE(fs::exists(vase));

    test.database.rename_object(GString("inside"), GString("vase"));
    EXPECT_EQ(test.note_of("vase"), "z");
    EXPECT_FALSE(fs::exists(lamp));
}

TEST(ODB_ExternalObject, RenameOntoItInAScope_FileGoesAtTheEnd)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "lamp.lob");
    test.add("inside", "z");
    const fs::path lamp = test.folder.path() / "lamp.lob";

    {
        const ResourceFile::CommitScope scope(test.database);
        test.database.rename_object(GString("inside"), GString("lamp"));
        EXPECT_TRUE(fs::exists(lamp));
    }

    EXPECT_FALSE(fs::exists(lamp));
}

TEST(ODB_ExternalObject, RenameOntoOneWithTheSameFile_KeepsTheFile)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "lamp.lob");
    add_external(test.database, "again", "y", "lamp.lob");

    test.database.rename_object(GString("lamp"), GString("again"));

    EXPECT_EQ(test.note_of("again"), "y");
    EXPECT_FALSE(test.database.object_exists(GString("lamp")));
}

TEST(ODB_ExternalObject, FetchedByAReaderFirst_WriterRemovesTheFileWithTheEntry)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "lamp.lob");
    add_external(test.database, "vase", "y", "vase.lob");
    test.add("inside", "z");
    test.database.close();
    ObjectDatabase reader(test.file().c_str(), GIO::OpenRead);
    ODB_MediatorsArray contents;
    reader.get_contents(contents, true);
    ASSERT_EQ(contents.count, 3);
    test.database.open(test.file().c_str(), GIO::OpenReadWrite);

    test.database.remove_object(GString("lamp"));
    test.database.rename_object(GString("inside"), GString("vase"));

    EXPECT_FALSE(fs::exists(test.folder.path() / "lamp.lob"));
    EXPECT_FALSE(fs::exists(test.folder.path() / "vase.lob"));
    EXPECT_EQ(OdbTest::note_of(reader, "vase"), "z");
}

TEST(ODB_ExternalObject, Copy_AlwaysMakesANewFile)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "lamp.lob");
    const TemporaryFolder elsewhere;
    ObjectDatabase target(elsewhere.file("other.odb").c_str(), GIO::OpenReadWrite);

    test.database.copy_object_to(GString("lamp"), test.database, GString("second"));
    test.database.copy_object_to(GString("lamp"), target, GString("lamp"));

    const GFile original = external(test.database, "lamp")->get_filename();
    const GFile second = external(test.database, "second")->get_filename();
    const GFile other = external(target, "lamp")->get_filename();
    EXPECT_NE(original.compare(second.text), 0);
    EXPECT_EQ(second.get_directory(), native(test.folder.file("LOBJS")));
    EXPECT_EQ(other.get_directory(), native(elsewhere.file("LOBJS")));
    test.database.remove_object(GString("lamp"));
    EXPECT_EQ(test.note_of("second"), "x");
    EXPECT_EQ(OdbTest::note_of(target, "lamp"), "x");
}

TEST(ODB_ExternalObject, CopiedAgain_NoFileIsLeftBehindAndTheSourceKeepsIts)
{
    OdbTest test;
    add_external(test.database, "lamp", "first", nullptr);
    const TemporaryFolder elsewhere;
    ObjectDatabase target(elsewhere.file("library.odb").c_str(), GIO::OpenReadWrite);
    for (int i = 0; i < 4; ++i)
        test.database.copy_to(target);
    // A target that holds the very same relative name, as a moved copy does.
    target.close();
    for (const auto& entry : fs::directory_iterator(elsewhere.path()))
        fs::remove_all(entry.path());
    test.database.flush();
    copy_folder(test.folder.path(), elsewhere.path());
    target.open(elsewhere.file("library.odb").c_str(), GIO::OpenReadWrite);
    ASSERT_EQ(OdbTest::note_of(target, "lamp"), "first");

    for (int i = 0; i < 4; ++i)
        test.database.copy_to(target);

    EXPECT_EQ(files_in(elsewhere.path() / "LOBJS"), 1);
    EXPECT_EQ(OdbTest::note_of(target, "lamp"), "first");
    EXPECT_EQ(test.note_of("lamp"), "first");
}

TEST(ODB_ExternalObject, CopyOfAMissingFile_SharesNoName)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "away/lamp.lob");
    ASSERT_EQ(test.note_of("lamp"), "(none)") << "the directory is missing";

    test.database.copy_object_to(GString("lamp"), test.database, GString("copy"));

    EXPECT_NE(external(test.database, "copy")
                  ->get_filename()
                  .compare(external(test.database, "lamp")->get_filename().text),
              0);
    EXPECT_FALSE(fs::exists(test.folder.path() / "away"));
}

TEST(ODB_ExternalObject, CopyOfAnObjectWhoseClassIsUnknown_CopiesTheBytes)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "lamp.lob");
    const std::string bytes = [&] {
        std::ifstream in(test.folder.file("lamp.lob"), std::ios::binary);
        std::string all{std::istreambuf_iterator<char>(in), {}};
        for (std::size_t at = all.find("TestNote"); at != std::string::npos;
             at = all.find("TestNote"))
            all.replace(at, 8, "Unknown1");
        return all;
    }();
    std::ofstream(test.folder.file("lamp.lob"), std::ios::binary) << bytes;
    ASSERT_EQ(test.note_of("lamp"), "(none)");

    test.database.copy_object_to(GString("lamp"), test.database, GString("copy"));

    std::ifstream copy(external(test.database, "copy")->get_filename().text, std::ios::binary);
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>(copy), {}}), bytes);
}

TEST(ODB_ExternalObject, MakeUniqueFilename_FreshDirectory_KeepsTheWantedName)
{
    OdbTest test;
    OpenExternal mediator{static_cast<const char*>(nullptr)};
    mediator.set_DB(&test.database);
    const GFile wanted = native(test.folder.file("fresh/lamp.lob"));

    mediator.make_unique_filename(GObjectPlace(wanted.text, false, nullptr));

    EXPECT_EQ(mediator.get_filename(), wanted);
    EXPECT_TRUE(fs::is_directory(test.folder.path() / "fresh"));
    // Now that the directory is there, the name is made up.
    mediator.make_unique_filename(GObjectPlace(wanted.text, false, nullptr));
    EXPECT_EQ(mediator.get_filename().get_directory(), native(test.folder.file("LOBJS")));
}

TEST(ODB_ExternalObject, MakeUniqueFilename_ExistingFile_IsMadeUp)
{
    OdbTest test;
    OpenExternal mediator{static_cast<const char*>(nullptr)};
    mediator.set_DB(&test.database);
    std::ofstream(test.folder.file("there.lob")) << "x";

    mediator.make_unique_filename(
        GObjectPlace(test.folder.file("there.lob").c_str(), false, nullptr));

    EXPECT_EQ(mediator.get_filename().get_directory(), native(test.folder.file("LOBJS")));
    EXPECT_FALSE(mediator.get_filename().exists());
}

TEST(ODB_ExternalObject, MakeFilename_NotForced_AUsableSourceChangesNothing)
{
    OdbTest test;
    OpenExternal mediator{GObjectPlace("/kept/a.lob", false, nullptr)};
    mediator.set_DB(&test.database);

    mediator.make_filename(GObjectPlace("/other/b.lob", false, nullptr), false);
    EXPECT_EQ(mediator.get_filename(), "/kept/a.lob");

    mediator.make_filename(GObjectPlace(), false);
    EXPECT_EQ(mediator.get_filename().get_directory(), native(test.folder.file("LOBJS")));
}

TEST(ODB_ExternalObject, SetDB_ResolvesOnceAndNeverAgain)
{
    OdbTest test;
    ObjectDatabase other(test.folder.file("sub.odb").c_str(), GIO::OpenReadWrite);
    OpenExternal mediator("lamp.lob");
    mediator.set_DB(nullptr);
    EXPECT_TRUE(mediator.get_filename().is_empty());

    mediator.set_DB(&test.database);
    const GFile first = mediator.get_filename();
    mediator.set_DB(nullptr);
    mediator.set_DB(&other);

    EXPECT_EQ(first, native(test.folder.file("lamp.lob")));
    EXPECT_EQ(mediator.get_filename(), first);
}

TEST(ODB_ExternalObject, Stream_Attached_WritesTheRelativeName)
{
    OdbTest test;
    OpenExternal mediator("sub/lamp.lob");
    mediator.set_DB(&test.database);
    ompstream out;

    mediator.write(out);

    impstream in(out.bytes());
    EXPECT_EQ(in.readByte(), 0);
    EXPECT_EQ(in.readByte(), 3);
    GString class_name;
    in >> class_name;
    EXPECT_EQ(class_name, "");
    GFile file;
    in >> file;
    EXPECT_EQ(file.compare("sub/lamp.lob"), 0);
    EXPECT_EQ(in.remaining(), 0);
}

TEST(ODB_ExternalObject, Stream_Detached_WritesTheFullOrThePendingName)
{
    const auto written_name = [](ODB_ExternalObject& mediator) {
        ompstream out;
        mediator.write(out);
        impstream in(out.bytes());
        in.skipBytes(2);
        GString class_name;
        in >> class_name;
        GFile file;
        in >> file;
        return file;
    };
    OpenExternal pending("lamp.lob");
    OpenExternal full{GObjectPlace("/away/lamp.lob", false, nullptr)};

    EXPECT_EQ(written_name(pending), "lamp.lob");
    EXPECT_EQ(written_name(full), "/away/lamp.lob");
}

TEST(ODB_ExternalObject, Read_AnyVersionByte_GivesTheName)
{
    OdbTest test;
    constexpr unsigned char kVersions[] = {0, 1, 200};
    for (const unsigned char version : kVersions) {
        ompstream out;
        out.writeByte(version);
        out.writeByte(3);
        out << GString("TestNote");
        out << GFile("LOBJS\\from the other lane.lob");
        impstream in(out.bytes());
        OpenExternal mediator{static_cast<const char*>(nullptr)};

        mediator.read(in);
        mediator.set_DB(&test.database);

        EXPECT_EQ(mediator.get_object_class_name(), "TestNote");
        EXPECT_EQ(mediator.get_filename().compare(
                      native(test.folder.file("LOBJS/from the other lane.lob")).text),
                  0);
    }
}

TEST(ODB_ExternalObject, NameWithTheOtherLanesSeparator_IsWrittenReadAndRemoved)
{
    OdbTest test;
    fs::create_directory(test.folder.path() / "LOBJS");
    add_external(test.database, "lamp", "x", "LOBJS\\lamp.lob");

    EXPECT_TRUE(fs::exists(test.folder.path() / "LOBJS" / "lamp.lob"));
    EXPECT_EQ(test.note_of("lamp"), "x");
    test.database.remove_object(GString("lamp"));
    EXPECT_FALSE(fs::exists(test.folder.path() / "LOBJS" / "lamp.lob"));
}

TEST(ODB_ExternalObject, Equals_NeedsTheSamePlaceToo)
{
    OdbTest test;
    OpenExternal a("lamp.lob");
    OpenExternal b("lamp.lob");
    OpenExternal c("vase.lob");
    for (OpenExternal* const mediator : {&a, &b, &c})
        mediator->set_DB(&test.database);

    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a == c);
}

TEST(ODB_ExternalObject, EverySubsetOfTenMissingFiles_CostsItsObjectsAndNothingElse)
{
    constexpr int kFiles = 10;
    OdbTest test;
    std::vector<fs::path> files;
    for (int i = 0; i < kFiles; ++i) {
        const std::string name = "n" + std::to_string(i);
        add_external(test.database, name.c_str(), name.c_str(), nullptr);
        files.emplace_back(external(test.database, name.c_str())->get_filename().text);
    }
    test.database.close();
    const TemporaryFolder aside;
    const auto file_aside = [&](int i) {
        return aside.path() / files[static_cast<std::size_t>(i)].filename();
    };

    for (unsigned subset = 0; subset < 1U << kFiles; ++subset) {
        SCOPED_TRACE(subset);
        for (int i = 0; i < kFiles; ++i)
            if ((subset >> i & 1U) != 0)
                fs::rename(files[static_cast<std::size_t>(i)], file_aside(i));

        ObjectDatabase database(test.file().c_str(), GIO::OpenReadWrite);
        ODB_MediatorsArray contents;
        database.get_contents(contents, true);
        ASSERT_EQ(contents.count, kFiles);
        for (int i = 0; i < kFiles; ++i) {
            const std::string name = "n" + std::to_string(i);
            ODB_Mediator* const mediator = database.get_mediator(GString(name.c_str()));
            ASSERT_EQ(mediator->get_object_class_name(), "TestNote");
            ASSERT_EQ(OdbTest::note_of(database, name.c_str()),
                      (subset >> i & 1U) != 0 ? "(none)" : name);
            mediator->modified();  // written again
        }
        database.close();

        for (int i = 0; i < kFiles; ++i)
            if ((subset >> i & 1U) != 0)
                fs::rename(file_aside(i), files[static_cast<std::size_t>(i)]);
    }
    ObjectDatabase again(test.file().c_str(), GIO::OpenRead);
    for (int i = 0; i < kFiles; ++i) {
        const std::string name = "n" + std::to_string(i);
        EXPECT_EQ(OdbTest::note_of(again, name.c_str()), name);
    }
}

TEST(ODB_ExternalObject, AskFunction_MayNameAnotherFile)
{
    OdbTest test;
    add_external(test.database, "lamp", "x", "lamp.lob");
    fs::rename(test.folder.path() / "lamp.lob", test.folder.path() / "moved.lob");
    static std::string answer;
    answer = test.folder.file("moved.lob");
    GObjectFilePlacement::s_AskFunction = [](GFile& file) {
        file = answer.c_str();
        return true;
    };

    const std::string note = test.note_of("lamp");
    GObjectFilePlacement::s_AskFunction = nullptr;

    EXPECT_EQ(note, "x");
    EXPECT_EQ(external(test.database, "lamp")->get_filename(),
              native(test.folder.file("moved.lob")));
}

TEST(ODB_ObjectDatabaseFormat, ReadsALibraryAsOneObject)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    test.database.close();
    std::ofstream(test.folder.file("other.txt")) << "no library";
    const auto& format = ODB_ExternalObject::ObjectDatabaseFormat();
    auto& asked = const_cast<ODB_ObjectDatabaseFormat&>(format);

    EXPECT_EQ(&format, &ODB_ExternalObject::ObjectDatabaseFormat());
    EXPECT_EQ(asked.read_object_class_name(test.file().c_str()), "ObjectDatabase");
    EXPECT_EQ(asked.read_object_class_name(test.folder.file("other.txt").c_str()), "");
    EXPECT_EQ(asked.read_object_class_name(test.folder.file("missing").c_str()), "");
    EXPECT_EQ(format.read_object(test.folder.file("other.txt").c_str()), nullptr);
    TestNote note("x");
    EXPECT_EQ(format.write_object(test.folder.file("new.odb").c_str(), &note), 0);
    EXPECT_FALSE(fs::exists(test.folder.path() / "new.odb"));

    const GObjectPlace place(test.file().c_str(), false, &format);
    const std::unique_ptr<GObject> object(place.get(false));
    auto* const database = zmr::class_cast<ObjectDatabase>(object.get());
    ASSERT_NE(database, nullptr);
    EXPECT_EQ(database->io_mode(), 3);
    EXPECT_EQ(OdbTest::note_of(*database, "lamp"), "a lamp");
    EXPECT_EQ(place.get_class(), &ObjectDatabase::metaclass_);
}
