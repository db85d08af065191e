#include "scene_editor/core/CountsText.h"

#include <gtest/gtest.h>

TEST(CountsText, WithThousands_GroupsFromTheRight)
{
    EXPECT_EQ(editor::with_thousands(0), "0");
    EXPECT_EQ(editor::with_thousands(999), "999");
    EXPECT_EQ(editor::with_thousands(1000), "1,000");
    EXPECT_EQ(editor::with_thousands(1234567), "1,234,567");
}

TEST(CountsText, OneOfEach_IsNotPlural)
{
    editor::RowCounts counts;
    counts.directories = 1;
    counts.entries = 1;

    EXPECT_EQ(editor::counts_text(counts), "1 directory, 1 entry");
}

TEST(CountsText, DirectoriesAlone_AreNotFollowedByNoEntries)
{
    editor::RowCounts counts;
    EXPECT_EQ(editor::counts_text(counts), "0 entries");

    counts.directories = 2;
    EXPECT_EQ(editor::counts_text(counts), "2 directories");
}

TEST(CountsText, Filtered_TellsHowManyRowsOfAll)
{
    editor::RowCounts counts;
    counts.directories = 3;
    counts.entries = 1204;
    counts.shown = 12;
    counts.selected = 2;
    counts.is_filtered = true;

    EXPECT_EQ(editor::counts_text(counts), "12 of 1,207 shown, 2 selected");
}

TEST(CountsText, RowsStillCome_SaysSo)
{
    editor::RowCounts counts;
    counts.entries = 4352;
    counts.is_complete = false;

    EXPECT_EQ(editor::counts_text(counts), "4,352 entries so far");
}
