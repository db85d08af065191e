#include "scene_editor/core/NamesUpdate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace editor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Row 0 is a directory, rows 1 to 3 are entries.
EntryRows some_rows()
{
    RowBatch batch;
    batch.add("lamp", {}, RowKind::Directory);
    batch.add("chair", "C", RowKind::Entry);
    batch.add("stool", "C", RowKind::Entry);
    batch.add("table", "C", RowKind::Entry);
    EntryRows rows;
    rows.append(std::move(batch));
    return rows;
}

}  // namespace

TEST(NamesUpdate, OfWhatTheListHasAlready_IsNothing)
{
    const NamesUpdate update = update_for(some_rows(), {1, {"gone before"}, {"stool"}, false});

    EXPECT_FALSE(update.lists_again);
    EXPECT_THAT(update.gone, IsEmpty());
    EXPECT_THAT(update.to_look_at, IsEmpty());
    EXPECT_TRUE(update.is_empty());
}

TEST(NamesUpdate, TakesRowsOutAndAsksForNewEntries_NotForADirectoryOfTheName)
{
    const NamesUpdate update =
        update_for(some_rows(), {1, {"table", "chair"}, {"bench", "lamp"}, false});

    EXPECT_FALSE(update.lists_again);
    EXPECT_THAT(update.gone, ElementsAre(3, 1));
    EXPECT_THAT(update.to_look_at, ElementsAre("bench", "lamp"));
}

TEST(NamesUpdate, ManyNewEntries_AreListedAgain)
{
    NamesChanged changed{1, {"table"}, {}, false};
    for (std::size_t i = 0; i < kMostPutOneByOne; ++i)
        changed.come.push_back("new " + std::to_string(i));
    EXPECT_EQ(update_for(some_rows(), changed).to_look_at.size(), kMostPutOneByOne);
    changed.come.push_back("stool");  // is there
    EXPECT_FALSE(update_for(some_rows(), changed).lists_again);
    changed.come.push_back("one more");

    EXPECT_TRUE(update_for(some_rows(), changed).lists_again);
}
