#include "scene_editor/core/WindowLayout.h"

#include <gtest/gtest.h>

#include <random>

using editor::PaneRect;
using editor::PartSizes;
using editor::ShownParts;
using editor::WindowLayout;

TEST(WindowLayout, RoomForAll_GivesThePartsTheirSizes)
{
    const WindowLayout parts = editor::lay_out_window({0, 0, 1000, 700}, {400, 220}, {}, 96);

    EXPECT_EQ(parts.scene, (PaneRect{0, 0, 775, 400}));
    EXPECT_EQ(parts.properties_splitter, (PaneRect{775, 0, 780, 400}));
    EXPECT_EQ(parts.properties, (PaneRect{780, 0, 1000, 400}));
    EXPECT_EQ(parts.library_splitter, (PaneRect{0, 400, 1000, 405}));
    EXPECT_EQ(parts.library, (PaneRect{0, 405, 1000, 700}));
}

TEST(WindowLayout, HiddenPart_LeavesItsRoomToTheOther)
{
    const PaneRect area{0, 10, 1000, 700};
    const WindowLayout scene = editor::lay_out_window(area, {400, 220}, {true, false}, 96);
    EXPECT_EQ(scene.scene.bottom, 700);
    EXPECT_EQ(scene.library, PaneRect());
    EXPECT_EQ(scene.library_splitter, PaneRect());
    const WindowLayout library = editor::lay_out_window(area, {400, 220}, {false, true}, 96);
    EXPECT_EQ(library.library, area);
    EXPECT_EQ(library.scene, PaneRect());
    EXPECT_EQ(library.properties, PaneRect());
}

TEST(WindowLayout, At144Dpi_LeastSizesAreLarger)
{
    const PaneRect area{0, 0, 1000, 700};
    EXPECT_EQ(editor::drag_library_splitter(area, {400, 220}, -50, 96).scene_px,
              editor::kLeastSceneAt96);
    EXPECT_EQ(editor::drag_library_splitter(area, {400, 220}, -50, 144).scene_px,
              editor::kLeastSceneAt96 * 3 / 2);
    EXPECT_EQ(editor::first_sizes(area, 144).properties_px, 345);
    const WindowLayout parts = editor::lay_out_window(area, {1, 1}, {}, 144);
    EXPECT_EQ(parts.scene.height(), editor::kLeastSceneAt96 * 3 / 2);
    EXPECT_EQ(parts.properties.width(), editor::kLeastPropertiesAt96 * 3 / 2);
}

TEST(WindowLayout, Splitters_FollowTheMouse)
{
    const PaneRect area{0, 0, 1000, 700};
    EXPECT_EQ(editor::drag_library_splitter(area, {400, 220}, 333, 96).scene_px, 333);
    EXPECT_EQ(editor::drag_library_splitter(area, {400, 220}, 9999, 96).scene_px,
              700 - 5 - editor::kLeastLibraryAt96);
    EXPECT_EQ(editor::drag_properties_splitter(area, {400, 220}, 600, 96).properties_px, 395);
    EXPECT_EQ(editor::drag_properties_splitter(area, {400, 220}, 9999, 96).properties_px,
              editor::kLeastPropertiesAt96);
}

TEST(WindowLayout, AnySizes_StayWithinTheAreaWithoutOverlap)
{
    std::mt19937 random(7);
    const auto any = [&](int most) { return static_cast<int>(random() % unsigned(most)); };
    for (int step = 0; step < 20000; ++step) {
        const int left = any(50);
        const int top = any(50);
        const PaneRect area{left, top, left + any(1800), top + any(1200)};
        const ShownParts shown = step % 3 == 0   ? ShownParts{true, false}
                                 : step % 3 == 1 ? ShownParts{false, true}
                                                 : ShownParts{};
        const WindowLayout parts =
            editor::lay_out_window(area, {any(2000), any(2000)}, shown, 96 + any(200));
        for (const PaneRect& part : {parts.scene, parts.properties_splitter, parts.properties,
                                     parts.library_splitter, parts.library}) {
            ASSERT_GE(part.width(), 0);
            ASSERT_GE(part.height(), 0);
            if (part == PaneRect())
                continue;
            ASSERT_GE(part.left, area.left);
            ASSERT_LE(part.right, area.right);
            ASSERT_GE(part.top, area.top);
            ASSERT_LE(part.bottom, area.bottom);
        }
        ASSERT_LE(parts.scene.right, parts.properties_splitter.left);
        ASSERT_LE(parts.properties_splitter.right, parts.properties.left);
        if (shown.library && shown.scene) {
            ASSERT_LE(parts.scene.bottom, parts.library_splitter.top);
            ASSERT_LE(parts.library_splitter.bottom, parts.library.top);
        }
    }
}
