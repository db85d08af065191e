#include "TestObjects.h"
#include "foundation/mpstream.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_AttributesArray.h"
#include "odb/ODB_ContentsFilter.h"
#include "odb/ODB_MediatorsArray.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

/// The bytes of a mediator's stream as it lies in a file, with a class name of the test's choice.
std::vector<unsigned char> mediator_bytes(const std::function<void(opstream&)>& write_base)
{
    ompstream out;
    out.writeByte(2);
    out.writeString("ODB_InternalObject");
    out.writeByte(3);
    write_base(out);
    out << GResourceFullName();
    out.writeByte(0);
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

std::unique_ptr<ODB_Mediator, void (*)(ODB_Mediator*)> read_mediator(
    const std::vector<unsigned char>& bytes)
{
    impstream in((std::span<const unsigned char>(bytes)));
    return {in.read_pointer<ODB_Mediator>(), [](ODB_Mediator* m) { GStreamable::Destroy(m); }};
}

void hear(GCallBackReason, void*, void* user)
{
    ++*static_cast<int*>(user);
}

class ByName : public ODB_ContentsFilter {
public:
    explicit ByName(const char* wanted) : wanted_(wanted) {}
    unsigned char accept(const ODB_Mediator& mediator) override
    {
        return mediator.get_DB_key() == wanted_ ? 1 : 0;
    }

private:
    GString wanted_;
};

PixelMap* new_icon(int width)
{
    return new PixelMap(width, 2, AbstractImage::MapFormat(6), nullptr);
}

}  // namespace

TEST(ODB_Mediator, UnknownObjectClass_NameIsKeptAndIdentifierIsNull)
{
    const auto bytes = mediator_bytes([](opstream& out) {
        out.writeByte(3);
        out << GString("ClassOfAnotherProgram");
    });
    const auto mediator = read_mediator(bytes);
    ASSERT_NE(mediator, nullptr);
    EXPECT_EQ(mediator->get_object_class_name(), "ClassOfAnotherProgram");
    EXPECT_EQ(mediator->get_object_class_identifier(), nullptr);

    ompstream out;
    out.writePointer(mediator.get());

    const auto written = out.bytes();
    EXPECT_EQ(std::vector<unsigned char>(written.begin(), written.end()), bytes);
}

TEST(ODB_Mediator, Read_EveryOlderVersion_DropsWhatItCarried)
{
    const auto array_of_one = [](opstream& out) {
        ODB_AttributesArray array;
        TestRating rating(3);
        array.v_insert(&rating);
        array.write(out);
    };
    const std::vector<std::function<void(opstream&)>> versions = {
        [&](opstream& out) {
            out.writeByte(0);
            out << GString("TestNote") << GFile("old.lob");
            out.writeByte(1);
            array_of_one(out);
        },
        [&](opstream& out) {
            out.writeByte(0);
            out << GString("TestNote") << GFile("old.lob");
            out.writeByte(0);
        },
        [&](opstream& out) {
            out.writeByte(1);
            out << GString("TestNote");
            out.writeByte(1);
            out << GFile("old.lob");
            out.writeByte(1);
            array_of_one(out);
        },
        [&](opstream& out) {
            out.writeByte(1);
            out << GString("TestNote");
            out.writeByte(0);
            out.writeByte(0);
        },
        [&](opstream& out) {
            out.writeByte(2);
            out << GString("TestNote");
            out.writeByte(1);
            out << GFile("old.lob");
        },
        [&](opstream& out) {
            out.writeByte(2);
            out << GString("TestNote");
            out.writeByte(0);
        },
    };
    for (std::size_t i = 0; i < versions.size(); ++i) {
        const auto mediator = read_mediator(mediator_bytes(versions[i]));
        ASSERT_NE(mediator, nullptr) << "stream " << i;
        EXPECT_EQ(mediator->get_object_class_identifier(), &TestNote::metaclass_) << "stream " << i;
    }
    EXPECT_EQ(TestRating::alive, 0);
}

TEST(ODB_Mediator, SetIcon_NullWithoutLoadedIcon_CallsNoModified)
{
    OdbTest test;
    test.add("lamp", "x");
    int heard = 0;
    ResourceFile::RegisterCallback(ObjectDatabase::Reason_MediatorModified, &hear, &heard);

    test.database.get_mediator(GString("lamp"))->set_icon(static_cast<PixelMap*>(nullptr));

    ResourceFile::UnRegisterCallback(GAnyReason, &hear, &heard);
    EXPECT_EQ(heard, 0);
}

TEST(ODB_Mediator, SetIcon_Null_DropsTheLoadedIconAndLeavesTheStoredOne)
{
    OdbTest test;
    test.add("lamp", "x");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    mediator->set_icon(new_icon(5));
    int heard = 0;
    ResourceFile::RegisterCallback(ObjectDatabase::Reason_MediatorModified, &hear, &heard);

    mediator->set_icon(static_cast<PixelMap*>(nullptr));

    ResourceFile::UnRegisterCallback(GAnyReason, &hear, &heard);
    EXPECT_EQ(heard, 1);
    ASSERT_NE(mediator->get_icon(), nullptr);
    EXPECT_EQ(mediator->get_icon()->get_width(), 5);
}

TEST(ODB_Mediator, SetIcon_TheLoadedOneAgain_KeepsIt)
{
    OdbTest test;
    test.add("lamp", "x");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    mediator->set_icon(new_icon(5));

    mediator->set_icon(const_cast<PixelMap*>(mediator->get_icon()));

    EXPECT_EQ(mediator->get_icon()->get_width(), 5);
}

TEST(ODB_Mediator, UnloadIcon_NextGetReadsItAnew)
{
    OdbTest test;
    test.add("lamp", "x");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    EXPECT_FALSE(mediator->has_icon());
    mediator->set_icon(new_icon(5));

    mediator->unload_icon();

    EXPECT_TRUE(mediator->has_icon());
    ASSERT_NE(mediator->get_icon(), nullptr);
    EXPECT_EQ(mediator->get_icon()->get_width(), 5);
}

TEST(ODB_Mediator, GetAttribute_OfTheMediatorsType_IsNullAndDestroysWhatItRead)
{
    OdbTest test;
    test.add("lamp", "x");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    const int alive = TestNote::alive;

    EXPECT_EQ(mediator->get_attribute(ObjectDatabase::MediatorResourceType), nullptr);
    EXPECT_EQ(mediator->get_attribute(ODB_InternalObject::GetDefaultResourceType()), nullptr);

    EXPECT_EQ(TestNote::alive, alive);
}

TEST(ODB_Mediator, GetAttribute_ByAClassThatIsNone_IsNull)
{
    OdbTest test;
    test.add("lamp", "x");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));

    EXPECT_EQ(mediator->get_attribute(static_cast<const GMetaClass*>(nullptr)), nullptr);
    EXPECT_EQ(mediator->get_attribute(&TestNote::metaclass_), nullptr);
    EXPECT_EQ(mediator->get_attribute(&TestRating::metaclass_), nullptr);
}

TEST(ODB_Mediator, Attributes_SetGetListAndRemove)
{
    OdbTest test;
    test.add("lamp", "x");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    int heard = 0;
    ResourceFile::RegisterCallback(ObjectDatabase::Reason_MediatorModified, &hear, &heard);
    mediator->set_attribute(new TestRating(4), true);
    ResourceFile::UnRegisterCallback(GAnyReason, &hear, &heard);

    {
        ODB_AttributesArray all;
        mediator->get_attributes(all);
        ASSERT_EQ(all.count, 1);
        EXPECT_EQ(all.at(0).get_mediator(), mediator);
    }
    {
        const std::unique_ptr<ODB_ObjectAttribute> one(
            mediator->get_attribute(&TestRating::metaclass_));
        static_cast<TestRating&>(*one).stars = 1;
        one->modified();
    }
    const std::unique_ptr<ODB_ObjectAttribute> changed(
        mediator->get_attribute(&TestRating::metaclass_));
    EXPECT_EQ(static_cast<TestRating&>(*changed).stars, 1);
    mediator->remove_attribute(&TestRating::metaclass_);

    EXPECT_EQ(mediator->get_attribute(&TestRating::metaclass_), nullptr);
    EXPECT_EQ(heard, 0) << "setting an attribute tells nobody";
}

TEST(ODB_Mediator, Clone_HasTheStreamedFieldsAndNoIcon)
{
    OdbTest test;
    test.add("lamp", "x");
    ODB_Mediator* const mediator = test.database.get_mediator(GString("lamp"));
    mediator->set_icon(new_icon(5));

    auto* const copy = zmr::class_cast<ODB_Mediator>(mediator->clone(true));

    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(copy->hasTheSameClassAs(&ODB_InternalObject::metaclass_));
    EXPECT_EQ(copy->get_object_class_name(), "TestNote");
    EXPECT_EQ(copy->get_DB(), nullptr);
    GStreamable::Destroy(copy);
    EXPECT_EQ(mediator->get_icon()->get_width(), 5);
}

TEST(ODB_Mediator, IsReference_NullAndOthers_False)
{
    OdbTest test;
    test.add("lamp", "x");

    EXPECT_FALSE(ODB_Mediator::IsReference(nullptr));
    EXPECT_FALSE(test.database.get_mediator(GString("lamp"))->is_reference());
}

TEST(ODB_MediatorsArray, Find_WithDuplicates_GivesOneOfThem)
{
    OdbTest test;
    TestNote object("x");
    for (const char* directory : {"a", "b", "c"})
        test.database.append_object(&object, path_of({directory}), GString("same"), nullptr);
    test.add("other", "x");
    ODB_MediatorsArray all;
    test.database.get_contents(GResourcePath(), all, true);
    ASSERT_EQ(all.count, 4);

    const long found = all.find(GString("same"));

    ASSERT_GE(found, 0);
    EXPECT_EQ(all.at(found).get_DB_key(), "same");
    EXPECT_EQ(all.find(GString("missing")), -1);
}

TEST(ODB_MediatorsArray, ApplyFilter_TakesOutTheRefusedAndKeepsTheOrder)
{
    OdbTest test;
    for (const char* name : {"a", "b", "c"})
        test.add(name, "x");
    ODB_MediatorsArray all;
    test.database.get_contents(all, false);

    all.apply_filter(ByName("b"));

    ASSERT_EQ(all.count, 1);
    EXPECT_EQ(all.at(0).get_DB_key(), "b");
}

TEST(ODB_MediatorsArray, Assignment_KeepsTheSourcesOrder)
{
    OdbTest test;
    for (const char* name : {"a", "b"})
        test.add(name, "x");
    ODB_MediatorsArray source;
    source.v_at_insert(0, test.database.get_mediator(GString("a")));
    source.v_at_insert(0, test.database.get_mediator(GString("b")));

    ODB_MediatorsArray copy;
    copy = source;

    ASSERT_EQ(copy.count, 2);
    EXPECT_EQ(copy.at(0).get_DB_key(), "b");
    EXPECT_EQ(copy.at(1).get_DB_key(), "a");
}

TEST(ODB_MediatorsArray, Order_IsByUnsignedBytes)
{
    OdbTest test;
    for (const char* name : {"\xC3\xA4", "z", "A"})
        test.add(name, "x");

    GStringCollection names;
    test.database.get_names(names, false);

    ASSERT_EQ(names.count, 3);
    EXPECT_STREQ(names.at(0), "A");
    EXPECT_STREQ(names.at(1), "z");
    EXPECT_STREQ(names.at(2), "\xC3\xA4");
}
