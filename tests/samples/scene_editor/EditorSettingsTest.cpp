#include "scene_editor/core/EditorSettings.h"

#include "settings/RegistryManager.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace editor;

namespace {

constexpr std::uint32_t kUsual = 10;  // as the system thinks fit
constexpr std::uint32_t kMinimized = 2;
constexpr std::uint32_t kMaximized = 3;

class EditorSettingsInAFile : public testing::Test {
protected:
    EditorSettingsInAFile() { manager.Initialize(nullptr, file.c_str()); }

    void store(const std::string& text) { std::ofstream(file) << text; }
    [[nodiscard]] std::string stored() const
    {
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }

    TemporaryFolder folder;
    std::string file = folder.file("editor.ini");
    RegistryManager manager;
};

EditorSettings some_settings()
{
    EditorSettings settings;
    settings.placement =
        zmr::WindowPlacementRecord{2, kMaximized, -1, -1, -1, -1, 10, 20, 900, 700};
    settings.widths = PaneWidths{201, 302};
    settings.sizes = PartSizes{403, 204};
    settings.shown = {true, false};
    settings.shows_status_bar = false;
    settings.draw_type = 4;
    settings.filter = "gr\xC3\xBCn = x";
    return settings;
}

void expect_first_run(const EditorSettings& settings)
{
    EXPECT_FALSE(settings.placement);
    EXPECT_FALSE(settings.widths);
    EXPECT_FALSE(settings.sizes);
    EXPECT_EQ(settings.shown, (ShownParts{true, true}));
    EXPECT_TRUE(settings.shows_status_bar);
    EXPECT_EQ(settings.draw_type, EditorSettings::kFirstDrawType);
    EXPECT_EQ(settings.filter, "");
}

}  // namespace

TEST_F(EditorSettingsInAFile, NothingStored_GivesTheFirstRunAndWritesNothing)
{
    expect_first_run(read_settings(manager, 96));

    EXPECT_EQ(stored(), "");
}

TEST_F(EditorSettingsInAFile, WhatIsWritten_ComesBack)
{
    ASSERT_TRUE(write_settings(manager, some_settings(), 96));

    const EditorSettings again = read_settings(manager, 96);
    EXPECT_EQ(again.placement, some_settings().placement);
    ASSERT_TRUE(again.widths);
    EXPECT_EQ(again.widths->tree_px, 201);
    EXPECT_EQ(again.widths->preview_px, 302);
    ASSERT_TRUE(again.sizes);
    EXPECT_EQ(again.sizes->scene_px, 403);
    EXPECT_EQ(again.sizes->properties_px, 204);
    EXPECT_EQ(again.shown, some_settings().shown);
    EXPECT_FALSE(again.shows_status_bar);
    EXPECT_EQ(again.draw_type, 4);
    EXPECT_EQ(again.filter, some_settings().filter);
}

TEST_F(EditorSettingsInAFile, Lengths_GrowWithTheScreen)
{
    ASSERT_TRUE(write_settings(manager, some_settings(), 96));

    EXPECT_EQ(read_settings(manager, 192).widths->tree_px, 402);
}

TEST_F(EditorSettingsInAFile, LengthsOfManyRuns_DoNotCreep)
{
    for (const int dpi : {96, 120, 144, 168, 192}) {
        for (int length = 90; length < 400; ++length) {
            EditorSettings settings;
            settings.widths = PaneWidths{length, length};
            ASSERT_TRUE(write_settings(manager, settings, dpi));
            const PaneWidths once = *read_settings(manager, dpi).widths;
            settings.widths = once;
            ASSERT_TRUE(write_settings(manager, settings, dpi));

            ASSERT_EQ(read_settings(manager, dpi).widths->tree_px, once.tree_px)
                << length << " at " << dpi;
            ASSERT_NEAR(once.tree_px, length, 1) << dpi;
            length += 37;
        }
    }
}

TEST_F(EditorSettingsInAFile, AbsentLengths_KeepWhatIsStored)
{
    ASSERT_TRUE(write_settings(manager, some_settings(), 96));
    ASSERT_TRUE(write_settings(manager, EditorSettings(), 96));

    EXPECT_EQ(read_settings(manager, 96).widths->tree_px, 201);
    EXPECT_TRUE(read_settings(manager, 96).placement);
    EXPECT_EQ(read_settings(manager, 96).filter, "");
}

TEST_F(EditorSettingsInAFile, DamagedValues_AreThoseOfTheFirstRun)
{
    store(
        "[Window]\nPlacement=ABCD\nTreeWidth=-5\nPreviewWidth=200\nSceneHeight=99999999\n"
        "PropertiesWidth=100\n[View]\nScene=0\nLibrary=0\nDraw=17\n");

    expect_first_run(read_settings(manager, 96));
}

TEST_F(EditorSettingsInAFile, FileThatCannotBeWritten_IsTold)
{
    RegistryManager nowhere;
    nowhere.Initialize(nullptr, folder.file("no/such/folder/editor.ini").c_str());

    EXPECT_FALSE(write_settings(nowhere, some_settings(), 96));
}

TEST(PlacementAtStart, IconOrHiddenWindow_ComesBackSeen)
{
    zmr::WindowPlacementRecord kept;
    kept.right = 500;
    kept.show = kMinimized;
    EXPECT_EQ(placement_at_start(kept, kUsual).show, zmr::WindowPlacementRecord::kNormal);
    EXPECT_EQ(placement_at_start(kept, kUsual).right, 500);
    kept.show = zmr::WindowPlacementRecord::kHidden;
    EXPECT_EQ(placement_at_start(kept, kUsual).show, zmr::WindowPlacementRecord::kNormal);
}

TEST(PlacementAtStart, MaximizedWindow_StaysSoAlsoFromAnIcon)
{
    zmr::WindowPlacementRecord kept;
    kept.show = kMaximized;
    EXPECT_EQ(placement_at_start(kept, kUsual).show, kMaximized);
    kept.show = kMinimized;
    kept.flags = zmr::WindowPlacementRecord::kRestoreToMaximized;
    EXPECT_EQ(placement_at_start(kept, kUsual).show, kMaximized);
}

TEST(PlacementAtStart, IconOrWholeScreen_WhereTheStartAsksForIt)
{
    zmr::WindowPlacementRecord kept;
    kept.right = 500;
    for (const std::uint32_t how : {2U, 3U, 6U, 7U}) {
        EXPECT_EQ(placement_at_start(kept, how).show, how);
        EXPECT_EQ(placement_at_start(kept, how).right, 500);
    }
    constexpr std::uint32_t kHidden = 0;
    EXPECT_EQ(placement_at_start(kept, kHidden).show, zmr::WindowPlacementRecord::kNormal);
}
