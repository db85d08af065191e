#include "scene_module/SceneSpace.h"

#include "SceneHost.h"
#include "foundation/GCollection.h"
#include "foundation/GException.h"
#include "foundation/GMetaClass.h"
#include "foundation/mpstream.h"
#include "scene_interface/SceneEvents.h"
#include "scene_module/SceneMaterial.h"
#include "scene_module/SceneMesh.h"
#include "scene_module/SceneObject.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>

namespace {

constexpr int kX = SceneHost::kWidth_px / 2;
constexpr int kY = SceneHost::kHeight_px / 2;
constexpr std::uint32_t kHome = 0x01;

int red_of(std::uint32_t pixel)
{
    return static_cast<int>(pixel >> 16 & 0xFF);
}

int blue_of(std::uint32_t pixel)
{
    return static_cast<int>(pixel & 0xFF);
}

void wheel(SceneHost& host, int x, int y, int steps)
{
    GEvent event;
    event.what = scene::kMouseWheel;
    event.mouse.x0 = x;
    event.mouse.y0 = y;
    event.mouse.y1 = steps * scene::kWheelStep;
    EXPECT_EQ(GResponder::message(host.space, event), host.space);
}

std::vector<unsigned char> stream_of(SceneSpace& space)
{
    ompstream out;
    out.writePointer(&space);
    return {out.bytes().begin(), out.bytes().end()};
}

SceneSpace* read_from(const std::vector<unsigned char>& bytes)
{
    impstream in(bytes);
    return in.read_owned<SceneSpace>();
}

}  // namespace

TEST(SceneSpace, BuiltByName_IsAScene)
{
    GRTTIObject* const built = GMetaClass::FindByName("SceneSpace")->buildObject();
    auto* const root = zmr::class_cast<GResponder>(built);
    ASSERT_NE(root, nullptr);
    EXPECT_NE(dynamic_cast<scene::SceneRoot*>(root), nullptr);
    GStreamable::Destroy(root);
}

TEST(SceneSpace, AddModel_TakesMeshesOnly)
{
    SceneHost host;
    SceneMaterial material;
    EXPECT_EQ(host.space->add_model(&material, "no"), nullptr);
    EXPECT_EQ(host.space->add_model(nullptr, "no"), nullptr);
    SceneMesh nothing;
    EXPECT_EQ(host.space->add_model(&nothing, "no"), nullptr) << "it could never be seen";

    GResponder* const added = host.space->add_model(make_cube(), "cube");

    ASSERT_NE(added, nullptr);
    EXPECT_EQ(host.space->get_current(), added);
    EXPECT_NE(dynamic_cast<scene::SceneItem*>(added), nullptr);
}

TEST(SceneSpace, AddModel_FindsRoomForEach)
{
    SceneHost host;
    std::vector<scene::Place> places;
    for (int i = 0; i < 30; ++i) {
        auto* const item =
            dynamic_cast<scene::SceneItem*>(host.space->add_model(make_cube(), "cube"));
        ASSERT_NE(item, nullptr);
        places.push_back(item->place());
    }

    EXPECT_EQ(places[0].x, 0);
    for (std::size_t i = 0; i < places.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_TRUE(places[i].x != places[j].x || places[i].y != places[j].y);
    }
}

TEST(SceneSpace, Selection_IsToldWhenItIsThere)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    SceneObject* const b = host.add("b", 100, 0);
    Watcher watcher;
    const GResponder* seen = nullptr;
    watcher.then = [&] { seen = host.space->get_current(); };
    host.space->notify_when_modified(&watcher, scene::kChanged, 0);

    a->select();
    EXPECT_EQ(seen, a);
    b->select();
    EXPECT_EQ(seen, b);
    host.space->set_current(nullptr);
    EXPECT_EQ(seen, nullptr);
}

TEST(SceneSpace, Draw_ShowsObjectsInTheirColourWhereTheyStand)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    a->set_palette_entry(scene::kSurfaceColor, {220, 30, 20});
    host.space->set_current(nullptr);

    host.draw();

    EXPECT_GT(red_of(host.pixel(kX, kY)), 2 * blue_of(host.pixel(kX, kY)));
    EXPECT_EQ(host.pixel(3, 3), host.space->ground());
    const int size = host.drawn_pixels();
    EXPECT_GT(size, 6000);
    EXPECT_LT(size, 40000);
}

TEST(SceneSpace, Draw_IsShaded)
{
    SceneHost host;
    host.add("a", 0, 0);
    host.space->set_current(nullptr);
    host.draw();

    // The three sides of the cube that are seen: top, left front and right front.
    const std::uint32_t top = host.pixel(kX, kY - 40);
    const std::uint32_t left = host.pixel(kX - 30, kY + 25);
    const std::uint32_t right = host.pixel(kX + 45, kY + 25);
    EXPECT_NE(top, left);
    EXPECT_NE(left, right);
    EXPECT_NE(top, right);
}

TEST(SceneSpace, Draw_TheFirstObjectStandsInFront)
{
    SceneHost host;
    SceneObject* const red = host.add("red", 0, 0);
    red->set_palette_entry(scene::kSurfaceColor, {220, 20, 20});
    SceneObject* const blue = host.add("blue", 0, 0);
    blue->set_palette_entry(scene::kSurfaceColor, {20, 20, 220});
    host.draw();
    EXPECT_GT(blue_of(host.pixel(kX, kY)), red_of(host.pixel(kX, kY)));

    const std::uint64_t before = host.space->revision();
    host.space->send_to_back(blue);
    host.draw();
    EXPECT_GT(red_of(host.pixel(kX, kY)), blue_of(host.pixel(kX, kY)));
    EXPECT_EQ(host.space->get_current(), blue);
    EXPECT_EQ(host.space->item_at(kX, kY), red);
    EXPECT_GT(host.space->revision(), before);

    blue->makeFirst();
    host.draw();
    EXPECT_GT(blue_of(host.pixel(kX, kY)), red_of(host.pixel(kX, kY)));
    host.space->send_to_back(nullptr);
    EXPECT_EQ(host.space->first(), blue);
}

TEST(SceneSpace, Draw_HiddenIsLeftOutAndDisabledIsGrey)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 0, 0);
    a->set_palette_entry(scene::kSurfaceColor, {220, 20, 20});
    host.space->set_current(nullptr);
    host.draw();
    const std::uint32_t plain = host.pixel(kX, kY);

    a->set_state(GResponder::state_disabled, 1);
    host.draw();
    const std::uint32_t grey = host.pixel(kX, kY);
    EXPECT_NE(grey, plain);
    EXPECT_LT(red_of(grey) - blue_of(grey), 10);

    a->set_state(GResponder::state_shown, 0);
    host.draw();
    EXPECT_EQ(host.drawn_pixels(), 0);
    EXPECT_EQ(host.space->item_at(kX, kY), nullptr);
}

TEST(SceneSpace, Draw_OutlinesTheSelectedObjectAndMarksTheFocus)
{
    SceneHost host;
    host.add("a", 0, 0);
    const auto count = [&host](long index) {
        const std::uint32_t color = scene::to_pixel(host.space->get_pal(index));
        int pixels = 0;
        for (int y = 0; y < SceneHost::kHeight_px; ++y) {
            for (int x = 0; x < SceneHost::kWidth_px; ++x)
                pixels += host.pixel(x, y) == color ? 1 : 0;
        }
        return pixels;
    };

    host.draw();
    EXPECT_GT(count(scene::kSelectionColor), 200);
    EXPECT_EQ(count(scene::kFocusColor), 0);
    host.space->set_state(GResponder::state_focused, 1);
    host.draw();
    EXPECT_EQ(count(scene::kSelectionColor), 0);
    EXPECT_GT(count(scene::kFocusColor), 200);
    host.space->set_current(nullptr);
    host.draw();
    EXPECT_EQ(count(scene::kSelectionColor) + count(scene::kFocusColor), 0);
}

TEST(SceneSpace, ItemAt_IsWhatIsDrawnThere)
{
    SceneHost host;
    SceneObject* const a = host.add("a", -40, 10);
    SceneObject* const b = host.add("b", 40, -10);
    a->set_palette_entry(scene::kSurfaceColor, {255, 0, 0});
    b->set_palette_entry(scene::kSurfaceColor, {0, 0, 255});
    host.space->set_current(nullptr);
    host.draw();

    // What the drawing shows, away from edges, where colours mix.
    enum class Seen : std::uint8_t { Ground, A, B, Mixed };
    const auto seen_in = [&host](int x, int y) {
        const std::uint32_t pixel = host.pixel(x, y);
        if (pixel == host.space->ground())
            return Seen::Ground;
        return red_of(pixel) > 2 * blue_of(pixel)   ? Seen::A
               : blue_of(pixel) > 2 * red_of(pixel) ? Seen::B
                                                    : Seen::Mixed;
    };
    std::map<Seen, int> compared;
    for (int y = 1; y < SceneHost::kHeight_px - 1; y += 3) {
        for (int x = 1; x < SceneHost::kWidth_px - 1; x += 3) {
            const Seen here = seen_in(x, y);
            if (here == Seen::Mixed || seen_in(x - 1, y) != here || seen_in(x + 1, y) != here ||
                seen_in(x, y - 1) != here || seen_in(x, y + 1) != here)
                continue;
            const GResponder* const drawn = here == Seen::A ? a : here == Seen::B ? b : nullptr;
            EXPECT_EQ(host.space->item_at(x, y), drawn) << x << ' ' << y;
            ++compared[here];
        }
    }
    EXPECT_GT(compared[Seen::A], 300);
    EXPECT_GT(compared[Seen::B], 300);
    EXPECT_GT(compared[Seen::Ground], 3000);
}

TEST(SceneSpace, PressOnTheGround_SelectsNothing)
{
    SceneHost host;
    host.add("a", 0, 0);

    host.press(2, 2);

    EXPECT_EQ(host.space->get_current(), nullptr);
}

TEST(SceneSpace, Wheel_ScalesAboutTheMouse)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 100, 0);
    const std::uint64_t before = host.space->revision();
    ASSERT_EQ(host.space->item_at(kX + 100, kY), a);

    wheel(host, kX + 100, kY, 3);

    EXPECT_EQ(host.space->item_at(kX + 100, kY), a);
    EXPECT_NEAR(host.space->x_px(100), kX + 100, 1e-9);
    EXPECT_NEAR(host.space->px_per_unit(), 1.25 * 1.25 * 1.25, 1e-9);
    EXPECT_EQ(host.space->revision(), before) << "a view is no change of the scene";
    wheel(host, kX + 100, kY, -3);
    EXPECT_NEAR(host.space->x_px(0), kX, 1e-6);
    wheel(host, 0, 0, 100000);
    EXPECT_LE(host.space->px_per_unit(), SceneSpace::kMostZoom);
    host.draw();
}

TEST(SceneSpace, PointAt_IsThePlaceThatAPixelShows)
{
    SceneHost host;
    wheel(host, kX + 40, kY - 20, 3);
    for (const auto& [x, y] : {std::pair{0, 0}, {kX, kY}, {-50, 1000}}) {
        const scene::Point point = host.space->point_at(x, y);

        EXPECT_NEAR(host.space->x_px(point.x), x, 1e-9);
        EXPECT_NEAR(host.space->y_px(point.y), y, 1e-9);
    }
}

TEST(SceneSpace, Home_ShowsEverything)
{
    SceneHost host;
    SceneObject* const a = host.add("a", 90'000, 0);
    SceneObject* const b = host.add("b", 91'000, 500);
    host.draw();
    ASSERT_EQ(host.drawn_pixels(), 0);

    EXPECT_TRUE(host.key(kHome));
    host.space->set_current(nullptr);
    host.draw();

    EXPECT_GT(host.drawn_pixels(), 100);
    const auto at = [&host](SceneObject* object) {
        const scene::Place place = object->place();
        return host.space->item_at(static_cast<int>(host.space->x_px(place.x)),
                                   static_cast<int>(host.space->y_px(place.y)));
    };
    EXPECT_EQ(at(a), a);
    EXPECT_EQ(at(b), b);
}

TEST(SceneSpace, AnyPlacesAndSizes_AreDrawnWithinTheView)
{
    SceneHost host;
    std::mt19937 random(5);
    const auto any = [&random](double most) {
        return std::uniform_real_distribution<double>(-most, most)(random);
    };
    SceneObject* const a = host.add("a", 0, 0);
    for (int step = 0; step < 15; ++step) {
        a->set_place({any(600), any(600), any(400), std::pow(10.0, any(4))});
        host.draw();
        static_cast<void>(host.space->item_at(static_cast<int>(any(500)), 100));
    }
    a->set_place({scene::kFarthest, -scene::kFarthest, 0, scene::kMostScale});
    host.draw();
    EXPECT_EQ(host.space->getCount(), 1);
}

TEST(SceneSpace, Stream_KeepsObjectsInTheirOrderTheCurrentOneAndTheView)
{
    SceneHost host;
    host.add("a", -100, 0);
    host.add("b", 0, 0);
    SceneObject* const c = host.add("c", 100, 0);
    c->set_state(GResponder::state_shown, 0);
    host.space->set_current(host.space->find_sub_object("a"));
    wheel(host, 30, 40, 2);

    const SceneHost again(read_from(stream_of(*host.space)));

    ASSERT_EQ(again.space->getCount(), 3);
    EXPECT_STREQ(again.space->at(0)->get_label(), "c");
    EXPECT_STREQ(again.space->at(1)->get_label(), "b");
    EXPECT_STREQ(again.space->at(2)->get_label(), "a");
    EXPECT_EQ(again.space->get_current(), again.space->at(2));
    EXPECT_FALSE(again.space->at(0)->is_visible());
    EXPECT_TRUE(again.space->at(1)->is_visible());
    EXPECT_NEAR(again.space->px_per_unit(), 1.25 * 1.25, 1e-12);
    EXPECT_NEAR(again.space->x_px(0), host.space->x_px(0), 1e-9);
}

TEST(SceneSpace, SceneThatWasRead_TakesInputAsAnyOther)
{
    SceneHost host;
    host.add("a", -60, 0);
    host.add("b", 60, 0);
    SceneHost again(read_from(stream_of(*host.space)));
    ASSERT_STREQ(again.space->get_current()->get_label(), "b");
    again.draw();

    again.drag(kX - 60, kY, kX - 40, kY + 10);

    ASSERT_NE(again.space->get_current(), nullptr);
    EXPECT_STREQ(again.space->get_current()->get_label(), "a");
    auto* const a = zmr::class_cast<SceneObject>(again.space->get_current());
    EXPECT_EQ(a->place().x, -40);
    EXPECT_EQ(a->place().y, 10);
}

TEST(SceneSpace, ReceiversInTheData_AreNotTold)
{
    // A scene in which an object claims that its root is to end it at every change.
    class Forged : public SceneSpace {
    public:
        void write(opstream& out) override
        {
            out.writeByte(kVersion);
            old_write(out);
            for (int i = 0; i < 3; ++i)
                out.writeDouble(1);
            write_subobjects(out);
        }
    };
    Forged forged;
    forged.notify_when_modified(&forged, scene::kRemovalAsked, 0);
    ompstream out;
    forged.write(out);
    impstream in(out.bytes());
    SceneSpace space;

    space.read(in);

    GCollection links(0, 4, 0);
    space.get_notification_receivers(links);
    EXPECT_EQ(links.count, 0);
}

TEST(SceneSpace, CutOrChangedStream_ThrowsOrGivesAScene)
{
    SceneHost host;
    host.add("a", 0, 0);
    host.add("b", 100, 0);
    const std::vector<unsigned char> whole = stream_of(*host.space);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const std::vector<unsigned char> cut(whole.begin(),
                                             whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_THROW(GStreamable::Destroy(read_from(cut)), GStreamException) << length;
    }

    std::mt19937 random(3);
    int read = 0;
    for (int step = 0; step < 120; ++step) {
        std::vector<unsigned char> changed = whole;
        for (int i = 0; i < 2; ++i)
            changed[random() % changed.size()] = static_cast<unsigned char>(random());
        SceneSpace* space = nullptr;
        try {
            space = read_from(changed);
        } catch (const GException&) {
        }
        if (space == nullptr)
            continue;
        SceneHost shown(space);
        shown.draw();
        shown.press(kX, kY);
        shown.key(0x7F);
        ++read;
    }
    EXPECT_GT(read, 10);
}

TEST(SceneSpace, LaterVersion_IsRefused)
{
    ompstream out;
    out.writeByte(SceneSpace::kVersion + 1);
    impstream in(out.bytes());
    SceneSpace space;
    EXPECT_THROW(space.read(in), GStreamException);
}
