// What the program keeps until it is started again: its window, its views, its recent files.
#include "EditorDriver.h"
#include "FreshSettings.h"
#include "SampleLibrary.h"
#include "platform/PlatformIds.h"
#include "scene_editor/core/EditorSettings.h"
#include "scene_editor/resource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using testing::EndsWith;
using testing::HasSubstr;

namespace {

constexpr int kRowsOfRoot = 5;

HWND frame_of(const EditorDriver& editor)
{
    return ::GetAncestor(editor.control(IDC_SCENE), GA_ROOT);
}

RECT place_of(HWND window)
{
    RECT place{};
    ::GetWindowRect(window, &place);
    return place;
}

/// A window as a person has it who starts the program on a library and waits until it is shown.
void expect_open(const EditorDriver& editor)
{
    ASSERT_TRUE(editor.has_window());
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.has_focus(IDC_ENTRIES); }));
}

std::string recent_file(int number)
{
    RegistryManager settings = settings_of_the_program();
    const std::string entry = "File" + std::to_string(number);
    return std::string(settings.GetProfileStringA("Recent File List", entry.c_str()).view());
}

}  // namespace

bool operator==(const RECT& a, const RECT& b)
{
    return ::EqualRect(&a, &b) != FALSE;
}

void PrintTo(const RECT& rect, std::ostream* out)
{
    *out << rect.left << ' ' << rect.top << ' ' << rect.right << ' ' << rect.bottom;
}

TEST(Restart, WindowAndSplitters_AreWhereTheyWere)
{
    const SampleLibrary library;
    RECT window{};
    RECT tree{};
    {
        EditorDriver editor({library.file()});
        expect_open(editor);
        ::SetWindowPos(frame_of(editor), nullptr, 70, 50, 900, 700, SWP_NOZORDER | SWP_NOACTIVATE);
        ASSERT_TRUE(EditorDriver::wait_for([&] {
            return place_of(frame_of(editor)) == RECT{70, 50, 970, 750};
        }));
        const LONG edge = place_of(editor.control(IDC_DIRECTORIES)).right;
        editor.drag(editor.control(IDC_TREE_SPLITTER), 40);
        ASSERT_TRUE(EditorDriver::wait_for(
            [&] { return place_of(editor.control(IDC_DIRECTORIES)).right == edge + 40; }));
        window = place_of(frame_of(editor));
        tree = place_of(editor.control(IDC_DIRECTORIES));
        EXPECT_EQ(editor.close(), 0);
    }

    EditorDriver editor({library.file()});
    expect_open(editor);
    EXPECT_EQ(place_of(frame_of(editor)), window);
    EXPECT_EQ(place_of(editor.control(IDC_DIRECTORIES)), tree);
    EXPECT_EQ(editor.close(), 0);
}

TEST(Restart, MaximizedWindow_IsSoAgainAndKnowsItsFormerPlace)
{
    const SampleLibrary library;
    RECT window{};
    {
        EditorDriver editor({library.file()});
        expect_open(editor);
        window = place_of(frame_of(editor));
        ::ShowWindow(frame_of(editor), SW_MAXIMIZE);
        ASSERT_TRUE(EditorDriver::wait_for([&] { return ::IsZoomed(frame_of(editor)) != FALSE; }));
        EXPECT_EQ(editor.close(), 0);
    }

    EditorDriver editor({library.file()});
    expect_open(editor);
    EXPECT_TRUE(::IsZoomed(frame_of(editor)));
    ::ShowWindow(frame_of(editor), SW_RESTORE);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return place_of(frame_of(editor)) == window; }));
    EXPECT_EQ(editor.close(), 0);
}

TEST(Restart, WindowOfAScreenThatIsGone_ComesIntoSight)
{
    RegistryManager settings = settings_of_the_program();
    editor::EditorSettings kept;
    kept.placement = zmr::WindowPlacementRecord{};
    kept.placement->left = 40'000;
    kept.placement->top = -30'000;
    kept.placement->right = 40'800;
    kept.placement->bottom = -29'400;
    ASSERT_TRUE(editor::write_settings(settings, kept, 96));

    EditorDriver editor({});
    ASSERT_TRUE(editor.has_window());
    RECT work{};
    ::SystemParametersInfo(SPI_GETWORKAREA, 0, &work, 0);
    const RECT place = place_of(frame_of(editor));
    EXPECT_GE(place.left, work.left);
    EXPECT_GE(place.top, work.top);
    EXPECT_LE(place.right, work.right);
    EXPECT_LE(place.bottom, work.bottom);
    EXPECT_EQ(place.right - place.left, 800);
    EXPECT_EQ(editor.close(), 0);
}

TEST(Restart, PartsPreviewAndFilter_AreAsTheyWere)
{
    const SampleLibrary library;
    const auto is_seen = [](const EditorDriver& editor, int id) {
        return ::IsWindowVisible(editor.control(id)) != FALSE;
    };
    {
        EditorDriver editor({library.file()});
        expect_open(editor);
        ASSERT_TRUE(editor.choose("vs", [&] { return !is_seen(editor, IDC_SCENE); }));
        ASSERT_TRUE(editor.choose("vb", [&] { return !is_seen(editor, AFX_IDW_STATUS_BAR); }));
        editor.key('4', {VK_CONTROL});
        editor.key('F', {VK_CONTROL});
        ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.has_focus(IDC_FILTER); }));
        editor.type("pixelm");
        ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == 3; }));
        EXPECT_EQ(editor.close(), 0);
    }

    EditorDriver editor({library.file()});
    expect_open(editor);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == 3; }));
    EXPECT_EQ(editor.text_of(IDC_FILTER), "pixelm");
    EXPECT_FALSE(is_seen(editor, IDC_SCENE));
    EXPECT_FALSE(is_seen(editor, AFX_IDW_STATUS_BAR));
    EXPECT_TRUE(is_seen(editor, IDC_ENTRIES));
    EXPECT_EQ(editor.close(), 0);

    // The way of drawing has gone through the second run, too.
    RegistryManager settings = settings_of_the_program();
    EXPECT_EQ(editor::read_settings(settings, 96).draw_type, 4);
}

TEST(RecentFiles, LibraryOfTheLastRun_OpensByItsNumber)
{
    const SampleLibrary first;
    const SampleLibrary second(3, 0);
    {
        EditorDriver editor({first.file()});
        expect_open(editor);
        EXPECT_EQ(editor.close(), 0);
    }
    {
        EditorDriver editor({second.file()});
        expect_open(editor);
        EXPECT_EQ(editor.close(), 0);
    }
    EXPECT_THAT(recent_file(1), EndsWith("large.odb"));

    EditorDriver editor({});
    ASSERT_TRUE(editor.has_window());
    EXPECT_TRUE(editor.choose("f2", [&] { return editor.rows() == kRowsOfRoot; }));
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.has_focus(IDC_ENTRIES); }));
    // It is the first of the list now.
    EXPECT_TRUE(editor.choose("f2", [&] { return editor.rows() == 3; }));
    EXPECT_EQ(editor.close(), 0);
    EXPECT_FALSE(recent_file(2).empty());
    EXPECT_TRUE(recent_file(3).empty());
}

TEST(RecentFiles, FileThatIsGone_GetsAMessageAndLeavesTheList)
{
    const SampleLibrary library;
    const std::string copy = library.beside("copy.odb");
    std::filesystem::copy_file(library.file(), copy);
    {
        EditorDriver editor({library.file()});
        expect_open(editor);
        EXPECT_EQ(editor.close(), 0);
    }
    {
        EditorDriver editor({copy});
        expect_open(editor);
        EXPECT_EQ(editor.close(), 0);
    }
    ASSERT_THAT(recent_file(1), EndsWith("copy.odb"));
    std::filesystem::remove(copy);

    EditorDriver editor({});
    ASSERT_TRUE(editor.has_window());
    EXPECT_TRUE(editor.choose("f1", [&] { return !editor.message().empty(); }));
    EXPECT_THAT(editor.message(), HasSubstr("copy.odb\" is not there any more"));
    editor.key(VK_RETURN);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.message().empty(); }));
    EXPECT_TRUE(EditorDriver::wait_for(
        [] { return recent_file(1).ends_with("sample.odb") && recent_file(2).empty(); }));
    EXPECT_TRUE(editor.choose("f1", [&] { return editor.rows() == kRowsOfRoot; }));
    EXPECT_EQ(editor.close(), 0);
}
