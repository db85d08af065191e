#include "scene_module/SceneObject.h"

#include "SceneHost.h"
#include "foundation/GException.h"
#include "foundation/GMetaClass.h"
#include "foundation/mpstream.h"
#include "scene_module/SceneMesh.h"
#include "scene_module/SnapToGrid.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

constexpr std::uint32_t kLeft = 0x1C;
constexpr std::uint32_t kRight = 0x1D;
constexpr std::uint32_t kUp = 0x1E;
constexpr std::uint32_t kPageUp = 0x0B;
constexpr std::uint32_t kPageDown = 0x0C;
constexpr std::uint32_t kEscape = 0x1B;
constexpr std::uint32_t kDelete = 0x7F;

// The middle of the window, where 0, 0 of the scene lies.
constexpr int kX = SceneHost::kWidth_px / 2;
constexpr int kY = SceneHost::kHeight_px / 2;

}  // namespace

TEST(SceneObject, Press_SelectsAndTakesTheEvent)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    SceneObject* const b = host.add("b", 120, 0);
    ASSERT_EQ(host.space->get_current(), b);

    host.press(kX, kY);

    EXPECT_EQ(host.space->get_current(), a);
    EXPECT_TRUE(a->get_state(GResponder::state_selected));
    EXPECT_FALSE(b->get_state(GResponder::state_selected));
}

TEST(SceneObject, Drag_MovesByTheMouseInSceneUnits)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);

    host.drag(kX + 10, kY - 5, kX + 70, kY + 25);

    EXPECT_DOUBLE_EQ(a->place().x, 60);
    EXPECT_DOUBLE_EQ(a->place().y, 30);
    EXPECT_FALSE(a->is_dragged());
    host.move(kX, kY);
    EXPECT_DOUBLE_EQ(a->place().x, 60) << "the button is up";
}

TEST(SceneObject, DragOutOfTheWindow_KeepsTheObject)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    SceneObject* const b = host.add("b", 120, 0);

    host.press(kX, kY);
    host.move(kX + 120, kY);
    host.move(-5000, kY);

    EXPECT_DOUBLE_EQ(a->place().x, -5000 - kX);
    EXPECT_DOUBLE_EQ(b->place().x, 120) << "it only lay below the mouse";
}

TEST(SceneObject, UnsteadyClick_MovesNothing)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    const std::uint64_t before = host.space->revision();

    host.drag(kX, kY, kX + SceneObject::kDragStart_px - 1, kY);

    EXPECT_DOUBLE_EQ(a->place().x, 0);
    EXPECT_EQ(host.space->revision(), before);
}

TEST(SceneObject, EscapeInADrag_PutsItBack)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    host.press(kX, kY);
    host.move(kX + 50, kY);
    ASSERT_DOUBLE_EQ(a->place().x, 50);

    EXPECT_TRUE(host.key(kEscape));
    host.move(kX + 90, kY);

    EXPECT_DOUBLE_EQ(a->place().x, 0);
    EXPECT_FALSE(host.key(kEscape)) << "nothing is dragged";
}

TEST(SceneObject, Keys_NudgeTurnAndScale)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    const double scale = a->place().scale;

    EXPECT_TRUE(host.key(kRight));
    EXPECT_TRUE(host.key(kUp | GEvent::key_shift_flag));
    EXPECT_TRUE(host.key(kPageUp));
    EXPECT_TRUE(host.key('+'));

    EXPECT_DOUBLE_EQ(a->place().x, SceneObject::kStep);
    EXPECT_DOUBLE_EQ(a->place().y, -SceneObject::kFineStep);
    EXPECT_DOUBLE_EQ(a->place().turn_deg, 360 - SceneObject::kTurnStep_deg);
    EXPECT_DOUBLE_EQ(a->place().scale, scale * SceneObject::kScaleStep);
    EXPECT_TRUE(host.key(kPageDown));
    EXPECT_DOUBLE_EQ(a->place().turn_deg, 0);
    EXPECT_FALSE(host.key('q'));
    EXPECT_FALSE(host.key(kLeft | GEvent::key_control_flag));
}

TEST(SceneObject, Delete_AsksTheSceneForItsEnd)
{
    SceneHost host;
    host.add("a", 0, 0);
    SceneObject* const b = host.add("b", 120, 0);
    TGPointer<GResponder> followed(b);

    EXPECT_TRUE(host.key(kDelete));

    EXPECT_FALSE(followed);
    ASSERT_EQ(host.space->getCount(), 1);
    EXPECT_STREQ(host.space->get_current()->get_label(), "a");
    EXPECT_TRUE(host.key(kDelete));
    EXPECT_EQ(host.space->getCount(), 0);
    EXPECT_FALSE(host.key(kDelete));
}

TEST(SceneObject, Disabled_RefusesTheMouseAndKeys)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    host.space->set_current(nullptr);
    a->set_state(GResponder::state_disabled, 1);

    host.drag(kX, kY, kX + 50, kY);

    EXPECT_EQ(host.space->get_current(), nullptr);
    EXPECT_DOUBLE_EQ(a->place().x, 0);
    host.space->set_current(a);
    EXPECT_FALSE(host.key(kRight));
}

TEST(SceneObject, EveryChange_TellsItsOwnWatchersAndThoseOfTheScene)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    Watcher own;
    Watcher whole;
    a->notify_when_modified(&own, scene::kChanged, 1);
    host.space->notify_when_modified(&whole, scene::kChanged, 2);
    const std::uint64_t before = host.space->revision();

    host.key(kRight);
    EXPECT_EQ(own.told, 1);
    EXPECT_EQ(whole.told, 1);
    EXPECT_EQ(host.space->revision(), before + 1);

    host.space->set_current(nullptr);
    EXPECT_GE(own.told, 2);
    EXPECT_GE(whole.told, 2);
    EXPECT_EQ(host.space->revision(), before + 1) << "what is selected is not kept";

    a->set_state(GResponder::state_shown, 0);
    EXPECT_GT(host.space->revision(), before + 1);
}

TEST(SceneObject, SetPlace_BringsValuesIntoTheirLimits)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    const double inf = std::numeric_limits<double>::infinity();

    a->set_place({1e30, std::numeric_limits<double>::quiet_NaN(), -30, -4});
    EXPECT_EQ(a->place(), (scene::Place{scene::kFarthest, 0, 330, scene::kLeastScale}));
    a->set_place({0, 0, inf, inf});
    EXPECT_EQ(a->place(), (scene::Place{0, 0, 0, 1}));
    a->set_place({0, 0, -1e-300, 1});
    EXPECT_EQ(a->place().turn_deg, 0);
}

TEST(SceneObject, SnapToGrid_DecidesWhereItComesToLie)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    auto* const snap = new SnapToGrid;
    EXPECT_EQ(a->grid_step(), 0);
    a->attach(snap);
    EXPECT_EQ(a->grid_step(), SnapToGrid::kUsualStep);

    host.drag(kX, kY, kX + 60, kY - 35);
    EXPECT_DOUBLE_EQ(a->place().x, 50);
    EXPECT_DOUBLE_EQ(a->place().y, -25);
    host.key(kRight);
    EXPECT_DOUBLE_EQ(a->place().x, 75) << "one point on";
    host.key(kLeft | GEvent::key_shift_flag);
    EXPECT_DOUBLE_EQ(a->place().x, 50);
    a->set_place({12.4, 12.6, 0, 1});
    EXPECT_DOUBLE_EQ(a->place().x, 0);
    EXPECT_DOUBLE_EQ(a->place().y, 25);

    a->detach(snap);
    GStreamable::Destroy(snap);
    host.key(kRight);
    EXPECT_DOUBLE_EQ(a->place().x, SceneObject::kStep);
}

namespace {

class Ending : public GBehaviour {
public:
    void handle_event(GEvent& event) override
    {
        if (event.what == scene::kMoving)
            GStreamable::destroy(host_responder);
    }
};

}  // namespace

TEST(SceneObject, BehaviourThatEndsIt_IsSurvived)
{
    SceneHost host;
    host.add("a", 0, 0)->attach(new Ending);

    host.key(kRight);

    EXPECT_EQ(host.space->getCount(), 0);
}

TEST(SceneObject, Stream_KeepsAllButWhoIsTold)
{
    SceneObject object(make_cube());
    object.set_label("a cube");
    object.set_place({3, -4, 45, 7});
    object.set_palette_entry(scene::kSurfaceColor, {10, 200, 30});
    object.set_state(GResponder::state_disabled, 1);
    object.attach(new SnapToGrid);
    Watcher watcher;
    object.notify_when_modified(&watcher, scene::kChanged, 9);

    ompstream out;
    out.writePointer(&object);
    impstream in(out.bytes());
    auto* const again = in.read_owned<SceneObject>();

    ASSERT_NE(again, nullptr);
    EXPECT_STREQ(again->get_label(), "a cube");
    EXPECT_EQ(again->place(), (scene::Place{3, -4, 45, 7}));
    EXPECT_EQ(again->get_palette_entry(scene::kSurfaceColor), (RGB_Color{10, 200, 30}));
    EXPECT_TRUE(again->is_disabled());
    EXPECT_EQ(again->triangle_count(), 12u);
    ASSERT_NE(again->get_behaviours(), nullptr);
    EXPECT_STREQ(again->get_behaviours()->getMetaClass()->name, "SnapToGrid");
    again->touch();
    EXPECT_EQ(watcher.told, 0);
    object.touch();
    EXPECT_EQ(watcher.told, 1) << "writing changes nothing";
    GStreamable::Destroy(again);
}

TEST(SceneObject, CutStream_ThrowsAtEveryLength)
{
    SceneObject object(make_cube());
    object.set_label("a cube");
    object.attach(new SnapToGrid);
    ompstream out;
    out.writePointer(&object);
    const std::vector<unsigned char> whole(out.bytes().begin(), out.bytes().end());

    for (std::size_t length = 0; length < whole.size(); ++length) {
        const std::vector<unsigned char> cut(whole.begin(),
                                             whole.begin() + static_cast<std::ptrdiff_t>(length));
        impstream in(cut);
        EXPECT_THROW(static_cast<void>(in.read_owned<SceneObject>()), GStreamException) << length;
    }
}

TEST(SceneObject, LaterVersionAndMissingMesh_AreRefused)
{
    SceneObject empty;
    ompstream without_mesh;
    empty.write(without_mesh);
    impstream first(without_mesh.bytes());
    SceneObject object;
    EXPECT_THROW(object.read(first), GStreamException);

    ompstream out;
    out.writeByte(SceneObject::kVersion + 1);
    impstream second(out.bytes());
    EXPECT_THROW(object.read(second), GStreamException);
}
