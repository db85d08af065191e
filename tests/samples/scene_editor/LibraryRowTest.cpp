#include "scene_editor/core/LibraryRow.h"

#include <gtest/gtest.h>

using namespace editor;

TEST(LibraryRow, FilterRow_GivesTheChoiceItsWidthOrTwoFifths)
{
    const FilterRow wide = split_filter_row({10, 5, 510, 27}, 96);
    EXPECT_EQ(wide.choice, (PaneRect{340, 5, 510, 27}));
    EXPECT_EQ(wide.line, (PaneRect{10, 5, 336, 27}));
    EXPECT_EQ(split_filter_row({0, 0, 200, 20}, 96).choice.width(), 80);
}

TEST(LibraryRow, WorkRow_TakesTheBottomOfTheListWhileItIsShown)
{
    const PaneRect list{10, 30, 410, 230};
    EXPECT_EQ(split_work_row(list, false, 22, 96).list, list);
    EXPECT_EQ(split_work_row(list, false, 22, 96).bar, PaneRect{});

    const WorkRow row = split_work_row(list, true, 22, 96);
    EXPECT_EQ(row.list, (PaneRect{10, 30, 410, 204}));
    EXPECT_EQ(row.text, (PaneRect{10, 208, 90, 230}));
    EXPECT_EQ(row.bar, (PaneRect{94, 208, 346, 230}));
    EXPECT_EQ(row.button, (PaneRect{350, 208, 410, 230}));
}

TEST(LibraryRow, NoPartIsEverNegative)
{
    for (int width = 0; width < 300; ++width) {
        for (int height = 0; height < 60; height += 3) {
            const WorkRow row = split_work_row({5, 5, 5 + width, 5 + height}, true, 22, 120);
            for (const PaneRect& part : {row.list, row.text, row.bar, row.button}) {
                ASSERT_GE(part.width(), 0) << width;
                ASSERT_GE(part.height(), 0) << height;
            }
            const FilterRow filter = split_filter_row({5, 5, 5 + width, 5 + height}, 120);
            ASSERT_GE(filter.line.width(), 0) << width;
            ASSERT_GE(filter.choice.width(), 0) << width;
        }
    }
}
