// The status lines of the program, while a person and the worker thread are at work.
#include "EditorDriver.h"
#include "SampleLibrary.h"
#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GObjectFileFormat.h"
#include "platform/PlatformIds.h"
#include "scene_editor/core/SceneCommands.h"
#include "scene_editor/core/SceneDocument.h"
#include "scene_editor/resource.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <optional>

namespace {

constexpr int kRowsOfRoot = 5;

class Status : public testing::Test {
protected:
    void start(const std::vector<std::string>& words)
    {
        editor.emplace(words);
        ASSERT_TRUE(editor->has_window());
        // It is seen a moment before its panes have their places.
        ASSERT_TRUE(EditorDriver::wait_for([this] {
            RECT area{};
            ::GetClientRect(editor->control(IDC_SCENE), &area);
            return ::IsRectEmpty(&area) == FALSE;
        }));
    }
    [[nodiscard]] HWND bar() const { return editor->control(AFX_IDW_STATUS_BAR); }
    [[nodiscard]] HWND line(int id) const { return ::GetDlgItem(bar(), id); }
    [[nodiscard]] static std::string text_of(HWND window)
    {
        std::array<char, 1024> text{};
        ::SendMessage(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
        return text.data();
    }
    [[nodiscard]] bool tells(int id, const std::string& text) const
    {
        const bool is_told = EditorDriver::wait_for([&] { return text_of(line(id)) == text; });
        EXPECT_EQ(text_of(line(id)), text) << id;
        return is_told;
    }
    /// Moves the mouse to a point of a client area, by small steps around it until it is told of.
    [[nodiscard]] bool hover(HWND window, int x, int y, const std::function<bool()>& is_told)
    {
        const auto move_to = [&](int dx) {
            POINT point{x + dx, y};
            ::ClientToScreen(window, &point);
            INPUT input{};
            input.type = INPUT_MOUSE;
            input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
            input.mi.dx = (point.x * 65536 + 32768) / ::GetSystemMetrics(SM_CXSCREEN);
            input.mi.dy = (point.y * 65536 + 32768) / ::GetSystemMetrics(SM_CYSCREEN);
            ::SendInput(1, &input, sizeof input);
        };
        // Moves may be lost while the system still tells of a window that has closed.
        constexpr DWORD kTryMs = 500;
        for (int tries = 0; tries < 40; ++tries) {
            move_to(1);
            move_to(0);
            if (EditorDriver::wait_for(is_told, kTryMs))
                return true;
        }
        return false;
    }
    /// "X: %7.2f" of a pixel, when nothing is scaled and the middle of the view is 0.
    [[nodiscard]] static std::string coordinate(char axis, int pixel, LONG size)
    {
        std::array<char, 64> text{};
        std::snprintf(text.data(), text.size(), "%c: %7.2f", axis,
                      pixel - static_cast<double>(size) / 2);
        return text.data();
    }
    void close() { EXPECT_EQ(editor->close(), 0); }

    std::optional<EditorDriver> editor;
};

}  // namespace

TEST_F(Status, Coordinates_FollowTheMouseInTheSceneAndGoWithIt)
{
    start({});
    const HWND scene = editor->control(IDC_SCENE);
    RECT area{};
    ::GetClientRect(scene, &area);
    for (const POINT point : {POINT{200, 100}, POINT{230, 180}}) {
        const int x = static_cast<int>(point.x);
        const int y = static_cast<int>(point.y);
        const std::string wanted = coordinate('X', x, area.right);
        EXPECT_TRUE(hover(scene, x, y, [&] { return text_of(line(IDC_STATUS_X)) == wanted; }));
        EXPECT_TRUE(tells(IDC_STATUS_Y, coordinate('Y', y, area.bottom)));
        EXPECT_TRUE(tells(IDC_STATUS_Z, "Z:    0.00"));
    }
    // It is seen on the screen, too.
    const auto picture = EditorDriver::picture_of(line(IDC_STATUS_X));
    EXPECT_GT(std::count_if(picture.pixels.begin(), picture.pixels.end(),
                            [](std::uint32_t pixel) { return (pixel & 0xFF) < 0x60; }),
              20);

    EXPECT_TRUE(hover(editor->control(IDC_PREVIEW), 20, 20,
                      [&] { return text_of(line(IDC_STATUS_X)).empty(); }));
    EXPECT_TRUE(tells(IDC_STATUS_Y, ""));
    close();
}

TEST_F(Status, Commands_TellWhatTheyDoWhileAMenuStandsOnThem)
{
    start({});
    EXPECT_TRUE(editor->choose(
        "f", [&] { return text_of(bar()) == "Opens a library in place of this one"; }));
    editor->key(VK_ESCAPE);
    editor->key(VK_ESCAPE);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return text_of(bar()) == "Ready"; }));
    close();
}

TEST_F(Status, Worker_TellsWhatItHasDone)
{
    const SampleLibrary library;
    start({library.file()});
    EXPECT_TRUE(tells(IDC_STATUS_GENERAL, "sample.odb is open"));
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor->has_focus(IDC_ENTRIES); }));
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor->rows() == kRowsOfRoot; }));
    editor->key(VK_END);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor->previewed() == "Root C"; }));
    editor->key(VK_F2);
    editor->type("painted");
    editor->key(VK_RETURN);
    EXPECT_TRUE(tells(IDC_STATUS_GENERAL, "Root C is now painted"));
    close();
}

TEST_F(Status, NameBelowTheMouse_IsTold)
{
    const SampleLibrary library;
    start({library.file()});
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor->rows() == kRowsOfRoot; }));
    const HWND list = editor->control(IDC_ENTRIES);
    EXPECT_TRUE(hover(list, 60, 40, [&] {
        const std::string text = text_of(line(IDC_STATUS_GENERAL));
        return text == "deep" || text == "Plain";
    }));
    EXPECT_TRUE(hover(editor->control(IDC_PREVIEW), 20, 20,
                      [&] { return text_of(line(IDC_STATUS_GENERAL)).empty(); }));
    close();
}

TEST_F(Status, GridAndNameOfAnObject_AreTold)
{
    const GDynamicLinkLibrary module(ZMR_SCENE_MODULE, 0);
    const TemporaryFolder folder;
    const std::string file = folder.file("one.scene");
    {
        editor::SceneDocument document([] {});
        ASSERT_TRUE(document.begin_new());
        const std::string model = std::string(ZMR_TEST_DATA) + "/vase.stl";
        ASSERT_NE(document.scene()->add_model(
                      GObjectFileFormat::Find(model.c_str())->read_object(model.c_str()), "vase"),
                  nullptr);
        ASSERT_TRUE(editor::run_command(document, editor::SceneCommand::SnapToGrid));
        ASSERT_EQ(document.save(file), std::nullopt);
    }
    start({file});
    const HWND scene = editor->control(IDC_SCENE);
    RECT area{};
    ::GetClientRect(scene, &area);
    EXPECT_TRUE(hover(scene, static_cast<int>(area.right) / 2, static_cast<int>(area.bottom) / 2,
                      [&] { return text_of(line(IDC_STATUS_GENERAL)) == "vase"; }));
    editor->click(scene, static_cast<int>(area.right) / 2, static_cast<int>(area.bottom) / 2);
    EXPECT_TRUE(tells(IDC_STATUS_GRID, "Grid = 25"));
    editor->key('G', {VK_CONTROL});
    EXPECT_TRUE(tells(IDC_STATUS_GRID, ""));
    // Back as it was saved, so that nobody asks.
    editor->key('G', {VK_CONTROL});
    EXPECT_TRUE(tells(IDC_STATUS_GRID, "Grid = 25"));
    editor->key('S', {VK_CONTROL});
    close();
}
