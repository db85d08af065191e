// The scene of the program from end to end: driven by mouse and keys, and looked at on the screen
// and in the file that it leaves.
#include "EditorDriver.h"
#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GMetaClass.h"
#include "foundation/GObjectFileFormat.h"
#include "odb/ObjectDatabase.h"
#include "responder/GBehaviour.h"
#include "scene_editor/core/SceneCommands.h"
#include "scene_editor/core/SceneDocument.h"
#include "scene_editor/resource.h"
#include "scene_interface/SceneItem.h"
#include "tests/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iostream>

using testing::HasSubstr;
using testing::Not;

namespace {

constexpr int kFileName = 0x47C;       ///< The name's field in the dialog that opens files,
constexpr int kSavedFileName = 0x47C;  ///< and in the one that saves them.

/// A library of two models, "ring" and "vase", and the classes to read scenes with.
class ModelLibrary {
public:
    ModelLibrary() : file_(folder_.file("models.odb"))
    {
        ObjectDatabase database(file_.c_str(), GIO::OpenReadWrite);
        add(database, "ring.obj", "ring");
        add(database, "vase.stl", "vase");
    }

    [[nodiscard]] const std::string& file() const { return file_; }
    [[nodiscard]] std::string beside(const std::string& name) const { return folder_.file(name); }

private:
    static void add(ObjectDatabase& database, const char* sample, const char* name)
    {
        const std::string file = std::string(ZMR_TEST_DATA) + "/" + sample;
        const GObjectFileFormat* const format = GObjectFileFormat::Find(file.c_str());
        ASSERT_NE(format, nullptr);
        GStreamable* const model = format->read_object(file.c_str());
        database.append_object(model, GResourcePath(), name, nullptr);
        GStreamable::Destroy(model);
    }

    const GDynamicLinkLibrary module_{ZMR_SCENE_MODULE, 0};
    TemporaryFolder folder_;
    std::string file_;
};

class SceneProgram : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(editor.has_window());
        ASSERT_TRUE(EditorDriver::wait_for(
            [this] { return editor.rows() == 2 && editor.has_focus(IDC_ENTRIES); }));
        const HWND scene = editor.control(IDC_SCENE);
        RECT area{};
        ::GetClientRect(scene, &area);
        middle = {area.right / 2, area.bottom / 2};
    }

    // The rows are those of the library: 0 is the ring, 1 the vase.
    void add_model(int row)
    {
        editor.key('F', {VK_CONTROL});
        editor.key(VK_RETURN);
        ASSERT_TRUE(EditorDriver::wait_for([this] { return editor.has_focus(IDC_ENTRIES); }));
        editor.key(VK_HOME);
        if (row == 1)
            editor.key(VK_DOWN);
        const std::string name = row == 0 ? "ring" : "vase";
        ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.previewed() == name; }));
        editor.key('I', {VK_CONTROL});
    }
    // A point of the view by its place in the scene, which is not scaled.
    [[nodiscard]] POINT at(int x, int y) const { return {middle.x + x, middle.y + y}; }
    void click(int x, int y)
    {
        const POINT point = at(x, y);
        editor.click(editor.control(IDC_SCENE), point.x, point.y);
    }
    void drag(int x, int y, int dx, int dy)
    {
        editor.drag_from(editor.control(IDC_SCENE), at(x, y), dx, dy);
    }
    [[nodiscard]] bool shows(int property, const std::string& text) const
    {
        return EditorDriver::wait_for([&] { return editor.text_of(property) == text; });
    }
    [[nodiscard]] bool stands_at(const std::string& x, const std::string& y) const
    {
        return shows(IDC_PROPERTY_X, x) && shows(IDC_PROPERTY_Y, y);
    }
    // Waits until the colour at that point of the scene is what is told.
    template <class Test>
    [[nodiscard]] bool color_at(int x, int y, Test test) const
    {
        return EditorDriver::wait_for([&] {
            const auto picture = EditorDriver::picture_of(editor.control(IDC_SCENE));
            const std::uint32_t color =
                picture.at(static_cast<int>(at(x, y).x), static_cast<int>(at(x, y).y));
            return test(static_cast<int>(color >> 16), static_cast<int>(color >> 8 & 0xFF),
                        static_cast<int>(color & 0xFF));
        });
    }
    void answer_file_dialog(int field, std::string file)
    {
        ASSERT_TRUE(EditorDriver::wait_for([&] {
            return editor.dialog_with(field) != nullptr &&
                   editor.dialog_with(field) == ::GetForegroundWindow();
        }));
        std::replace(file.begin(), file.end(), '/', '\\');  // the dialog takes no other
        editor.type(file);
        editor.key(VK_RETURN);
    }
    [[nodiscard]] bool has_message(const std::string& part) const
    {
        return EditorDriver::wait_for([&] { return !editor.message().empty(); }) &&
               editor.message().find(part) != std::string::npos;
    }
    [[nodiscard]] bool message_goes() const
    {
        return EditorDriver::wait_for([&] { return editor.message().empty(); });
    }
    [[nodiscard]] bool title_has(const std::string& part) const
    {
        return EditorDriver::wait_for(
            [&] { return editor.title().find(part) != std::string::npos; });
    }

    const ModelLibrary library;
    EditorDriver editor{{library.file()}};
    POINT middle{};
};

// A ball of about 2 * `rings` * `rings` triangles, as an OBJ.
void write_ball(const std::string& file, int rings)
{
    std::ofstream out(file);
    const double pi = 3.14159265358979;
    for (int ring = 0; ring <= rings; ++ring) {
        for (int step = 0; step < rings; ++step) {
            const double down = pi * ring / rings;
            const double round = 2 * pi * step / rings;
            out << "v " << std::sin(down) * std::cos(round) << ' ' << std::cos(down) << ' '
                << std::sin(down) * std::sin(round) << '\n';
        }
    }
    for (int ring = 0; ring < rings; ++ring) {
        for (int step = 0; step < rings; ++step) {
            const int here = ring * rings + step + 1;
            const int next = ring * rings + (step + 1) % rings + 1;
            out << "f " << here << ' ' << next << ' ' << next + rings << ' ' << here + rings
                << '\n';
        }
    }
}

bool is_red(int red, int green, int blue)
{
    return red > 2 * green && red > 2 * blue;
}

bool is_not_red(int red, int green, int blue)
{
    return !is_red(red, green, blue);
}

scene::Place place_of(GResponder* object)
{
    const auto* const item = dynamic_cast<scene::SceneItem*>(object);
    return item != nullptr ? item->place() : scene::Place{};
}

}  // namespace

TEST_F(SceneProgram, ClickDragKeysSnapColourOrderDelete_AreInTheFileThatIsSavedAndOnTheScreen)
{
    const std::string file = library.beside("made.scene");
    add_model(0);
    ASSERT_TRUE(shows(IDC_PROPERTY_NAME, "ring"));
    editor.key(VK_DOWN);
    ASSERT_TRUE(EditorDriver::wait_for([this] { return editor.previewed() == "vase"; }));
    editor.key(VK_INSERT);
    ASSERT_TRUE(shows(IDC_PROPERTY_NAME, "vase"));
    ASSERT_TRUE(stands_at("150", "0"));

    // A click selects, a drag moves, keys nudge. The ring is empty in its middle.
    click(-48, 0);
    ASSERT_TRUE(shows(IDC_PROPERTY_NAME, "ring"));
    EXPECT_TRUE(editor.has_focus(IDC_SCENE));
    EXPECT_TRUE(shows(IDC_PROPERTY_STATE, "selected, focused"));
    drag(-48, 0, -100, 60);
    EXPECT_TRUE(stands_at("-100", "60"));
    editor.key(VK_RIGHT);
    editor.key(VK_UP, {VK_SHIFT});
    EXPECT_TRUE(stands_at("-90", "59"));

    // The module's behaviour, attached while it runs.
    editor.key('G', {VK_CONTROL});
    EXPECT_TRUE(shows(IDC_PROPERTY_STATE, "selected, focused, SnapToGrid"));
    drag(-90 - 48, 59, 33, 0);
    EXPECT_TRUE(stands_at("-50", "50"));
    editor.key(VK_LEFT);
    EXPECT_TRUE(stands_at("-75", "50"));

    // Its colour, on the screen where it is now and not where it was.
    editor.key('1', {VK_CONTROL});
    EXPECT_TRUE(shows(IDC_PROPERTY_COLOR, "#D63E34"));
    EXPECT_TRUE(color_at(-75 - 48, 50, is_red));
    EXPECT_TRUE(color_at(-75 + 48, 50, is_red));
    EXPECT_TRUE(color_at(-75, 50, is_not_red)) << "through the hole";
    EXPECT_TRUE(color_at(48, 0, is_not_red));

    // In front of the vase, which was the newer one; a third one comes and goes.
    editor.key(VK_PRIOR, {VK_CONTROL});
    add_model(1);
    ASSERT_TRUE(stands_at("0", "150"));
    click(0, 150);
    ASSERT_TRUE(EditorDriver::wait_for([this] { return editor.has_focus(IDC_SCENE); }));
    editor.key(VK_DELETE);
    EXPECT_TRUE(shows(IDC_PROPERTY_NAME, "ring"));
    EXPECT_TRUE(title_has("Untitled*"));

    editor.key('S', {VK_CONTROL});
    answer_file_dialog(kSavedFileName, file);
    ASSERT_TRUE(title_has("made.scene - "));

    editor::SceneDocument saved([] {});
    ASSERT_EQ(saved.load(file), std::nullopt);
    ASSERT_EQ(saved.root()->getCount(), 2);
    GResponder* const ring = saved.root()->at(0);
    GResponder* const vase = saved.root()->at(1);
    EXPECT_STREQ(ring->get_label(), "ring");
    EXPECT_EQ(place_of(ring).x, -75);
    EXPECT_EQ(place_of(ring).y, 50);
    EXPECT_EQ(ring->get_pal(scene::kSurfaceColor), editor::kColors[0].color);
    ASSERT_NE(ring->get_behaviours(), nullptr);
    EXPECT_STREQ(ring->get_behaviours()->getMetaClass()->name, "SnapToGrid");
    EXPECT_STREQ(vase->get_label(), "vase");
    EXPECT_EQ(place_of(vase).x, 150);
    EXPECT_EQ(vase->get_behaviours(), nullptr);

    // Changed again, dropped after a question, and loaded as it was saved.
    editor.key(VK_DOWN);
    EXPECT_TRUE(title_has("made.scene*"));
    editor.key('N', {VK_CONTROL});
    ASSERT_TRUE(has_message("made.scene"));
    editor.type("n");
    ASSERT_TRUE(message_goes());
    EXPECT_TRUE(shows(IDC_PROPERTY_NAME, ""));
    EXPECT_TRUE(color_at(-75 - 48, 50, is_not_red));
    editor.key('O', {VK_CONTROL, VK_SHIFT});
    answer_file_dialog(kFileName, file);
    ASSERT_TRUE(title_has("made.scene - "));
    EXPECT_TRUE(shows(IDC_PROPERTY_NAME, "ring"));
    EXPECT_TRUE(stands_at("-75", "50"));
    EXPECT_TRUE(color_at(-75 - 48, 50, is_red));

    EXPECT_EQ(editor.close(), 0);
}

TEST_F(SceneProgram, TypedPropertiesAndTheWheel_MoveAndScale)
{
    add_model(0);
    ASSERT_TRUE(shows(IDC_PROPERTY_NAME, "ring"));
    click(-48, 0);
    ASSERT_TRUE(EditorDriver::wait_for([this] { return editor.has_focus(IDC_SCENE); }));
    editor.key('1', {VK_CONTROL});
    ASSERT_TRUE(color_at(-48, 0, is_red));

    editor.key(VK_TAB);
    ASSERT_TRUE(EditorDriver::wait_for([this] { return editor.has_focus(IDC_PROPERTY_NAME); }));
    editor.key(VK_TAB);
    ASSERT_TRUE(EditorDriver::wait_for([this] { return editor.has_focus(IDC_PROPERTY_X); }));
    editor.type("120,5");
    editor.key(VK_RETURN);
    EXPECT_TRUE(shows(IDC_PROPERTY_X, "120.5"));
    EXPECT_TRUE(color_at(120 - 48, 0, is_red));
    EXPECT_TRUE(color_at(-48, 0, is_not_red));
    editor.type("much");
    editor.key(VK_RETURN);
    ASSERT_TRUE(has_message("\"much\" is no number"));
    editor.key(VK_RETURN);
    ASSERT_TRUE(message_goes());
    EXPECT_TRUE(shows(IDC_PROPERTY_X, "120.5"));
    editor.type("7");
    editor.key(VK_ESCAPE);
    EXPECT_TRUE(shows(IDC_PROPERTY_X, "120.5"));

    // About the middle: what lies at 72 comes to 72 * 1.25.
    editor.key(VK_TAB, {VK_SHIFT});
    editor.key(VK_TAB, {VK_SHIFT});
    ASSERT_TRUE(EditorDriver::wait_for([this] { return editor.has_focus(IDC_SCENE); }));
    editor.turn_wheel(editor.control(IDC_SCENE), middle, 4);
    EXPECT_TRUE(color_at(176, 0, is_red));
    EXPECT_TRUE(color_at(72, 0, is_not_red));

    // The end is asked about, and given up at first.
    editor.key(VK_F4, {VK_MENU});
    ASSERT_TRUE(has_message("Untitled"));
    editor.key(VK_ESCAPE);
    ASSERT_TRUE(message_goes());
    EXPECT_TRUE(editor.is_alive());
    editor.key(VK_F4, {VK_MENU});
    ASSERT_TRUE(has_message("Untitled"));
    editor.type("n");
    EXPECT_EQ(editor.wait_for_end(), 0);
}

TEST_F(SceneProgram, HiddenAndDisabledObjects_ShowAndTakeNoInput)
{
    add_model(0);
    ASSERT_TRUE(shows(IDC_PROPERTY_NAME, "ring"));
    click(-48, 0);
    editor.key('1', {VK_CONTROL});
    ASSERT_TRUE(color_at(-48, 0, is_red));

    editor.key('D', {VK_CONTROL});
    EXPECT_TRUE(shows(IDC_PROPERTY_STATE, "disabled, selected, focused"));
    EXPECT_TRUE(color_at(-48, 0, [](int red, int green, int blue) {
        return std::abs(red - green) < 16 && std::abs(red - blue) < 16;
    }));
    drag(-48, 0, 60, 0);
    EXPECT_TRUE(stands_at("0", "0"));
    editor.key('D', {VK_CONTROL, VK_SHIFT});
    EXPECT_TRUE(color_at(-48, 0, is_red));

    editor.key('H', {VK_CONTROL});
    EXPECT_TRUE(color_at(-48, 0, is_not_red));
    EXPECT_TRUE(shows(IDC_PROPERTY_NAME, ""));
    editor.key('H', {VK_CONTROL, VK_SHIFT});
    EXPECT_TRUE(color_at(-48, 0, is_red));
    editor.key(VK_TAB, {VK_CONTROL});
    EXPECT_TRUE(shows(IDC_PROPERTY_NAME, "ring"));
}

TEST_F(SceneProgram, ViewMenu_HidesEitherPart)
{
    const auto is_seen = [this](int id) { return ::IsWindowVisible(editor.control(id)) != FALSE; };
    EXPECT_TRUE(editor.choose("vs", [&] { return !is_seen(IDC_SCENE); }));
    EXPECT_TRUE(EditorDriver::wait_for([&] { return !is_seen(IDC_PROPERTIES); }));
    EXPECT_TRUE(is_seen(IDC_ENTRIES));
    EXPECT_TRUE(editor.choose("vl", [&] { return is_seen(IDC_SCENE); }))
        << "one of the two is always seen";
    EXPECT_TRUE(EditorDriver::wait_for([&] { return !is_seen(IDC_ENTRIES); }));
    EXPECT_TRUE(EditorDriver::wait_for([this] { return editor.has_focus(IDC_SCENE); }));
    EXPECT_EQ(editor.close(), 0);
}

TEST(SceneProgramStart, FiftyModelsOf5000Triangles_AreDraggedWithTimesToldByDiagnostics)
{
    const ModelLibrary library;
    const std::string model = library.beside("ball.obj");
    write_ball(model, 50);
    const std::string file = library.beside("fifty.scene");
    {
        editor::SceneDocument document([] {});
        ASSERT_TRUE(document.begin_new());
        for (int i = 0; i < 50; ++i) {
            GResponder* const ball = document.scene()->add_model(
                GObjectFileFormat::Find(model.c_str())->read_object(model.c_str()), "ball");
            ASSERT_NE(ball, nullptr);
            dynamic_cast<scene::SceneItem&>(*ball).set_place(
                {(i % 10 - 4.5) * 75, (i / 10 - 2) * 75.0, 0, 30});
            ball->set_palette_entry(scene::kSurfaceColor, editor::kColors[i % 6].color);
        }
        ASSERT_EQ(document.save(file), std::nullopt);
    }
    EditorDriver editor({library.file(), file});
    ASSERT_TRUE(EditorDriver::wait_for(
        [&] { return editor.rows() == 2 && editor.has_focus(IDC_ENTRIES); }));
    const HWND scene = editor.control(IDC_SCENE);
    RECT area{};
    ::GetClientRect(scene, &area);
    // The last one, which stands in front of all.
    POINT ball{area.right / 2 + 337, area.bottom / 2 + 150};
    editor.click(scene, static_cast<int>(ball.x), static_cast<int>(ball.y));
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.has_focus(IDC_SCENE); }));
    ASSERT_EQ(editor.text_of(IDC_PROPERTY_X), "337.5");
    for (int i = 0; i < 10; ++i) {
        const int way = i % 2 == 0 ? -300 : 300;
        editor.drag_from(scene, ball, way, 0);
        ball.x += way;
        const std::string there = i % 2 == 0 ? "37.5" : "337.5";
        ASSERT_TRUE(
            EditorDriver::wait_for([&] { return editor.text_of(IDC_PROPERTY_X) == there; }));
    }

    ASSERT_TRUE(editor.choose("dh", [&] { return !editor.message().empty(); }));
    std::cout << editor.message() << std::endl;
    EXPECT_THAT(editor.message(), HasSubstr("Pictures of the scene: "));
    editor.key(VK_RETURN);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.message().empty(); }));
}

TEST(SceneProgramStart, FileThatIsNoScene_GetsAMessageAndAnEmptyScene)
{
    const ModelLibrary library;
    const std::string bad = library.beside("bad.scene");
    std::ofstream(bad) << "just a text";
    EditorDriver editor({library.file(), bad});
    ASSERT_TRUE(EditorDriver::wait_for([&] { return !editor.message().empty(); }));
    EXPECT_THAT(editor.message(), HasSubstr("bad.scene"));
    EXPECT_THAT(editor.message(), HasSubstr("it is no scene"));
    editor.key(VK_RETURN);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.message().empty(); }));
    EXPECT_THAT(editor.title(), Not(HasSubstr("bad.scene")));
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == 2; }));
    EXPECT_EQ(editor.close(), 0);
}
