#include "scene_editor/resource.h"
#include "tests/samples/scene_editor/EditorDriver.h"

#include <gtest/gtest.h>

// The mistakes that the Diagnostics menu makes on purpose: the program tells of each and goes on.

namespace {

constexpr const char* kFaultText = "Serious error took place!\n\nZomarra needs to close.";

/// How many popup menus are open on the screen.
int open_popups()
{
    int count = 0;
    for (HWND popup = nullptr;
         (popup = ::FindWindowExA(nullptr, popup, "#32768", nullptr)) != nullptr;)
        count += ::IsWindowVisible(popup) ? 1 : 0;
    return count;
}

/// Whether keys go to the main window of the editor, which takes them again behind a box.
bool is_in_front(const EditorDriver& editor)
{
    const HWND frame = ::GetAncestor(editor.control(IDC_SCENE), GA_ROOT);
    return frame != nullptr && ::GetForegroundWindow() == frame && ::IsWindowEnabled(frame);
}

/// Chooses an item of the menu of provocations by its letter.
void provoke(EditorDriver& editor, char letter)
{
    EXPECT_TRUE(EditorDriver::wait_for([&] { return is_in_front(editor); })) << letter;
    // A key that comes while a former program's window goes may be lost. Where it was the letter,
    // the bar waits for one, and Alt would only end that.
    constexpr DWORD kTryMs = 2'000;
    bool open = false;
    for (int tries = 0; !open && tries < 5; ++tries) {
        if (tries > 0)
            editor.key(VK_ESCAPE);
        editor.key('D', {VK_MENU});
        open = EditorDriver::wait_for([] { return open_popups() == 1; }, kTryMs);
    }
    EXPECT_TRUE(open) << letter;
    editor.key('P');
    EXPECT_TRUE(EditorDriver::wait_for([] { return open_popups() == 2; })) << letter;
    editor.key(static_cast<WORD>(letter));
}

}  // namespace

TEST(Diagnostics, EachMistake_IsToldAndTheProgramGoesOn)
{
    EditorDriver editor({});
    ASSERT_TRUE(editor.has_window());
    for (const char letter : {'R', 'W', 'D', 'C', 'I', 'T', 'M', 'H', 'E', 'R'}) {
        const std::string expected =
            letter == 'E' ? "This is what an exception of a handler says." : kFaultText;
        provoke(editor, letter);
        EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.message() == expected; })) << letter;
        EXPECT_TRUE(EditorDriver::wait_for([&] { return !is_in_front(editor); })) << letter;
        editor.key(VK_RETURN);
        EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.message().empty(); })) << letter;
        EXPECT_TRUE(editor.is_alive()) << letter;
    }
    EXPECT_TRUE(EditorDriver::wait_for([&] { return is_in_front(editor); }));
    editor.key(VK_F4, {VK_MENU});
    EXPECT_EQ(editor.wait_for_end(), 0);
}
