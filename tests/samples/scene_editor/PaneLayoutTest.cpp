#include "scene_editor/core/PaneLayout.h"

#include <gtest/gtest.h>

#include <random>

using editor::PaneRect;
using editor::PaneWidths;
using editor::Splitter;

TEST(PaneLayout, Scaled_RoundsToTheNearestPixel)
{
    EXPECT_EQ(editor::scaled(5, 96), 5);
    EXPECT_EQ(editor::scaled(5, 144), 8);
    EXPECT_EQ(editor::scaled(1, 120), 1);
}

TEST(PaneLayout, WideArea_GivesThePanesTheirWidthsAndTheListTheRest)
{
    const auto panes = editor::lay_out({0, 0, 1000, 600}, {200, 300}, 24, 96);

    EXPECT_EQ(panes.tree, (PaneRect{0, 0, 200, 600}));
    EXPECT_EQ(panes.tree_splitter, (PaneRect{200, 0, 205, 600}));
    EXPECT_EQ(panes.filter, (PaneRect{205, 0, 695, 24}));
    EXPECT_EQ(panes.list, (PaneRect{205, 28, 695, 600}));
    EXPECT_EQ(panes.preview_splitter, (PaneRect{695, 0, 700, 600}));
    EXPECT_EQ(panes.preview, (PaneRect{700, 0, 1000, 600}));
}

TEST(PaneLayout, NarrowArea_ThePreviewGivesWayBeforeTheTree)
{
    const auto panes = editor::lay_out({0, 0, 500, 300}, {200, 300}, 24, 96);

    EXPECT_EQ(panes.tree.width(), 200);
    EXPECT_EQ(panes.preview.width(), 130);
    EXPECT_EQ(panes.list.width(), editor::kLeastListAt96);
}

TEST(PaneLayout, AnySizeAndWidths_FillTheAreaWithoutOverlap)
{
    std::mt19937 random(11);
    const auto any = [&](int most) { return static_cast<int>(random() % unsigned(most)); };
    for (int step = 0; step < 20000; ++step) {
        const int left = any(50);
        const int top = any(50);
        const PaneRect area{left, top, left + any(1500), top + any(900)};
        const int dpi = 96 + any(200);
        const auto panes = editor::lay_out(area, {any(2000), any(2000)}, any(60), dpi);
        const PaneRect columns[] = {panes.tree, panes.tree_splitter, panes.list,
                                    panes.preview_splitter, panes.preview};
        for (const PaneRect& column : columns) {
            ASSERT_GE(column.width(), 0);
            ASSERT_GE(column.height(), 0);
            ASSERT_GE(column.left, area.left);
            ASSERT_LE(column.right, area.right);
        }
        for (int i = 0; i + 1 < 5; ++i)
            ASSERT_LE(columns[i].right, columns[i + 1].left) << "column " << i;
        ASSERT_LE(panes.filter.bottom, panes.list.top);
    }
}

TEST(PaneLayout, DragSplitter_FollowsTheMouseWithinTheLeastWidths)
{
    const PaneRect area{0, 0, 1000, 600};
    const PaneWidths widths{200, 300};

    EXPECT_EQ(editor::drag_splitter(area, widths, Splitter::Tree, 250, 96).tree_px, 250);
    EXPECT_EQ(editor::drag_splitter(area, widths, Splitter::Tree, -40, 96).tree_px,
              editor::kLeastPaneAt96);
    EXPECT_EQ(editor::drag_splitter(area, widths, Splitter::Tree, 5000, 96).tree_px,
              1000 - 2 * 5 - 300 - editor::kLeastListAt96);
    EXPECT_EQ(editor::drag_splitter(area, widths, Splitter::Preview, 595, 96).preview_px, 400);
    EXPECT_EQ(editor::drag_splitter(area, widths, Splitter::Preview, 5000, 96).preview_px,
              editor::kLeastPaneAt96);
}
