#include "scene_editor/core/SceneInput.h"

#include "responder/KeySource.h"
#include "scene_interface/SceneEvents.h"

#include <gtest/gtest.h>

using editor::MouseMessage;

TEST(SceneInput, MouseMessages_BecomeEventsOfTheirKinds)
{
    const GEvent press = editor::mouse_event(MouseMessage::Press,
                                             editor::kLeftButtonKey | editor::kShiftKey, 30, -4);
    EXPECT_EQ(press.what, GEvent::event_mouse_press);
    EXPECT_EQ(press.mouse.x0, 30);
    EXPECT_EQ(press.mouse.y0, -4);
    EXPECT_EQ(press.mouse.word0, scene::kLeftButton);
    EXPECT_EQ(press.mouse.word1, ShiftState{GEvent::shift_down});

    EXPECT_EQ(editor::mouse_event(MouseMessage::Release, 0, 0, 0).what, scene::kMouseRelease);
    const GEvent move = editor::mouse_event(
        MouseMessage::Move, editor::kRightButtonKey | editor::kMiddleButtonKey, 0, 0);
    EXPECT_EQ(move.what, scene::kMouseMove);
    EXPECT_EQ(move.mouse.word0, scene::kRightButton | scene::kMiddleButton);
    const GEvent wheel = editor::mouse_event(MouseMessage::Wheel, editor::kControlKey, 1, 2, -240);
    EXPECT_EQ(wheel.what, scene::kMouseWheel);
    EXPECT_EQ(wheel.mouse.y1, -240);
    EXPECT_EQ(wheel.mouse.word1, ShiftState{GEvent::control_down});
}

TEST(SceneInput, MouseKinds_AreInputAndPositional)
{
    for (const MouseMessage message :
         {MouseMessage::Press, MouseMessage::Release, MouseMessage::Move, MouseMessage::Wheel}) {
        const GEvent event = editor::mouse_event(message, 0, 0, 0);
        EXPECT_NE(event.what & GEvent::event_input_mask, 0u);
        EXPECT_NE(event.what & GEvent::event_positional_mask, 0u);
    }
}

TEST(SceneInput, Keys_HaveTheirCodesAndModifiers)
{
    const zmr::KeySource former = zmr::set_key_source(
        [](int key, bool) { return static_cast<unsigned short>(key == 0x10 ? 0x8000 : 0); });
    const std::optional<GEvent> left = editor::key_event(0x25);
    const std::optional<GEvent> none = editor::key_event(0x10);
    zmr::set_key_source(former);

    ASSERT_TRUE(left.has_value());
    EXPECT_EQ(left->what, GEvent::event_key);
    EXPECT_EQ(left->info_word, 0x1C | GEvent::key_shift_flag);
    EXPECT_FALSE(none.has_value());
}
