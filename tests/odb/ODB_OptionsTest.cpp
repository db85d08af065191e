#include "TestObjects.h"
#include "foundation/mpstream.h"
#include "odb/ODB_Options.h"
#include "platform/FileDevice.h"
#include "store/ResourceFileServer.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

namespace {

const GResourceFullName kRecord(GResourcePath(), GString(".ODB options"), GString(".ODB options"));

/// Writes down what is called, and hands on another object when it is told to. Conversions stay for
/// the life of the process, so that they do nothing while no test listens.
class Recorder : public ObjectDatabase::ConversionObject {
public:
    explicit Recorder(int number) : number_(number) {}

    void prepare_to_loading(ObjectDatabase&, const GResourceFullName& name) override
    {
        if (listening)
            calls.push_back("prepare " + std::to_string(number_) + " " + name.name.text);
    }
    GStreamable* convert_after_loading(GStreamable* object, ObjectDatabase&,
                                       const GResourceFullName&) override
    {
        if (!listening)
            return object;
        calls.push_back("convert " + std::to_string(number_) + (object == nullptr ? " null" : ""));
        if (number_ != 2 || object == nullptr)
            return object;
        GStreamable::Destroy(object);
        return new TestNote("converted");
    }

    static bool listening;
    static std::vector<std::string> calls;

private:
    int number_;
};

bool Recorder::listening = false;
std::vector<std::string> Recorder::calls;

}  // namespace

TEST(ODB_Options, NoRecord_IsInternalObjectAndIsWrittenWhenWritable)
{
    OdbTest test;
    ASSERT_FALSE(test.database.exist(kRecord));

    EXPECT_EQ(test.database.get_default_mediator(), &ODB_InternalObject::metaclass_);

    EXPECT_TRUE(test.database.exist(kRecord));
}

TEST(ODB_Options, NoRecord_ReadOnlyFile_IsInternalObjectAndNothingIsWritten)
{
    OdbTest test;
    test.add("lamp", "x");
    test.database.close();
    ObjectDatabase reader(test.file().c_str(), GIO::OpenRead);

    EXPECT_EQ(reader.get_default_mediator(), &ODB_InternalObject::metaclass_);

    EXPECT_FALSE(reader.exist(kRecord));
}

TEST(ODB_Options, GetDefaultMediator_Twice_ReadsTheFileOnce)
{
    OdbTest test;
    test.database.set_default_mediator(&TestPhantom::metaclass_);
    test.database.close();
    ObjectDatabase again(test.file().c_str(), GIO::OpenRead);
    ASSERT_EQ(again.get_default_mediator(), &TestPhantom::metaclass_);

    // From here on nothing can be read any more.
    zmr::FileError error;
    const auto device = zmr::FileSystemDevice::Real().open(test.file(), zmr::FileAccess::ReadWrite,
                                                           zmr::FileCreate::OpenExisting,
                                                           zmr::FileShare::ReadWrite, error);
    ASSERT_NE(device, nullptr) << error.text();
    ASSERT_FALSE(device->set_length(0));

    EXPECT_EQ(again.get_default_mediator(), &TestPhantom::metaclass_);
}

TEST(ODB_Options, SetDefaultMediator_IsKeptInTheFile)
{
    OdbTest test;
    test.database.set_default_mediator(&TestPhantom::metaclass_);
    test.database.close();

    ObjectDatabase again(test.file().c_str(), GIO::OpenRead);

    EXPECT_EQ(again.get_default_mediator(), &TestPhantom::metaclass_);
}

TEST(ODB_Options, RecordOfAnotherClass_CountsAsNone)
{
    OdbTest test;
    TestNote note("not options");
    test.database.put(&note, kRecord, false);

    EXPECT_EQ(test.database.get_default_mediator(), &ODB_InternalObject::metaclass_);
}

TEST(ODB_Options, Reopened_TheFormerFilesOptionsAreForgotten)
{
    OdbTest test;
    test.database.set_default_mediator(&TestPhantom::metaclass_);

    test.database.open(test.folder.file("second.odb").c_str(), GIO::OpenReadWrite);

    EXPECT_EQ(test.database.get_default_mediator(), &ODB_InternalObject::metaclass_);
}

TEST(ODB_Options, Stream_RoundTrip)
{
    ODB_Options options;
    options.default_mediator = &TestPhantom::metaclass_;

    const std::unique_ptr<GStreamable> copy(options.clone(true));

    const auto* const back = zmr::class_cast<ODB_Options>(copy.get());
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->default_mediator, &TestPhantom::metaclass_);
}

TEST(ODB_Options, Stream_IsAByteAndTheClassName_AndReadsAnyVersion)
{
    ODB_Options options;
    ompstream out;
    options.write(out);
    impstream in(out.bytes());
    EXPECT_EQ(in.readByte(), 0);
    GString name;
    in >> name;
    EXPECT_EQ(name, "ODB_InternalObject");
    EXPECT_EQ(in.remaining(), 0);

    constexpr unsigned char kVersions[] = {0, 1, 255};
    for (const unsigned char version : kVersions) {
        ompstream written;
        written.writeByte(version);
        written << &TestPhantom::metaclass_;
        impstream read(written.bytes());
        options.read(read);
        EXPECT_EQ(options.default_mediator, &TestPhantom::metaclass_);
    }
}

TEST(ODB_Options, ClassThatIsNotRegisteredHere_ReadsAsNull)
{
    ODB_Options options;
    ompstream out;
    out.writeByte(0);
    out.writeString("NoSuchMediator");
    impstream in(out.bytes());

    options.read(in);

    EXPECT_EQ(options.default_mediator, nullptr);
}

TEST(ODB_Options, Record_LiesInTheCurrentDirectoryAndIsSharedByTheClients)
{
    OdbTest test;
    test.database.current_path = path_of({"d"});
    ObjectDatabase other(test.file().c_str(), GIO::OpenReadWrite);
    other.current_path = path_of({"d"});

    test.database.set_default_mediator(&TestPhantom::metaclass_);

    EXPECT_FALSE(test.database.exist(kRecord));
    EXPECT_TRUE(
        test.database.exist({path_of({"d"}), GString(".ODB options"), GString(".ODB options")}));
    EXPECT_EQ(other.get_default_mediator(), &TestPhantom::metaclass_);
}

TEST(ODB_Options, Append_DoesNotAskForTheDefaultMediator)
{
    OdbTest test;
    test.database.set_default_mediator(&TestPhantom::metaclass_);

    test.add("lamp", "x");

    EXPECT_TRUE(test.database.get_mediator(GString("lamp"))
                    ->hasTheSameClassAs(&ODB_InternalObject::metaclass_));
}

TEST(ObjectDatabaseConversions, NoneRegistered_GetObjectTakesAndReleasesTheLock)
{
    OdbTest test;
    test.add("lamp", "a lamp");

    EXPECT_EQ(test.note_of("lamp"), "a lamp");

    std::thread other([&] { const GSingleLock locked(test.database.server->lock); });
    other.join();
    EXPECT_EQ(test.note_of("lamp"), "a lamp");
}

TEST(ObjectDatabaseConversions, Registered_RunFromTheLastToTheFirstAndHandTheObjectOn)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    ObjectDatabase::AddConversion(nullptr);
    ObjectDatabase::AddConversion(new Recorder(1));
    ObjectDatabase::AddConversion(new Recorder(2));
    Recorder::listening = true;

    const std::string note = test.note_of("lamp");
    test.database.append_object(nullptr, GString("empty"), nullptr);
    const std::string none = test.note_of("empty");

    Recorder::listening = false;
    EXPECT_EQ(note, "converted");
    EXPECT_EQ(none, "(none)");
    const std::vector<std::string> expected = {
        "prepare 2 lamp",  "prepare 1 lamp",  "convert 2",      "convert 1",
        "prepare 2 empty", "prepare 1 empty", "convert 2 null", "convert 1 null"};
    EXPECT_EQ(Recorder::calls, expected);
}
