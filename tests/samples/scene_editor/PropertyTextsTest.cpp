#include "scene_editor/core/PropertyTexts.h"

#include "LoadedScene.h"
#include "scene_editor/core/SceneCommands.h"

#include <gtest/gtest.h>

using editor::Property;

namespace {

std::string typed(GResponder* object, Property property)
{
    return editor::property_texts(object).typed[static_cast<std::size_t>(property)];
}

}  // namespace

TEST(PropertyTexts, NoObject_HasNoTexts)
{
    EXPECT_EQ(editor::property_texts(nullptr), editor::PropertyTexts());
    GResponder plain;
    EXPECT_EQ(editor::property_texts(&plain), editor::PropertyTexts());
    EXPECT_TRUE(editor::set_property(plain, Property::X, "1").has_value());
}

TEST(PropertyTexts, Object_IsTold)
{
    LoadedScene loaded;
    GResponder* const ring = loaded.add("a ring", 12.5, -30);
    loaded.document.root()->set_state(GResponder::state_focused, 1);

    const editor::PropertyTexts texts = editor::property_texts(ring);

    EXPECT_EQ(typed(ring, Property::Name), "a ring");
    EXPECT_EQ(typed(ring, Property::X), "12.5");
    EXPECT_EQ(typed(ring, Property::Y), "-30");
    EXPECT_EQ(typed(ring, Property::Turn), "0");
    EXPECT_EQ(texts.class_name, "SceneObject");
    EXPECT_EQ(texts.color, "#ADBACF, the scene's");
    EXPECT_EQ(texts.state, "selected, focused");
    EXPECT_FALSE(texts.triangles.empty());
    EXPECT_TRUE(editor::run_command(loaded.document, editor::SceneCommand::SnapToGrid));
    EXPECT_TRUE(editor::run_command(loaded.document, editor::SceneCommand::Disable));
    EXPECT_EQ(editor::property_texts(ring).state, "disabled, selected, focused, SnapToGrid");
    ring->set_palette_entry(scene::kSurfaceColor, {255, 0, 10});
    EXPECT_EQ(editor::property_texts(ring).color, "#FF000A");
}

TEST(PropertyTexts, Numbers_AreShortAndHaveNoNegativeZero)
{
    LoadedScene loaded;
    GResponder* const ring = loaded.add("ring", -0.0001, 1234567.0);
    LoadedScene::item(ring).set_place({-0.0001, 1.0 / 3, 359.9999, 1e-7 / 3});

    EXPECT_EQ(typed(ring, Property::X), "0");
    EXPECT_EQ(typed(ring, Property::Y), "0.333");
    EXPECT_EQ(typed(ring, Property::Scale), "3.333e-08");
    EXPECT_EQ(editor::set_property(*ring, Property::Scale, typed(ring, Property::Scale)),
              std::nullopt);
}

TEST(PropertyTexts, TypedNumbers_AreTaken)
{
    LoadedScene loaded;
    GResponder* const ring = loaded.add("ring", 0, 0);

    EXPECT_EQ(editor::set_property(*ring, Property::X, " -12,25 "), std::nullopt);
    EXPECT_EQ(editor::set_property(*ring, Property::Y, "+1e2"), std::nullopt);
    EXPECT_EQ(editor::set_property(*ring, Property::Turn, "-90"), std::nullopt);
    EXPECT_EQ(editor::set_property(*ring, Property::Scale, "3.5"), std::nullopt);
    EXPECT_EQ(editor::set_property(*ring, Property::Name, "new name"), std::nullopt);

    EXPECT_EQ(LoadedScene::item(ring).place(), (scene::Place{-12.25, 100, 270, 3.5}));
    EXPECT_STREQ(ring->get_label(), "new name");
}

TEST(PropertyTexts, TextsThatAreNone_ChangeNothing)
{
    LoadedScene loaded;
    GResponder* const ring = loaded.add("ring", 1, 2);
    const scene::Place before = LoadedScene::item(ring).place();
    const std::uint64_t revision = loaded.document.scene()->revision();

    for (const char* text : {"", "  ", "x", "1x", "1 2", "nan", "inf", "1e999", "--1", "+-1"})
        EXPECT_TRUE(editor::set_property(*ring, Property::X, text).has_value()) << text;
    EXPECT_TRUE(editor::set_property(*ring, Property::Scale, "0").has_value());
    EXPECT_TRUE(editor::set_property(*ring, Property::Scale, "-1").has_value());
    EXPECT_TRUE(editor::set_property(*ring, Property::Name, "").has_value());
    EXPECT_TRUE(editor::set_property(*ring, Property::Name, std::string(500, 'n')).has_value());

    EXPECT_EQ(LoadedScene::item(ring).place(), before);
    EXPECT_EQ(loaded.document.scene()->revision(), revision);
}
