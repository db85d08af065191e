#include "tests/samples/scene_editor/EditorDriver.h"

#include <gtest/gtest.h>

// The mistakes that the Diagnostics menu makes on purpose: the program tells of each and goes on.

namespace {

constexpr const char* kFaultText = "Serious error took place!\n\nZomarra needs to close.";

}  // namespace

TEST(Diagnostics, EachMistake_IsToldAndTheProgramGoesOn)
{
    EditorDriver editor({});
    ASSERT_TRUE(editor.has_window());
    for (const char letter : {'r', 'w', 'd', 'c', 'i', 't', 'm', 'h', 'e', 'r'}) {
        const std::string expected =
            letter == 'e' ? "This is what an exception of a handler says." : kFaultText;
        const auto is_told = [&] { return editor.message() == expected; };
        EXPECT_TRUE(editor.choose(std::string("dp") + letter, is_told)) << letter;
        EXPECT_TRUE(EditorDriver::wait_for([&] { return !editor.takes_input(); })) << letter;
        editor.key(VK_RETURN);
        EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.message().empty(); })) << letter;
        EXPECT_TRUE(editor.is_alive()) << letter;
    }
    EXPECT_TRUE(EditorDriver::wait_for([&] { return editor.takes_input(); }));
    EXPECT_EQ(editor.close(), 0);
}
