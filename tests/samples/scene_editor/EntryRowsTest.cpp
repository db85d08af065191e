#include "scene_editor/core/EntryRows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using editor::EntryRows;
using editor::RowBatch;
using editor::RowKind;
using testing::ElementsAre;

namespace {

// Two directories and four entries of two classes.
EntryRows some_rows()
{
    RowBatch batch;
    batch.add("Attic", "", RowKind::Directory);
    batch.add("models", "", RowKind::Directory);
    batch.add("Apple.png", "PixelMap", RowKind::Entry);
    batch.add("bolt", "SceneMesh", RowKind::Entry);
    EntryRows rows;
    rows.append(std::move(batch));
    RowBatch more;
    more.add("Cup.png", "PixelMap", RowKind::Entry);
    more.add("dome", "SceneMesh", RowKind::Entry);
    rows.append(std::move(more));
    return rows;
}

std::vector<std::string> shown_names(const EntryRows& rows)
{
    std::vector<std::string> names;
    for (const EntryRows::Id id : rows.shown())
        names.emplace_back(rows.name(id));
    return names;
}

}  // namespace

TEST(EntryRows, Append_ShowsRowsInTheirOrderAndCountsThem)
{
    const EntryRows rows = some_rows();

    EXPECT_THAT(shown_names(rows),
                ElementsAre("Attic", "models", "Apple.png", "bolt", "Cup.png", "dome"));
    EXPECT_EQ(rows.directories(), 2U);
    EXPECT_EQ(rows.entries(), 4U);
    EXPECT_EQ(rows.class_name(4), "PixelMap");
    EXPECT_EQ(rows.kind(0), RowKind::Directory);
}

TEST(EntryRows, NameBefore_IgnoresCaseAndTellsEqualOnesByBytes)
{
    EXPECT_TRUE(editor::name_before("apple", "Bolt"));
    EXPECT_FALSE(editor::name_before("Bolt", "apple"));
    EXPECT_TRUE(editor::name_before("A", "a"));
    EXPECT_FALSE(editor::name_before("a", "a"));
    EXPECT_TRUE(editor::name_before("a", "ab"));
    EXPECT_TRUE(editor::name_before("z", "\xC3\xA4"));
}

TEST(EntryRows, Filter_MatchesNameInEitherCase)
{
    EntryRows rows = some_rows();

    EXPECT_TRUE(rows.set_filter("CUP"));
    EXPECT_THAT(shown_names(rows), ElementsAre("Cup.png"));
}

TEST(EntryRows, Filter_MatchesClass)
{
    EntryRows rows = some_rows();

    rows.set_filter("scenem");
    EXPECT_THAT(shown_names(rows), ElementsAre("bolt", "dome"));
}

TEST(EntryRows, Filter_SameInOtherCase_ChangesNothing)
{
    EntryRows rows = some_rows();
    rows.set_filter("png");

    EXPECT_FALSE(rows.set_filter("PNG"));
}

TEST(EntryRows, Filter_AppliesToRowsThatComeLater)
{
    EntryRows rows = some_rows();
    rows.set_filter("png");
    RowBatch batch;
    batch.add("egg.png", "PixelMap", RowKind::Entry);
    batch.add("fork", "Wooden", RowKind::Entry);
    rows.append(std::move(batch));

    EXPECT_THAT(shown_names(rows), ElementsAre("Apple.png", "Cup.png", "egg.png"));
    EXPECT_EQ(rows.entries(), 6U);
}

TEST(EntryRows, Filter_Emptied_ShowsAllAgain)
{
    EntryRows rows = some_rows();
    rows.set_filter("nothing like it");
    EXPECT_TRUE(rows.shown().empty());

    rows.set_filter("");
    EXPECT_EQ(rows.shown().size(), 6U);
}

TEST(EntryRows, Filter_TypedAndDeletedAtRandom_ShowsWhatASearchOfAllShows)
{
    std::mt19937 random(7);
    std::vector<std::string> names;
    for (int i = 0; i < 500; ++i) {
        std::string name;
        for (auto n = random() % 6 + 1; n > 0; --n)
            name += "abAB1"[random() % 5];
        names.push_back(name);
    }
    std::sort(names.begin(), names.end(), editor::name_before);
    RowBatch batch;
    for (const std::string& name : names)
        batch.add(name, name.size() % 2 == 0 ? "Even" : "Odd", RowKind::Entry);
    EntryRows rows;
    rows.append(std::move(batch));

    std::string filter;
    for (int step = 0; step < 2000; ++step) {
        const auto change = random() % 4;
        if (change == 0 && !filter.empty())
            filter.pop_back();
        else if (change == 1)
            filter.insert(0, 1, "aB1o"[random() % 4]);
        else if (change == 2)
            filter += "aB1e"[random() % 4];
        else
            filter = filter.substr(0, 1);
        rows.set_filter(filter);
        std::vector<std::string> expected;
        for (const std::string& name : names) {
            const std::string class_name = name.size() % 2 == 0 ? "even" : "odd";
            const std::string wanted = editor::folded(filter);
            if (editor::folded(name).find(wanted) != std::string::npos ||
                class_name.find(wanted) != std::string::npos)
                expected.push_back(name);
        }
        ASSERT_EQ(shown_names(rows), expected) << "filter " << filter;
    }
}

TEST(EntryRows, PositionOf_IsNothingForAHiddenOrUnknownRow)
{
    EntryRows rows = some_rows();
    rows.set_filter("png");

    EXPECT_EQ(rows.position_of(4), 1U);
    EXPECT_EQ(rows.position_of(3), std::nullopt);
    EXPECT_EQ(rows.position_of(99), std::nullopt);
}

TEST(EntryRows, Rename_MovesTheRowToItsPlaceAndKeepsItsId)
{
    EntryRows rows = some_rows();
    rows.rename(2, "Zebra");

    EXPECT_THAT(shown_names(rows),
                ElementsAre("Attic", "models", "bolt", "Cup.png", "dome", "Zebra"));
    EXPECT_EQ(rows.name(2), "Zebra");
    EXPECT_EQ(rows.position_of(2), 5U);
}

TEST(EntryRows, Rename_OutOfTheFilter_HidesTheRow)
{
    EntryRows rows = some_rows();
    rows.set_filter("dome");
    rows.rename(5, "roof");

    EXPECT_TRUE(rows.shown().empty());
}

TEST(EntryRows, Remove_TakesRowsOutAndKeepsTheIdsOfOthers)
{
    EntryRows rows = some_rows();
    rows.remove({3, 2, 3, 77});

    EXPECT_THAT(shown_names(rows), ElementsAre("Attic", "models", "Cup.png", "dome"));
    EXPECT_EQ(rows.entries(), 2U);
    EXPECT_EQ(rows.name(4), "Cup.png");
    EXPECT_EQ(rows.position_of(3), std::nullopt);
}

TEST(EntryRows, FindStart_GoesOnFromTheTopOnlyWithWrap)
{
    const EntryRows rows = some_rows();

    EXPECT_EQ(rows.find_start("a", 1, false), 2U);
    EXPECT_EQ(rows.find_start("A", 3, false), std::nullopt);
    EXPECT_EQ(rows.find_start("A", 3, true), 0U);
}

TEST(EntryRows, Clear_LeavesNoRowAndNoFilter)
{
    EntryRows rows = some_rows();
    rows.set_filter("png");
    rows.clear();

    EXPECT_TRUE(rows.shown().empty());
    EXPECT_EQ(rows.entries(), 0U);
    EXPECT_FALSE(rows.is_filtered());
}

TEST(EntryRows, Find_GivesTheEntryOfThatVeryName)
{
    EntryRows rows;
    editor::RowBatch batch;
    batch.add("ring", {}, RowKind::Directory);
    batch.add("Ring", "A", RowKind::Entry);
    batch.add("ring", "A", RowKind::Entry);
    batch.add("vase", "A", RowKind::Entry);
    rows.append(std::move(batch));

    EXPECT_EQ(rows.find("Ring"), 1U);
    EXPECT_EQ(rows.find("ring"), 2U);
    EXPECT_EQ(rows.find("vase"), 3U);
    EXPECT_EQ(rows.find("RING"), std::nullopt);
    EXPECT_EQ(rows.find("zebra"), std::nullopt);
    EXPECT_EQ(EntryRows().find("x"), std::nullopt);
}

TEST(EntryRows, Put_AddsANewEntryInItsPlaceAndChangesOneThatIsThere)
{
    EntryRows rows;
    editor::RowBatch batch;
    batch.add("directory", {}, RowKind::Directory);
    batch.add("a", "A", RowKind::Entry);
    batch.add("c", "A", RowKind::Entry);
    rows.append(std::move(batch));

    const EntryRows::Id added = rows.put("b", "B", editor::Holding::External);
    EXPECT_THAT(rows.shown(), testing::ElementsAre(0, 1, added, 2));
    EXPECT_EQ(rows.entries(), 3U);
    EXPECT_EQ(rows.class_name(added), "B");
    EXPECT_EQ(rows.holding(added), editor::Holding::External);

    rows.set_details(added, editor::Holding::Lost, "a text");
    EXPECT_EQ(rows.description(added), "a text");
    EXPECT_EQ(rows.holding(added), editor::Holding::Lost);
    EXPECT_EQ(rows.put("b", "C", editor::Holding::Inside), added);
    EXPECT_EQ(rows.entries(), 3U);
    EXPECT_EQ(rows.class_name(added), "C");
    EXPECT_EQ(rows.description(added), "");
}

TEST(EntryRows, Put_OfAnEntryThatTheFilterRefuses_IsNotShown)
{
    EntryRows rows;
    rows.set_filter("a");
    const EntryRows::Id first = rows.put("xa", "B", editor::Holding::Inside);
    rows.put("xb", "B", editor::Holding::Inside);

    EXPECT_THAT(rows.shown(), testing::ElementsAre(first));
}
