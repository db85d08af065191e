#include "foundation/GException.h"

#include "foundation/GStaticText.h"

#include <gtest/gtest.h>

#include <type_traits>

TEST(GException, Copies_NeverThrow)
{
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<GException>);
    EXPECT_TRUE(std::is_nothrow_copy_assignable_v<GException>);
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<GLibraryException>);
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<OutOfMemory_Exception>);
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<TGVector_IndexOutOfRange_Exception>);
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<GStreamException>);
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<UnknownStreamableType_Exception>);
    EXPECT_TRUE(std::is_nothrow_copy_assignable_v<UnknownStreamableType_Exception>);
}

TEST(GException, Copy_HoldsTheSameText)
{
    GException thrown(GString("The disk is full."));
    const GException copied(thrown);
    thrown.message_text = "changed";

    EXPECT_STREQ(copied.what(), "The disk is full.");
    thrown = copied;
    EXPECT_STREQ(thrown.what(), "The disk is full.");
}

TEST(GException, EmergencyExceptions_AllocateNothingForTheirText)
{
    const OutOfMemory_Exception first;
    const OutOfMemory_Exception copied(first);
    EXPECT_EQ(static_cast<const void*>(first.message_text.text), copied.message_text.text);
    EXPECT_FALSE(first.message_text.is_empty());
    EXPECT_TRUE(std::is_nothrow_default_constructible_v<OutOfMemory_Exception>);

    const TGVector_IndexOutOfRange_Exception range(-1, 0, 7);
    const TGVector_IndexOutOfRange_Exception other(range);
    EXPECT_EQ(static_cast<const void*>(range.message_text.text), other.message_text.text);
    EXPECT_EQ(other.index, -1);
    EXPECT_EQ(other.low, 0);
    EXPECT_EQ(other.high, 7);
}

TEST(GException, WritingToASharedStaticText_GivesItsOwn)
{
    OutOfMemory_Exception thrown;
    const GString before = thrown.message_text;
    thrown.message_text += " Close some windows.";

    EXPECT_STREQ(OutOfMemory_Exception().what(), before.text);
    EXPECT_EQ(thrown.message_text.length(), before.length() + 20);
    thrown.message_text = before;
    thrown.message_text.toLower();
    EXPECT_STREQ(OutOfMemory_Exception().what(), before.text);
    thrown.message_text.setLength(3, ' ');
    EXPECT_STREQ(OutOfMemory_Exception().what(), before.text);
}

TEST(GException, Message_FormatsAsPrintf)
{
    GLibraryException thrown("before");
    thrown.message("%s has %d entries, %5.2f.", "lib", 12, 3.14159);

    EXPECT_STREQ(thrown.what(), "lib has 12 entries,  3.14.");
}

TEST(GException, AllOfTheFamily_AreCaughtAsLibraryExceptions)
{
    EXPECT_THROW(throw OutOfMemory_Exception(), GLibraryException);
    EXPECT_THROW(throw TGVector_IndexOutOfRange_Exception(5, 0, 4), GLibraryException);
    EXPECT_THROW(throw GStreamException("bad data"), GLibraryException);
    EXPECT_THROW(throw UnknownStreamableType_Exception("GCube"), GStreamException);
    EXPECT_THROW(throw GLibraryException("text"), GException);
    EXPECT_THROW(throw GException(GString("text")), std::exception);
}

TEST(GException, UnknownClass_IsNamedInTheMessage)
{
    const UnknownStreamableType_Exception thrown("GCube");
    const UnknownStreamableType_Exception copied(thrown);

    EXPECT_STREQ(copied.class_name.text, "GCube");
    EXPECT_NE(copied.message_text.view().find("GCube"), std::string_view::npos);
}
