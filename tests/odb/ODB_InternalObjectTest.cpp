#include "TestObjects.h"
#include "foundation/mpstream.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

GResourceFullName object_resource(const GResourcePath& path, const char* name)
{
    return {path, GString(name), ODB_InternalObject::GetDefaultResourceType()};
}

ODB_InternalObject* internal(ODB_Mediator* mediator)
{
    return zmr::class_cast<ODB_InternalObject>(mediator);
}

std::vector<unsigned char> stream_of(GStreamable& object)
{
    ompstream out;
    out.writePointer(&object);
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

/// A module's own mediator.
class NumberedMediator : public ODB_InternalObject {
    G_DECLARE_CLASS(NumberedMediator)

public:
    void read(ipstream& in) override
    {
        number = in.readByte();
        ODB_InternalObject::read(in);
    }
    void write(opstream& out) override
    {
        out.writeByte(number);
        ODB_InternalObject::write(out);
    }

    unsigned char number = 0;
};

G_DEFINE_CLASS(NumberedMediator, ODB_InternalObject);

}  // namespace

TEST(ODB_InternalObject, Clone_OfEachNaming_HasWhatItsStreamHolds)
{
    OdbTest test;
    TestNote object("x");
    const GResourceFullName place(path_of({"pool"}), GString("one"), GString("object"));
    test.database.append_object(&object, GString("own"), nullptr);
    test.database.append_object(&object, GString("name"),
                                new ODB_InternalObject(GString("elsewhere"), GString("type")));
    test.database.append_object(&object, GString("place"), new ODB_InternalObject(place));
    for (const char* name : {"own", "name", "place"}) {
        ODB_Mediator* const mediator = test.database.get_mediator(GString(name));
        const std::vector<unsigned char> bytes = stream_of(*mediator);
        impstream in(bytes);
        auto* const read = in.read_pointer<ODB_InternalObject>();
        auto* const clone = internal(zmr::class_cast<ODB_Mediator>(mediator->clone(true)));
        ASSERT_NE(clone, nullptr);

        EXPECT_EQ(stream_of(*clone), stream_of(*read)) << name;
        EXPECT_EQ(clone->get_object_class_identifier(), &TestNote::metaclass_);
        EXPECT_EQ(clone->get_DB(), nullptr);
        EXPECT_TRUE(clone->get_DB_resname().is_empty());
        GStreamable::Destroy(read);
        GStreamable::Destroy(clone);
    }
}

TEST(ODB_InternalObject, Clone_OfADerivedClass_IsOfThatClassWithItsFields)
{
    auto* const mediator = new NumberedMediator;
    mediator->number = 7;

    auto* const clone = zmr::class_cast<NumberedMediator>(mediator->clone(true));

    ASSERT_NE(clone, nullptr);
    EXPECT_EQ(clone->number, 7);
    GStreamable::Destroy(clone);
    GStreamable::Destroy(mediator);
}

TEST(ODB_InternalObject, OwnPlace_RenameNeedsNoChangeOfTheMediator)
{
    OdbTest test;
    test.add("lamp", "a lamp");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));

    test.database.rename_object(GString("lamp"), GString("vase"));

    EXPECT_TRUE(test.database.exist(object_resource(GResourcePath(), "vase")));
    EXPECT_FALSE(test.database.exist(object_resource(GResourcePath(), "lamp")));
    EXPECT_TRUE(internal(mediator)->get_resource_name() ==
                object_resource(GResourcePath(), "vase"));
    EXPECT_EQ(test.note_of("vase"), "a lamp");
    test.database.close();
    ObjectDatabase again(test.file().c_str(), GIO::OpenRead);
    EXPECT_EQ(OdbTest::note_of(again, "vase"), "a lamp");
}

TEST(ODB_InternalObject, FixedName_InAnotherDirectory_PathMovesAndResourceStaysUnlessItsNameIsEqual)
{
    OdbTest test;
    TestNote object("x");
    const GString type("own type");
    test.database.append_object(&object, path_of({"a"}), GString("entry"),
                                new ODB_InternalObject(GString("elsewhere"), type));
    test.database.append_object(&object, path_of({"a"}), GString("same"),
                                new ODB_InternalObject(GString("same"), type));
    ASSERT_TRUE(test.database.exist({path_of({"a"}), GString("elsewhere"), type}));

    test.database.rename_object(path_of({"a"}), GString("entry"), path_of({"b"}), GString("entry"));
    test.database.rename_object(path_of({"a"}), GString("same"), path_of({"b"}), GString("same"));

    const GResourceFullName follows =
        internal(test.database.get_mediator(path_of({"b"}), GString("entry")))->get_resource_name();
    EXPECT_TRUE(follows.path() == path_of({"b"}));
    EXPECT_EQ(follows.name, "elsewhere");
    EXPECT_TRUE(test.database.exist({path_of({"a"}), GString("elsewhere"), type}));
    EXPECT_FALSE(test.database.exist({path_of({"b"}), GString("elsewhere"), type}));
    EXPECT_TRUE(test.database.exist({path_of({"b"}), GString("same"), type}));
    const std::unique_ptr<GStreamable> same(
        test.database.get_object(path_of({"b"}), GString("same")));
    EXPECT_NE(same, nullptr);
}

TEST(ODB_InternalObject, FixedPlace_StaysWhereItIs)
{
    OdbTest test;
    TestNote object("shared");
    const GResourceFullName place(path_of({"pool"}), GString("one"), GString("object"));
    test.database.append_object(&object, GString("first"), new ODB_InternalObject(place));
    test.database.append_object(nullptr, GString("second"), new ODB_InternalObject(place));

    test.database.rename_object(GString("first"), GString("third"));

    EXPECT_TRUE(test.database.exist(place));
    EXPECT_EQ(test.note_of("third"), "shared");
    EXPECT_EQ(test.note_of("second"), "shared");
    EXPECT_EQ(test.database.get_mediator(GString("second"))->get_object_class_name(), "TestNote");
}

TEST(ODB_InternalObject, StoreNull_UnderANameWithNoResource_HasTheStoresAnswer)
{
    OdbTest test;

    test.database.append_object(nullptr, GString("empty"), nullptr);

    const ODB_Mediator* const mediator = test.database.get_mediator(GString("empty"));
    ASSERT_NE(mediator, nullptr);
    EXPECT_EQ(mediator->get_object_class_name(), "");
    EXPECT_EQ(mediator->get_object_class_identifier(), nullptr);
    EXPECT_EQ(test.note_of("empty"), "(none)");
}

TEST(ODB_InternalObject, RemoveObject_TakesAResourceOfItsOwnToo)
{
    OdbTest test;
    TestNote object("x");
    const GResourceFullName place(path_of({"pool"}), GString("one"), GString("object"));
    test.database.append_object(&object, GString("first"), new ODB_InternalObject(place));

    test.database.remove_object(GString("first"));

    EXPECT_FALSE(test.database.exist(place));
}

TEST(ODB_InternalObject, CopyToAnotherFile_FixedPlace_CopiesTheResource)
{
    OdbTest test;
    TestNote object("x");
    const GResourceFullName place(path_of({"pool"}), GString("one"), GString("object"));
    test.database.append_object(&object, GString("first"), new ODB_InternalObject(place));
    ObjectDatabase target(test.folder.file("other.odb").c_str(), GIO::OpenReadWrite);

    test.database.copy_object_to(GString("first"), target, GString("copy"));

    EXPECT_TRUE(target.exist(place));
    EXPECT_EQ(OdbTest::note_of(target, "copy"), "x");
}

TEST(ODB_InternalObject, Read_EveryOlderVersion_GivesTheNamingOfItsTime)
{
    const auto read_back = [](unsigned char version, auto write_items) {
        ompstream out;
        out.writeByte(2);
        out.writeString("ODB_InternalObject");
        out.writeByte(version);
        out.writeByte(3);
        out << GString("TestNote");
        write_items(out);
        impstream in(out.bytes());
        return in.read_pointer<ODB_InternalObject>();
    };
    const GResourceFullName place(path_of({"p"}), GString("n"), GString("t"));
    // Detached, an own place is the empty name under the default type; the others keep what they
    // read, with a fixed name's path following the empty one.
    struct Case {
        ODB_InternalObject* mediator;
        GResourceFullName expected;
    };
    const GResourceFullName own(GResourcePath(), GString(),
                                ODB_InternalObject::GetDefaultResourceType());
    const GResourceFullName fixed_name(GResourcePath(), GString("n"), GString("t"));
    const Case cases[] = {
        {read_back(0, [](opstream& out) { out << GString("n") << GString("t"); }), fixed_name},
        {read_back(1, [&](opstream& out) { out << place; }), own},
        {read_back(2,
                   [&](opstream& out) {
                       out << place;
                       out.writeByte(0);
                   }),
         own},
        {read_back(2,
                   [&](opstream& out) {
                       out << place;
                       out.writeByte(1);
                   }),
         place},
        {read_back(3,
                   [&](opstream& out) {
                       out << place;
                       out.writeByte(1);
                   }),
         fixed_name},
        {read_back(9,
                   [&](opstream& out) {
                       out << place;
                       out.writeByte(2);
                   }),
         place},
    };
    for (const Case& one : cases) {
        ASSERT_NE(one.mediator, nullptr);
        EXPECT_TRUE(one.mediator->get_resource_name() == one.expected);
        GStreamable::Destroy(one.mediator);
    }
}
