// The library panel from end to end: what is done to entries by keys and dialogs, and what the
// library holds then.
#include "EditorDriver.h"
#include "SampleLibrary.h"
#include "ToolListing.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "scene_editor/core/LibraryFilters.h"
#include "scene_editor/core/LibraryPaths.h"
#include "scene_editor/resource.h"
#include "tests/tools/ToolProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <filesystem>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

namespace {

constexpr int kRowsOfRoot = 5;
constexpr int kDirectoriesOfRoot = 2;
constexpr int kCaption = 3;
constexpr int kMore = 4;
constexpr int kDescription = 5;
constexpr int kFileName = 0x47C;  // of the system's dialog for files

/// The program on a library; a test of it begins with the focus in the list.
class LibraryPanel : public testing::Test {
protected:
    void start(int rows)
    {
        editor_ = std::make_unique<EditorDriver>(std::vector<std::string>{library_.file()});
        ASSERT_TRUE(editor_->has_window());
        ASSERT_TRUE(wait_for_rows(rows));
        ASSERT_TRUE(EditorDriver::wait_for([this] { return editor_->has_focus(IDC_ENTRIES); }));
    }
    [[nodiscard]] bool wait_for_rows(int rows)
    {
        return EditorDriver::wait_for([this, rows] { return editor_->rows() == rows; });
    }
    /// Selects the row of that name by typing the name's start; the list has the focus.
    [[nodiscard]] bool select(const std::string& name, int place)
    {
        editor_->key(VK_HOME);
        for (int i = 0; i < place; ++i)
            editor_->key(VK_DOWN);
        return EditorDriver::wait_for([&] { return editor_->previewed() == name; });
    }
    /// A line below the preview.
    [[nodiscard]] std::string line(int id) const
    {
        std::array<char, 1024> text{};
        DWORD_PTR length = 0;
        ::SendMessageTimeout(::GetDlgItem(editor_->control(IDC_PREVIEW), id), WM_GETTEXT,
                             text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG,
                             EditorDriver::kLimitMs, &length);
        return text.data();
    }
    [[nodiscard]] bool wait_for_line(int id, const std::string& text)
    {
        return EditorDriver::wait_for([&] { return line(id) == text; });
    }
    [[nodiscard]] bool answer(const std::string& part, const std::string& letter)
    {
        if (!EditorDriver::wait_for(
                [&] { return editor_->message().find(part) != std::string::npos; }))
            return false;
        editor_->type(letter);
        return EditorDriver::wait_for([this] { return editor_->message().empty(); });
    }
    /// Types into the dialog that has that control, and takes it.
    [[nodiscard]] bool type_into(int control, const std::string& text)
    {
        HWND dialog = nullptr;
        const bool is_open = EditorDriver::wait_for([&] {
            dialog = editor_->dialog_with(control);
            return dialog != nullptr && dialog == ::GetForegroundWindow();
        });
        if (!is_open)
            return false;
        editor_->type(text);
        editor_->key(VK_RETURN);
        return EditorDriver::wait_for(
            [&] { return editor_->dialog_with(control) == nullptr && editor_->takes_input(); });
    }
    [[nodiscard]] std::string as_typed(std::string file) const
    {
        std::replace(file.begin(), file.end(), '/', '\\');  // the dialog takes no other
        return file;
    }
    [[nodiscard]] bool close() { return editor_->close() == 0; }

    SampleLibrary library_;
    std::unique_ptr<EditorDriver> editor_;
};

}  // namespace

TEST_F(LibraryPanel, Description_IsWrittenShownAndRemoved)
{
    start(kRowsOfRoot);
    ASSERT_TRUE(select("root a", 2));
    editor_->key('E', {VK_CONTROL});
    ASSERT_TRUE(type_into(IDC_REQUEST_TEXT, "of red clay"));
    EXPECT_TRUE(wait_for_line(kDescription, "of red clay"));

    editor_->key('E', {VK_CONTROL});
    ASSERT_TRUE(
        EditorDriver::wait_for([&] { return editor_->dialog_with(IDC_REQUEST_TEXT) != nullptr; }));
    editor_->key(VK_ESCAPE);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor_->takes_input(); }));
    ASSERT_TRUE(select("root b", 3));
    editor_->key('E', {VK_CONTROL});
    ASSERT_TRUE(type_into(IDC_REQUEST_TEXT, "gone soon"));
    EXPECT_TRUE(wait_for_line(kDescription, "gone soon"));
    editor_->key('E', {VK_CONTROL});
    ASSERT_TRUE(EditorDriver::wait_for(
        [&] { return editor_->dialog_with(IDC_REQUEST_TEXT) == ::GetForegroundWindow(); }));
    editor_->key(VK_DELETE);  // all of it is selected
    ASSERT_TRUE(type_into(IDC_REQUEST_TEXT, ""));
    EXPECT_TRUE(wait_for_line(kDescription, ""));
    EXPECT_TRUE(close());

    EXPECT_THAT(run_tool({"describe", library_.file(), "root a"}).out, HasSubstr("of red clay"));
    EXPECT_EQ(run_tool({"attr", library_.file(), "root b", "--json"}).out, "[]\n");
}

TEST_F(LibraryPanel, Deletion_IsTakenBackAlsoByTheNextRunUntilTheLibraryIsPacked)
{
    start(kRowsOfRoot);
    ASSERT_TRUE(select("root b", 3));
    editor_->key(VK_DELETE);
    ASSERT_TRUE(answer("root b", "y"));
    ASSERT_TRUE(wait_for_rows(kRowsOfRoot - 1));
    EXPECT_EQ(editor_->directories(), 3);
    editor_->key('Z', {VK_CONTROL});
    ASSERT_TRUE(wait_for_rows(kRowsOfRoot));
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor_->previewed() == "root b"; }));
    editor_->key(VK_DELETE);
    ASSERT_TRUE(answer("root b", "y"));
    ASSERT_TRUE(wait_for_rows(kRowsOfRoot - 1));
    ASSERT_TRUE(close());

    start(kRowsOfRoot - 1);
    editor_->key('Z', {VK_CONTROL});
    ASSERT_TRUE(wait_for_rows(kRowsOfRoot));
    ASSERT_TRUE(select("root a", 2));
    editor_->key(VK_DELETE);
    ASSERT_TRUE(answer("root a", "y"));
    ASSERT_TRUE(wait_for_rows(kRowsOfRoot - 1));
    EXPECT_TRUE(editor_->choose("lp", [&] { return !editor_->message().empty(); }));
    ASSERT_TRUE(answer("can't be brought back", "y"));
    ASSERT_TRUE(close());

    EXPECT_THAT(names_in(library_.file()), UnorderedElementsAre("deep/er/one", "deep/er/two",
                                                                "Plain/three", "root b", "Root C"));
    EXPECT_EQ(run_tool({"verify", library_.file()}).code, 0);
}

TEST_F(LibraryPanel, ReferencesAndFilesOfTheirOwn_AreShownAsSuch)
{
    {
        ObjectDatabase database(library_.file().c_str(), GIO::OpenReadWrite);
        const PixelMap picture(4, 4, AbstractImage::Format24, nullptr);
        database.append_object(&picture, GString("x file"), new ODB_ExternalObject("x.lob"));
        database.append_object(
            nullptr, GString("x gone"),
            new ODB_ReferenceToObject(database, editor::mediator_name({}, "none")));
        database.append_object(
            nullptr, GString("x reference"),
            new ODB_ReferenceToObject(database, editor::mediator_name({"Plain"}, "three")));
    }
    start(kRowsOfRoot + 3);
    ASSERT_TRUE(select("x file", 5));
    EXPECT_TRUE(wait_for_line(kMore, "In the file x.lob"));
    editor_->key(VK_DOWN);
    EXPECT_TRUE(wait_for_line(kMore, "Reference to none, which is not there"));
    editor_->key(VK_DOWN);
    EXPECT_TRUE(wait_for_line(kMore, "Reference to Plain/three"));
    EXPECT_TRUE(close());
}

TEST_F(LibraryPanel, NamedPictures_AreShownInACircle)
{
    {
        ObjectDatabase database(library_.file().c_str(), GIO::OpenReadWrite);
        ODB_PixelMapAttribute pictures;
        database.get_mediator("root a")->set_attribute(&pictures, false);
        PixelMap side(30, 20, AbstractImage::Format24, nullptr);
        pictures.add_map("side", &side);
        pictures.add_map("front", &side);
    }
    start(kRowsOfRoot);
    ASSERT_TRUE(select("root a", 2));
    EXPECT_TRUE(wait_for_line(kMore, "2 pictures"));
    editor_->key(VK_RIGHT, {VK_MENU});
    EXPECT_TRUE(wait_for_line(kMore, "picture 1 of 2: front"));
    EXPECT_THAT(line(kCaption), HasSubstr("30"));
    editor_->key(VK_RIGHT, {VK_MENU});
    EXPECT_TRUE(wait_for_line(kMore, "picture 2 of 2: side"));
    editor_->key(VK_RIGHT, {VK_MENU});
    EXPECT_TRUE(wait_for_line(kMore, "2 pictures"));
    editor_->key(VK_LEFT, {VK_MENU});
    EXPECT_TRUE(wait_for_line(kMore, "picture 2 of 2: side"));
    EXPECT_TRUE(close());
}

TEST_F(LibraryPanel, Filters_ByClassAndExpression_AreSavedAndChosenAgain)
{
    {
        ObjectDatabase database(library_.file().c_str(), GIO::OpenReadWrite);
        const ODB_TextDescriptionAttribute text("an object of another class");
        database.append_object(&text, GString("root text"), nullptr);
    }
    start(kRowsOfRoot + 1);
    const HWND choice = editor_->control(IDC_FILTER_CHOICE);
    const auto choices = [choice] { return ::SendMessage(choice, CB_GETCOUNT, 0, 0); };
    ASSERT_TRUE(EditorDriver::wait_for([&] { return choices() == 5; }));

    // An expression, of the names as a whole; directories stay.
    editor_->key('F', {VK_CONTROL});
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor_->has_focus(IDC_FILTER); }));
    editor_->type("/root .*");
    ASSERT_TRUE(wait_for_rows(kDirectoriesOfRoot + 3));

    // And a class, which comes below all entries and the other class with its bases.
    editor_->key(VK_TAB);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor_->has_focus(IDC_FILTER_CHOICE); }));
    editor_->key('P');
    ASSERT_TRUE(wait_for_rows(kDirectoriesOfRoot + 2));
    ASSERT_TRUE(
        editor_->choose("ls", [&] { return editor_->dialog_with(IDC_REQUEST_TEXT) != nullptr; }));
    ASSERT_TRUE(type_into(IDC_REQUEST_TEXT, "red ones"));
    ASSERT_TRUE(EditorDriver::wait_for([&] { return choices() == 6; }));
    EXPECT_TRUE(close());

    {
        ObjectDatabase database(library_.file().c_str(), GIO::OpenReadWrite);
        const editor::SavedFilter saved{"red ones", {"PixelMap", false, "root .*"}};
        EXPECT_THAT(editor::saved_filters(database), ElementsAre(saved));
    }
    start(kDirectoriesOfRoot + 3);  // the line is kept between runs, the choice is not
    editor_->key('F', {VK_CONTROL});
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor_->has_focus(IDC_FILTER); }));
    editor_->key(VK_ESCAPE);
    ASSERT_TRUE(wait_for_rows(kRowsOfRoot + 1));
    editor_->key(VK_TAB);
    ASSERT_TRUE(EditorDriver::wait_for([&] { return editor_->has_focus(IDC_FILTER_CHOICE); }));
    editor_->key(VK_END);
    EXPECT_TRUE(wait_for_rows(kDirectoriesOfRoot + 2));
    EXPECT_EQ(editor_->text_of(IDC_FILTER), "/root .*/");
    EXPECT_TRUE(close());
}

TEST_F(LibraryPanel, Copy_GoesToAnotherLibraryAndIntoTheSameOne)
{
    const std::string other = library_.beside("other.odb");
    start(kRowsOfRoot);
    ASSERT_TRUE(select("root a", 2));
    editor_->key('C', {VK_CONTROL, VK_SHIFT});
    ASSERT_TRUE(type_into(kFileName, as_typed(other)));
    ASSERT_TRUE(EditorDriver::wait_for([&] { return std::filesystem::exists(other); }));

    // Into the library that is open: its list shows the entry of that other client at once.
    editor_->key('C', {VK_CONTROL, VK_SHIFT});
    ASSERT_TRUE(type_into(kFileName, as_typed(library_.file())));
    ASSERT_TRUE(answer("root a 2", "\r"));
    EXPECT_TRUE(wait_for_rows(kRowsOfRoot + 1));
    EXPECT_TRUE(close());

    EXPECT_THAT(names_in(other), ElementsAre("root a"));
    EXPECT_THAT(names_in(library_.file()), testing::Contains("root a 2"));
}

TEST_F(LibraryPanel, MenuOfAnEntry_OpensByItsKey)
{
    start(kRowsOfRoot);
    ASSERT_TRUE(select("root a", 2));
    editor_->key(VK_F10, {VK_SHIFT});
    const DWORD thread = ::GetWindowThreadProcessId(editor_->control(IDC_ENTRIES), nullptr);
    ASSERT_TRUE(EditorDriver::wait_for([thread] {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        return ::GetGUIThreadInfo(thread, &info) != FALSE &&
               (info.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE)) != 0;
    }));
    editor_->type("e");
    EXPECT_TRUE(answer("root a", "n"));
    EXPECT_TRUE(close());
}
