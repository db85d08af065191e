#include "TestObjects.h"
#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "odb/ODB_AttributesArray.h"
#include "odb/ODB_UnknownAttribute.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

Bytes written(ODB_AttributesArray& array)
{
    ompstream out;
    array.write(out);
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

/// An array with one attribute of a class that nobody registered, between two ratings.
Bytes array_with_unknown()
{
    ompstream block;
    block.writeByte(2);
    block.writeString("AttributeOfAnotherProgram");
    block.writeDWord(0x12345678);
    TestRating first(1);
    TestRating last(3);
    ompstream out;
    out.writeByte(0);
    out.writeDWord(3);
    for (TestRating* rating : {&first, static_cast<TestRating*>(nullptr), &last}) {
        ompstream known;
        if (rating != nullptr)
            known.writePointer(rating);
        const auto bytes = rating != nullptr ? known.bytes() : block.bytes();
        out.writeDWord(static_cast<std::uint32_t>(bytes.size()));
        out.writeBytes(bytes.data(), static_cast<long>(bytes.size()));
    }
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

}  // namespace

TEST(ODB_AttributesArray, UnknownClass_ReadsAsBytesAndWritesBackByteForByte)
{
    const Bytes source = array_with_unknown();
    ODB_AttributesArray array;
    array.owns_items = 1;
    impstream in((std::span<const unsigned char>(source)));

    array.read(in);

    ASSERT_EQ(array.count, 3);
    EXPECT_TRUE(array.at(1).hasTheSameClassAs(&ODB_UnknownAttribute::metaclass_));
    EXPECT_EQ(written(array), source);
}

TEST(ODB_AttributesArray, CountOfZero_IsFiveBytes)
{
    ODB_AttributesArray array;

    const Bytes bytes = written(array);

    EXPECT_EQ(bytes.size(), 5u);
    impstream in((std::span<const unsigned char>(bytes)));
    ODB_AttributesArray back;
    TestRating stale(1);
    back.v_insert(&stale);
    back.read(in);
    EXPECT_EQ(back.count, 0);
}

TEST(ODB_AttributesArray, Read_KeepsTheOrderOfTheStreamWhereCompareDiffers)
{
    // Both orders of two classes: one of them differs from the order of their addresses.
    for (const bool rating_first : {true, false}) {
        TestRating rating(1);
        ODB_ObjectAttribute plain;
        ODB_AttributesArray source;
        source.v_at_insert(0, rating_first ? static_cast<ODB_ObjectAttribute*>(&rating) : &plain);
        source.v_at_insert(1, rating_first ? &plain : static_cast<ODB_ObjectAttribute*>(&rating));
        const Bytes bytes = written(source);
        impstream in((std::span<const unsigned char>(bytes)));
        ODB_AttributesArray back;
        back.owns_items = 1;

        back.read(in);

        ASSERT_EQ(back.count, 2);
        EXPECT_EQ(back.at(0).hasTheSameClassAs(&TestRating::metaclass_), rating_first);
    }
}

TEST(ODB_AttributesArray, EveryCutLength_EndsInAnExceptionAndLeavesNoAttributeBehind)
{
    const Bytes source = array_with_unknown();
    const int alive = TestRating::alive;
    for (std::size_t length = 0; length < source.size(); ++length) {
        impstream in(std::span<const unsigned char>(source.data(), length));
        ODB_AttributesArray array;
        EXPECT_THROW(array.read(in), GStreamException) << length;
        EXPECT_EQ(array.count, 0);
    }
    EXPECT_EQ(TestRating::alive, alive);
}

TEST(ODB_AttributesArray, BlockSizeBeyondTheData_EndsInAnExceptionWithoutTheMemory)
{
    ompstream out;
    out.writeByte(0);
    out.writeDWord(1);
    out.writeDWord(0xFFFFFFF0);
    out.writeByte(7);
    impstream in(out.bytes());
    ODB_AttributesArray array;

    EXPECT_THROW(array.read(in), GStreamException);
}

TEST(ODB_AttributesArray, BlockWithAnObjectThatIsNoAttribute_IsLeftOut)
{
    TestNote note("x");
    ompstream block;
    block.writePointer(&note);
    ompstream out;
    out.writeByte(0);
    out.writeDWord(1);
    out.writeDWord(static_cast<std::uint32_t>(block.tellp()));
    out.writeBytes(block.data(), block.tellp());
    impstream in(out.bytes());
    ODB_AttributesArray array;

    array.read(in);

    EXPECT_EQ(array.count, 0);
    EXPECT_EQ(TestNote::alive, 1);
}

TEST(ODB_UnknownAttribute, IsNotBuiltByName)
{
    const GMetaClass* const metaclass = GMetaClass::FindByName("ODB_UnknownAttribute");

    ASSERT_NE(metaclass, nullptr);
    EXPECT_EQ(metaclass->getBuilder(), nullptr);
    EXPECT_EQ(metaclass->getDestroyer(), nullptr);
}

TEST(ODB_UnknownAttribute, Copies_ShareTheBytes)
{
    auto* const bytes = new unsigned char[3]{1, 2, 3};
    const ODB_UnknownAttribute first(bytes, 3);
    const ODB_UnknownAttribute second(first);

    EXPECT_EQ(second.get_content(), first.get_content());
    EXPECT_EQ(second.get_size(), 3);
}
