// The program itself from end to end: started on a library, driven by keys and mouse, and what it
// left checked by the command-line tool.
#include "EditorDriver.h"
#include "SampleLibrary.h"
#include "ToolListing.h"
#include "scene_editor/resource.h"
#include "tests/tools/ToolProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>
#include <fstream>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr int kRowsOfRoot = 5;
constexpr COLORREF kPictureColor = RGB(200, 60, 10);

// Selects a row of the root by its place: the directories first.
void select_row(EditorDriver& editor, int place)
{
    editor.key(VK_HOME);
    for (int i = 0; i < place; ++i)
        editor.key(VK_DOWN);
}

}  // namespace

TEST(SceneEditor, OpenBrowseFilterPreviewRenameDelete_LeaveTheLibraryAsTold)
{
    const SampleLibrary library;
    EditorDriver editor({library.file()});
    ASSERT_TRUE(editor.has_window());
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == kRowsOfRoot; }));
    EXPECT_THAT(editor.title(), StartsWith("sample.odb - "));
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.directories() == 3; }));
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.has_focus(IDC_ENTRIES); }));

    // Browse: into "deep", on into "er", and back.
    select_row(editor, 0);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.previewed() == "deep"; }));
    editor.key(VK_RETURN);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == 1; }));
    select_row(editor, 0);
    editor.key(VK_RETURN);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == 2; }));
    editor.key(VK_END);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.previewed() == "two"; }));
    editor.key(VK_F5);  // begins at the first row of the same directory
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.previewed() == "one"; }));
    EXPECT_EQ(editor.rows(), 2);
    editor.key(VK_BACK);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == 1; }));
    editor.key(VK_BACK);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == kRowsOfRoot; }));

    // Filter while typing, by name and by class.
    editor.key('F', {VK_CONTROL});
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.has_focus(IDC_FILTER); }));
    editor.type("root c");
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == 1; }));
    editor.key(VK_ESCAPE);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == kRowsOfRoot; }));
    editor.type("pixelm");
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == 3; }));
    editor.key(VK_ESCAPE);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == kRowsOfRoot; }));

    // Preview, in another way of drawing.
    editor.key(VK_RETURN);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.has_focus(IDC_ENTRIES); }));
    select_row(editor, 2);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.previewed() == "root a"; }));
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.preview_color() == kPictureColor; }));
    editor.key('2', {VK_CONTROL});
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.preview_color() != kPictureColor; }));
    editor.key('4', {VK_CONTROL});
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.preview_color() == kPictureColor; }));

    // Rename by the label, then a name that is in use.
    editor.key(VK_F2);
    editor.type("painted");
    editor.key(VK_RETURN);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.previewed() == "painted"; }));
    editor.key(VK_F2);
    editor.type("root b");
    editor.key(VK_RETURN);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return !editor.message().empty(); }));
    EXPECT_THAT(editor.message(), HasSubstr("already"));
    editor.key(VK_RETURN);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.message().empty(); }));

    // Delete, first thought better of.
    select_row(editor, 3);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.previewed() == "root b"; }));
    editor.key(VK_DELETE);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return !editor.message().empty(); }));
    EXPECT_THAT(editor.message(), HasSubstr("\"root b\""));
    editor.key(VK_RETURN);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.message().empty(); }));
    EXPECT_EQ(editor.rows(), kRowsOfRoot);
    editor.key(VK_DELETE);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return !editor.message().empty(); }));
    editor.type("y");
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == kRowsOfRoot - 1; }));
    EXPECT_EQ(editor.close(), 0);

    EXPECT_THAT(names_in(library.file()),
                testing::UnorderedElementsAre("deep/er/one", "deep/er/two", "Plain/three",
                                              "painted", "Root C", ".deleted/00000001/root b"));
    EXPECT_EQ(run_tool({"verify", library.file()}).code, 0);
}

TEST(SceneEditor, TabAndEnter_ReachEveryPane)
{
    const SampleLibrary library;
    EditorDriver editor({library.file()});
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.has_focus(IDC_ENTRIES); }));

    for (const int pane :
         {IDC_PREVIEW, IDC_SCENE, IDC_DIRECTORIES, IDC_FILTER, IDC_FILTER_CHOICE, IDC_ENTRIES}) {
        editor.key(VK_TAB);
        EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.has_focus(pane); })) << pane;
    }
    editor.key(VK_TAB, {VK_SHIFT});
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.has_focus(IDC_FILTER_CHOICE); }));
    EXPECT_EQ(editor.close(), 0);
}

TEST(SceneEditor, ClickInTheTreeAndDragOfASplitter_DoWhatTheyShow)
{
    const SampleLibrary library;
    EditorDriver editor({library.file()});
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.directories() == 3; }));
    const HWND tree = editor.control(IDC_DIRECTORIES);
    const auto height = static_cast<int>(::SendMessage(tree, TVM_GETITEMHEIGHT, 0, 0));

    editor.click(tree, 70, 2 * height + height / 2);  // "Plain", the third line
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == 1; }));

    RECT before{};
    ::GetWindowRect(tree, &before);
    editor.drag(editor.control(IDC_TREE_SPLITTER), 60);
    EXPECT_TRUE(EditorDriver::wait_for([&] {
        RECT after{};
        ::GetWindowRect(tree, &after);
        return after.right == before.right + 60;
    }));
    EXPECT_EQ(editor.close(), 0);
}

TEST(SceneEditor, FileThatIsNoLibrary_GetsAMessageAndTheWindowLives)
{
    const SampleLibrary library;
    const std::string text_file = library.beside("text.odb");
    std::ofstream(text_file) << "just a text";
    EditorDriver editor({text_file});
    ASSERT_TRUE(EditorDriver::wait_for([&] { return !editor.message().empty(); }));
    EXPECT_THAT(editor.message(), HasSubstr("text.odb"));
    editor.key(VK_RETURN);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.message().empty(); }));
    EXPECT_TRUE(editor.is_alive());

    // And a good one opens afterwards, by the menu's dialog.
    editor.key('O', {VK_CONTROL});
    constexpr int kFileName = 0x47C;
    ASSERT_TRUE(EditorDriver::wait_for([&] {
        return editor.dialog_with(kFileName) != nullptr &&
               editor.dialog_with(kFileName) == ::GetForegroundWindow();
    }));
    std::string name = library.file();
    std::replace(name.begin(), name.end(), '/', '\\');  // the dialog takes no other
    editor.type(name);
    editor.key(VK_RETURN);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == kRowsOfRoot; }));
    EXPECT_EQ(editor.close(), 0);
}

TEST(SceneEditor, LibraryThatAnotherWrites_OpensForReadingWithAMessage)
{
    const SampleLibrary library;
    const ObjectDatabase writer(library.file().c_str(), GIO::OpenReadWrite);
    ASSERT_NE(writer.server, nullptr);
    EditorDriver editor({library.file()});
    ASSERT_TRUE(EditorDriver::wait_for([&] { return !editor.message().empty(); }));
    EXPECT_THAT(editor.message(), HasSubstr("sample.odb"));
    editor.key(VK_RETURN);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.message().empty(); }));
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == kRowsOfRoot; }));
    EXPECT_THAT(editor.title(), HasSubstr("[read only]"));

    // A name can't be edited.
    select_row(editor, 2);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.previewed() == "root a"; }));
    editor.key(VK_F2);
    editor.key(VK_DELETE);
    editor.key(VK_DOWN);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.previewed() == "root b"; }));
    EXPECT_TRUE(editor.message().empty());
    EXPECT_EQ(editor.close(), 0);
}

TEST(SceneEditor, HundredThousandEntries_AreListedAndFilteredWithTimesToldByDiagnostics)
{
    constexpr int kEntries = 100'000;
    const SampleLibrary library(kEntries, 100);
    EditorDriver editor({library.file()});
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == kEntries; }));
    editor.key(VK_END);
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.previewed() == "entry 099999"; }));
    editor.key('F', {VK_CONTROL});
    editor.type("0777");
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.rows() == 120; }));

    ASSERT_TRUE(editor.choose("dh", [&] { return !editor.message().empty(); }));
    const std::string report = editor.message();
    std::cout << report << std::endl;
    EXPECT_THAT(report, HasSubstr("All 100,000 entries"));
    editor.key(VK_RETURN);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor.message().empty(); }));
    EXPECT_EQ(editor.close(), 0);
}
