#include "foundation/mpstream.h"
#include "graphics/PaletteCollection.h"

#include <gtest/gtest.h>

TEST(PaletteCollection, FindColor_GivesThePositionInOrderOfIndices)
{
    PaletteCollection palette;
    palette.add_entry(30, RGB_Color(3, 3, 3));
    palette.add_entry(-5, RGB_Color(1, 1, 1));
    palette.add_entry(10, RGB_Color(2, 2, 2));

    EXPECT_EQ(palette.find_color(-5), 0);
    EXPECT_EQ(palette.find_color(10), 1);
    EXPECT_EQ(palette.find_color(30), 2);
    EXPECT_EQ(palette.at(1)->color, RGB_Color(2, 2, 2));
}

TEST(PaletteCollection, FindColor_OfMissingIndexIsMinusOne)
{
    PaletteCollection palette;
    EXPECT_EQ(palette.find_color(0), -1);
    palette.add_entry(1, RGB_Color());

    EXPECT_EQ(palette.find_color(2), -1);
    EXPECT_EQ(palette.find_color(0), -1);
}

TEST(PaletteCollection, AddEntry_OfPresentIndexReplacesItsColor)
{
    PaletteCollection palette;
    palette.add_entry(4, RGB_Color(1, 1, 1));
    palette.add_entry(4, RGB_Color(9, 8, 7));

    EXPECT_EQ(palette.count, 1);
    EXPECT_EQ(palette.at(0)->color, RGB_Color(9, 8, 7));
}

TEST(PaletteCollection, AtFree_TakesTheEntryOut)
{
    PaletteCollection palette;
    palette.add_entry(1, RGB_Color(1, 1, 1));
    palette.add_entry(2, RGB_Color(2, 2, 2));

    palette.at_free(palette.find_color(1));

    EXPECT_EQ(palette.find_color(1), -1);
    EXPECT_EQ(palette.find_color(2), 0);
}

TEST(PaletteCollection, Copy_HasEntriesOfItsOwn)
{
    PaletteCollection palette;
    palette.add_entry(1, RGB_Color(1, 1, 1));
    PaletteCollection copy(palette);
    palette.add_entry(1, RGB_Color(5, 5, 5));

    ASSERT_EQ(copy.count, 1);
    EXPECT_EQ(copy.at(0)->color, RGB_Color(1, 1, 1));
}

TEST(PaletteCollection, Stream_GivesTheSameEntriesBack)
{
    PaletteCollection palette;
    palette.add_entry(-7, RGB_Color(1, 2, 3));
    palette.add_entry(70000, RGB_Color(4, 5, 6));
    ompstream out;
    out.writePointer(&palette);
    const auto bytes = out.bytes();
    impstream in(bytes);

    auto* read = in.read_pointer<PaletteCollection>();

    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->count, 2);
    EXPECT_EQ(read->at(read->find_color(-7))->color, RGB_Color(1, 2, 3));
    EXPECT_EQ(read->at(read->find_color(70000))->color, RGB_Color(4, 5, 6));
    GStreamable::Destroy(read);
}

TEST(PaletteCollection, Clone_IsAnotherOneWithTheSameColors)
{
    PaletteCollection palette;
    palette.add_entry(3, RGB_Color(7, 7, 7));

    auto* clone = zmr::class_cast<PaletteCollection>(palette.clone(true));

    ASSERT_NE(clone, nullptr);
    EXPECT_NE(clone, &palette);
    EXPECT_EQ(clone->at(clone->find_color(3))->color, RGB_Color(7, 7, 7));
    GStreamable::Destroy(clone);
}
