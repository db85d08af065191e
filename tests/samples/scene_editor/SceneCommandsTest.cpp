#include "scene_editor/core/SceneCommands.h"

#include "LoadedScene.h"
#include "foundation/GMetaClass.h"
#include "responder/GBehaviour.h"

#include <gtest/gtest.h>

using editor::SceneCommand;

namespace {

bool is_enabled(SceneCommand command)
{
    return GResponder::CommandEnabled(static_cast<unsigned long>(command));
}

bool is_checked(SceneCommand command)
{
    return GResponder::CommandChecked(static_cast<unsigned long>(command));
}

SceneCommand color(int number)
{
    return static_cast<SceneCommand>(static_cast<int>(SceneCommand::FirstColor) + number);
}

bool is_chosen(int number)
{
    return GResponder::CommandSelected(static_cast<unsigned long>(color(number)));
}

}  // namespace

TEST(SceneCommands, WithoutAScene_NothingCanBeDone)
{
    editor::SceneDocument document([] {});
    editor::update_commands(document, true);

    for (int id = 0; id <= static_cast<int>(SceneCommand::LastColor); ++id) {
        if (id > static_cast<int>(SceneCommand::ViewAll) &&
            id < static_cast<int>(SceneCommand::FirstColor))
            continue;  // no command
        EXPECT_FALSE(is_enabled(static_cast<SceneCommand>(id))) << id;
        EXPECT_FALSE(editor::run_command(document, static_cast<SceneCommand>(id))) << id;
    }
}

TEST(SceneCommands, EmptyScene_AllowsFilesAndModelsOfTheLibrary)
{
    LoadedScene loaded;
    editor::update_commands(loaded.document, false);
    EXPECT_TRUE(is_enabled(SceneCommand::Save));
    EXPECT_FALSE(is_enabled(SceneCommand::AddFromLibrary));
    EXPECT_FALSE(is_enabled(SceneCommand::Delete));
    EXPECT_FALSE(is_enabled(SceneCommand::SelectNext));
    EXPECT_FALSE(is_enabled(color(1)));
    EXPECT_FALSE(editor::run_command(loaded.document, SceneCommand::Delete));
    EXPECT_FALSE(editor::run_command(loaded.document, SceneCommand::Save)) << "it needs a file";
    editor::update_commands(loaded.document, true);
    EXPECT_TRUE(is_enabled(SceneCommand::AddFromLibrary));
}

TEST(SceneCommands, Order_IsEnabledWhereItWouldChangeSomething)
{
    LoadedScene loaded;
    loaded.add("a", 0, 0);
    GResponder* const b = loaded.add("b", 100, 0);
    editor::update_commands(loaded.document, false);
    EXPECT_FALSE(is_enabled(SceneCommand::BringToFront));
    EXPECT_TRUE(is_enabled(SceneCommand::SendToBack));

    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::SendToBack));

    EXPECT_EQ(loaded.document.root()->last(), b);
    EXPECT_EQ(loaded.document.current(), b);
    editor::update_commands(loaded.document, false);
    EXPECT_TRUE(is_enabled(SceneCommand::BringToFront));
    EXPECT_FALSE(is_enabled(SceneCommand::SendToBack));
    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::BringToFront));
    EXPECT_EQ(loaded.document.root()->first(), b);
}

TEST(SceneCommands, SnapToGrid_AttachesAndDetachesTheModulesBehaviour)
{
    LoadedScene loaded;
    GResponder* const a = loaded.add("a", 0, 0);

    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::SnapToGrid));
    editor::update_commands(loaded.document, false);
    EXPECT_TRUE(is_checked(SceneCommand::SnapToGrid));
    ASSERT_NE(a->get_behaviours(), nullptr);
    LoadedScene::item(a).set_place({60, 60, 0, 1});
    EXPECT_EQ(LoadedScene::item(a).place().x, 50);

    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::SnapToGrid));
    editor::update_commands(loaded.document, false);
    EXPECT_FALSE(is_checked(SceneCommand::SnapToGrid));
    EXPECT_TRUE(is_enabled(SceneCommand::SnapToGrid));
    EXPECT_EQ(a->get_behaviours(), nullptr);
}

TEST(SceneCommands, Color_IsThatOfThePaletteAndMarked)
{
    LoadedScene loaded;
    GResponder* const a = loaded.add("a", 0, 0);
    const RGB_Color of_scene = a->get_pal(scene::kSurfaceColor);
    editor::update_commands(loaded.document, false);
    EXPECT_TRUE(is_chosen(0));

    EXPECT_TRUE(editor::run_command(loaded.document, color(4)));
    EXPECT_EQ(a->get_pal(scene::kSurfaceColor), editor::kColors[3].color);
    editor::update_commands(loaded.document, false);
    EXPECT_TRUE(is_chosen(4));
    EXPECT_FALSE(is_chosen(0));

    EXPECT_TRUE(editor::run_command(loaded.document, color(0)));
    EXPECT_EQ(a->get_pal(scene::kSurfaceColor), of_scene);
    EXPECT_TRUE(loaded.document.is_changed());
}

TEST(SceneCommands, HideAndDisable_CanBeTakenBack)
{
    LoadedScene loaded;
    GResponder* const a = loaded.add("a", 0, 0);
    GResponder* const b = loaded.add("b", 100, 0);

    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::Hide));
    EXPECT_FALSE(b->is_visible());
    EXPECT_EQ(loaded.document.current(), a) << "the next one is selected";
    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::Disable));
    EXPECT_TRUE(a->is_disabled());
    editor::update_commands(loaded.document, false);
    EXPECT_TRUE(is_checked(SceneCommand::Disable));
    EXPECT_TRUE(is_enabled(SceneCommand::ShowAll));
    EXPECT_TRUE(is_enabled(SceneCommand::EnableAll));

    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::ShowAll));
    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::EnableAll));
    EXPECT_TRUE(b->is_visible());
    EXPECT_FALSE(a->is_disabled());
    editor::update_commands(loaded.document, false);
    EXPECT_FALSE(is_enabled(SceneCommand::ShowAll));
    EXPECT_FALSE(is_enabled(SceneCommand::EnableAll));
}

TEST(SceneCommands, HidingTheOnlyObject_SelectsNone)
{
    LoadedScene loaded;
    GResponder* const a = loaded.add("a", 0, 0);

    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::Hide));

    EXPECT_FALSE(a->is_visible());
    EXPECT_EQ(loaded.document.current(), nullptr);
}

TEST(SceneCommands, SelectNextAndPrevious_GoRound)
{
    LoadedScene loaded;
    GResponder* const a = loaded.add("a", 0, 0);
    GResponder* const b = loaded.add("b", 100, 0);
    GResponder* const c = loaded.add("c", 200, 0);

    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::SelectNext));
    EXPECT_EQ(loaded.document.current(), b);
    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::SelectPrevious));
    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::SelectPrevious));
    EXPECT_EQ(loaded.document.current(), a);
    loaded.document.root()->set_current(nullptr);
    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::SelectNext));
    EXPECT_EQ(loaded.document.current(), c) << "the one in front";
}

TEST(SceneCommands, Delete_EndsTheCurrentObject)
{
    LoadedScene loaded;
    loaded.add("a", 0, 0);
    loaded.add("b", 100, 0)->set_state(GResponder::state_disabled, 1);

    EXPECT_TRUE(editor::run_command(loaded.document, SceneCommand::Delete));

    EXPECT_EQ(loaded.document.root()->getCount(), 1);
    EXPECT_EQ(loaded.document.root()->find_sub_object("b"), nullptr);
}
