#include "odb/ODB_TextDescriptionAttribute.h"

#include "TestObjects.h"
#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "odb/ODB_AttributesArray.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using Bytes = std::vector<unsigned char>;

Bytes bytes_of(GStreamable& object)
{
    ompstream out;
    object.write(out);
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

ODB_Mediator& lamp_of(OdbTest& test)
{
    test.add("lamp", "x");
    return *test.database.get_mediator(GString("lamp"));
}

std::unique_ptr<ODB_TextDescriptionAttribute> text_of(ODB_Mediator& mediator)
{
    return std::unique_ptr<ODB_TextDescriptionAttribute>(
        zmr::class_cast<ODB_TextDescriptionAttribute>(
            mediator.get_attribute(&ODB_TextDescriptionAttribute::metaclass_)));
}

void hear(GCallBackReason, void*, void* user)
{
    ++*static_cast<int*>(user);
}

}  // namespace

TEST(ODB_ObjectAttribute, Stream_IsOneByteOfZero)
{
    ODB_ObjectAttribute attribute;

    EXPECT_EQ(bytes_of(attribute), Bytes{0});
    const Bytes newer{9};
    impstream in((std::span<const unsigned char>(newer)));
    EXPECT_NO_THROW(attribute.read(in));  // the byte says nothing
    EXPECT_STREQ(attribute.getClassName(), "ODB_ObjectAttribute");
}

TEST(ODB_ObjectAttribute, Copy_BelongsToTheSameEntry)
{
    OdbTest test;
    ODB_Mediator& lamp = lamp_of(test);
    TestRating rating(2);
    EXPECT_EQ(rating.get_mediator(), nullptr);
    lamp.set_attribute(&rating, false);
    EXPECT_EQ(rating.get_mediator(), &lamp);

    const ODB_ObjectAttribute copy(rating);
    ODB_ObjectAttribute assigned;
    assigned = rating;

    EXPECT_EQ(copy.get_mediator(), &lamp);
    EXPECT_EQ(assigned.get_mediator(), &lamp);
    EXPECT_EQ(copy.get_DB(), &test.database);
}

TEST(ODB_ObjectAttribute, ResourceName_IsTheEntrysWithTheClassAsType)
{
    OdbTest test;
    TestNote note("x");
    const GResourcePath path = path_of({"a", "b"});
    test.database.append_object(&note, path, GString("lamp"), nullptr);
    TestRating rating(2);
    test.database.get_mediator(path, GString("lamp"))->set_attribute(&rating, false);

    GResourceFullName name;
    rating.get_DB_resname(name);

    EXPECT_TRUE(name == GResourceFullName(path, GString("lamp"), GString("TestRating")));
    EXPECT_TRUE(test.database.exist(name));
}

TEST(ODB_ObjectAttribute, Modified_WritesBackAndTellsNobody)
{
    OdbTest test;
    ODB_Mediator& lamp = lamp_of(test);
    lamp.set_attribute(new TestRating(2), true);
    const std::unique_ptr<ODB_ObjectAttribute> attribute(
        lamp.get_attribute(&TestRating::metaclass_));
    auto* const rating = zmr::class_cast<TestRating>(attribute.get());
    ASSERT_NE(rating, nullptr);
    int heard = 0;
    ResourceFile::RegisterCallback(ObjectDatabase::Reason_MediatorModified, &hear, &heard);

    rating->stars = 5;
    rating->modified();

    ResourceFile::UnRegisterCallback(GAnyReason, &hear, &heard);
    EXPECT_EQ(heard, 0);
    const std::unique_ptr<ODB_ObjectAttribute> again(lamp.get_attribute(&TestRating::metaclass_));
    EXPECT_EQ(zmr::class_cast<TestRating>(again.get())->stars, 5);
}

TEST(ODB_TextDescriptionAttribute, Stream_IsTwoVersionBytesAndTheText)
{
    ODB_TextDescriptionAttribute attribute("A lamp");
    ompstream expected;
    expected.writeByte(0);
    expected.writeByte(0);
    expected << GString("A lamp");

    const Bytes bytes = bytes_of(attribute);

    EXPECT_TRUE(std::ranges::equal(bytes, expected.bytes()));
    ODB_TextDescriptionAttribute back;
    impstream in((std::span<const unsigned char>(bytes)));
    back.read(in);
    EXPECT_EQ(back.get_text(), "A lamp");
}

TEST(ODB_TextDescriptionAttribute, EveryCutLength_EndsInAnExceptionAndKeepsTheText)
{
    ODB_TextDescriptionAttribute attribute("A lamp");
    const Bytes bytes = bytes_of(attribute);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        impstream in(std::span<const unsigned char>(bytes.data(), length));
        ODB_TextDescriptionAttribute back("old");
        EXPECT_THROW(back.read(in), GStreamException) << length;
        EXPECT_EQ(back.get_text(), "old");
    }
}

TEST(ODB_TextDescriptionAttribute, SetText_GoesToTheStoreAtOnce)
{
    OdbTest test;
    ODB_Mediator& lamp = lamp_of(test);
    lamp.set_attribute(new ODB_TextDescriptionAttribute("A lamp"), true);
    const auto attribute = text_of(lamp);
    ASSERT_NE(attribute, nullptr);
    EXPECT_EQ(attribute->get_text(), "A lamp");

    attribute->set_text("A red lamp");

    EXPECT_EQ(text_of(lamp)->get_text(), "A red lamp");
    attribute->set_text(nullptr);
    EXPECT_EQ(text_of(lamp)->get_text(), "");
}

TEST(ODB_TextDescriptionAttribute, CopyAndAssignment_TakeTheText)
{
    const ODB_TextDescriptionAttribute first("A lamp");
    const ODB_TextDescriptionAttribute copy(first);
    ODB_TextDescriptionAttribute assigned("old");
    assigned = first;

    EXPECT_EQ(copy.get_text(), "A lamp");
    EXPECT_EQ(assigned.get_text(), "A lamp");
}

TEST(ODB_TextDescriptionAttribute, IsBuiltByName)
{
    const GMetaClass* const metaclass = GMetaClass::FindByName("ODB_TextDescriptionAttribute");
    ASSERT_NE(metaclass, nullptr);
    const std::unique_ptr<GRTTIObject> built(metaclass->buildObject());

    EXPECT_NE(zmr::class_cast<ODB_TextDescriptionAttribute>(built.get()), nullptr);
}

namespace {

/// An attribute of a class that is registered only as long as an object `Registered` lives.
class Passing : public ODB_ObjectAttribute {
public:
    struct Registered {
        Registered() { Passing::metaclass = &own; }
        ~Registered() { Passing::metaclass = nullptr; }
        Registered(const Registered&) = delete;
        Registered& operator=(const Registered&) = delete;
        GMetaClass own{nullptr,
                       ODB_ObjectAttribute::gTypeInfo_,
                       "PassingAttribute",
                       nullptr,
                       nullptr,
                       static_cast<const GMetaClass*>(&ODB_ObjectAttribute::metaclass_)};
    };
    const GMetaClass* getMetaClass() const override { return metaclass; }
    void write(opstream& out) override
    {
        out.writeByte(7);
        out.writeDWord(0xCAFE);
    }
    static inline const GMetaClass* metaclass = nullptr;
};

Bytes stored_bytes(const ObjectDatabase& database, const char* name)
{
    ompstream out;
    EXPECT_TRUE(database.extract_to(
        out, GResourceFullName(GResourcePath(), GString(name), GString("PassingAttribute")),
        false));
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

}  // namespace

TEST(ODB_ObjectAttribute, UnknownClass_IsNoAttributeButSurvivesRenameCopyAndPackByteForByte)
{
    OdbTest test;
    ODB_Mediator& lamp = lamp_of(test);
    {
        const Passing::Registered known;
        Passing passing;
        lamp.set_attribute(&passing, false);
    }
    const Bytes bytes = stored_bytes(test.database, "lamp");
    ASSERT_GT(bytes.size(), 5u);
    EXPECT_EQ(lamp.get_attribute(GString("PassingAttribute")), nullptr);
    ODB_AttributesArray attributes;
    lamp.get_attributes(attributes);
    EXPECT_EQ(attributes.count, 0);

    test.database.rename_object(GString("lamp"), GString("light"));
    EXPECT_EQ(stored_bytes(test.database, "light"), bytes);
    ObjectDatabase other(test.folder.file("other.odb").c_str(), GIO::OpenReadWrite);
    test.database.copy_to(other);
    other.pack();

    EXPECT_EQ(stored_bytes(other, "light"), bytes);
}
