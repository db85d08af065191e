#include "settings/MsgBox.h"

#include "foundation/GString.h"
#include "platform/CWinApp.h"
#include "settings/LibraryIds.h"
#include "tests/settings/ShownBox.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Buttons = std::vector<int>;

/// An application that notes boxes instead of showing them.
class NotingApplication : public CWinApp {
public:
    NotingApplication() : CWinApp("Noting") {}

    int DoMessageBox(LPCTSTR text, UINT type, UINT help) override
    {
        ++boxes;
        last_text = text;
        last_type = type;
        last_help = help;
        return answer;
    }

    int answer = IDOK;
    int boxes = 0;
    std::string last_text;
    UINT last_type = 0;
    UINT last_help = 1;
};

/// Known under 60200 and 60201 while it lives.
unsigned load_test_string(unsigned id, char* buffer, unsigned size, void*)
{
    std::string text;
    if (id == 60200)
        text = "Really?";
    if (id == 60201)
        text = "%d of %s";
    if (text.empty() || text.size() >= size)
        return 0;
    text.copy(buffer, text.size());
    buffer[text.size()] = '\0';
    return static_cast<unsigned>(text.size());
}

void know_test_strings()
{
    [[maybe_unused]] static const bool added = [] {
        GString::AddLoadStringFunc(&load_test_string, nullptr);
        return true;
    }();
}

}  // namespace

// Without an application object, the system's own boxes.

TEST(MsgBoxShown, Flags0_WarningWithALoneOk)
{
    BoxReader reader(press(IDOK));

    const unsigned long answer = MsgBox::message_box("Low on memory", 0ul);

    const ShownBox box = reader.shown();
    EXPECT_EQ(box.caption, "Warning");
    EXPECT_EQ(box.text, "Low on memory");
    EXPECT_EQ(box.buttons, Buttons{IDOK});
    EXPECT_EQ(box.icon, ::LoadIcon(nullptr, IDI_EXCLAMATION));
    EXPECT_EQ(answer, 1u);
}

TEST(MsgBoxShown, Flags3_ErrorNeverConfirm)
{
    BoxReader reader(press(IDOK));

    const unsigned long answer = MsgBox::message_box("Broken", 3ul);

    const ShownBox box = reader.shown();
    EXPECT_EQ(box.caption, "Error");
    EXPECT_EQ(box.icon, ::LoadIcon(nullptr, IDI_HAND));
    EXPECT_EQ(answer, 1u);
}

TEST(MsgBoxShown, Flags2_Information)
{
    BoxReader reader(press(IDOK));

    static_cast<void>(MsgBox::message_box("Saved", 0x402ul));

    const ShownBox box = reader.shown();
    EXPECT_EQ(box.caption, "Information");
    EXPECT_EQ(box.icon, ::LoadIcon(nullptr, IDI_ASTERISK));
}

TEST(MsgBoxShown, Flags800Alone_OkWhoseClosingReturns1)
{
    BoxReader reader(strike(VK_ESCAPE));

    const unsigned long answer = MsgBox::message_box("Cancel alone is no choice", 0x800ul);

    EXPECT_EQ(reader.shown().buttons, Buttons{IDOK});
    EXPECT_EQ(answer, 1u);
}

TEST(MsgBoxShown, FlagsC00_OkAndCancelWhoseClosingReturns2)
{
    BoxReader reader(strike(VK_ESCAPE));

    const unsigned long answer = MsgBox::message_box("Go on?", 0xC00ul);

    EXPECT_EQ(reader.shown().buttons, (Buttons{IDOK, IDCANCEL}));
    EXPECT_EQ(answer, 2u);
}

TEST(MsgBoxShown, Flags100_YesAndNoOnly)
{
    BoxReader reader(click(IDNO));

    const unsigned long answer = MsgBox::message_box("Save?", 0x100ul);

    EXPECT_EQ(reader.shown().buttons, (Buttons{IDYES, IDNO}));
    EXPECT_EQ(answer, 7u);
}

TEST(MsgBoxShown, Flags900_YesNoAndCancelEachReturnsItsAnswer)
{
    const struct {
        int button;
        unsigned long answer;
    } kAnswers[] = {{IDYES, 6}, {IDNO, 7}, {IDCANCEL, 2}};
    for (const auto& [button, expected] : kAnswers) {
        BoxReader reader(click(button));

        const unsigned long answer = MsgBox::message_box("Save the scene?", 0x900ul);

        EXPECT_EQ(reader.shown().buttons, (Buttons{IDYES, IDNO, IDCANCEL}));
        EXPECT_EQ(answer, expected);
    }
}

TEST(MsgBoxShown, Flags908_ReturnPressesTheSecondButton)
{
    BoxReader reader(strike(VK_RETURN));

    const unsigned long answer = MsgBox::message_box("Throw away?", 0x908ul);

    EXPECT_EQ(reader.shown().default_button, IDNO);
    EXPECT_EQ(answer, 7u);
}

TEST(MsgBoxShown, Flags910_ReturnPressesTheThirdButton)
{
    BoxReader reader(strike(VK_RETURN));

    const unsigned long answer = MsgBox::message_box("Throw away?", 0x910ul);

    EXPECT_EQ(reader.shown().default_button, IDCANCEL);
    EXPECT_EQ(answer, 2u);
}

TEST(MsgBoxShown, Byte3_ShownAsABlank)
{
    BoxReader reader(press(IDOK));

    static_cast<void>(MsgBox::message_box("one\003two\003\003three", 0ul));

    EXPECT_EQ(reader.shown().text, "one two  three");
}

TEST(MsgBoxShown, Utf8Text_ShownAsItIs)
{
    BoxReader reader(press(IDOK));

    static_cast<void>(
        MsgBox::message_box("Gr\xC3\xB6\xC3\x9F"
                            "e \xE2\x82\xAC",
                            0ul));

    EXPECT_EQ(reader.shown().text,
              "Gr\xC3\xB6\xC3\x9F"
              "e \xE2\x82\xAC");
}

// With an application object, what its DoMessageBox is handed.

TEST(MsgBoxOfApplication, Box_GoesThroughTheApplicationWithTheTypeWord)
{
    NotingApplication application;

    EXPECT_EQ(MsgBox::message_box("Broken", 0x405ul), 1u);

    EXPECT_EQ(application.boxes, 1);
    EXPECT_EQ(application.last_text, "Broken");
    EXPECT_EQ(application.last_type, 0x2010u);
    EXPECT_EQ(application.last_help, 0u);
}

TEST(MsgBoxOfApplication, Answers_AllButThreeBecomeCancel)
{
    NotingApplication application;
    const struct {
        int answer;
        unsigned long expected;
    } kAnswers[] = {{0, 2}, {1, 1}, {2, 2}, {3, 2}, {4, 2}, {5, 2}, {6, 6}, {7, 7}, {-1, 2}};
    for (const auto& [answer, expected] : kAnswers) {
        application.answer = answer;
        EXPECT_EQ(MsgBox::message_box("", 0x900ul), expected) << answer;
    }
}

TEST(MsgBoxOfApplication, Byte3_IsABlank)
{
    NotingApplication application;

    static_cast<void>(MsgBox::message_box("\003a\003", 0ul));

    EXPECT_EQ(application.last_text, " a ");
}

TEST(MsgBoxOfApplication, NoText_IsEmpty)
{
    NotingApplication application;

    static_cast<void>(MsgBox::message_box(static_cast<const char*>(nullptr), 0ul));

    EXPECT_EQ(application.boxes, 1);
    EXPECT_EQ(application.last_text, "");
}

TEST(MsgBoxOfApplication, Format_EachFormOfTheFamily)
{
    know_test_strings();
    NotingApplication application;
    application.answer = IDYES;

    EXPECT_EQ(MsgBox::message_box(0x100ul, "%s %d", "frame", 12), 6u);
    EXPECT_EQ(application.last_text, "frame 12");
    EXPECT_EQ(message_box(0x100ul, "%s %d", "frame", 13), 6u);
    EXPECT_EQ(application.last_text, "frame 13");
    EXPECT_EQ(GMessageBox(0x100ul, "%s %d", "frame", 14), 6u);
    EXPECT_EQ(application.last_text, "frame 14");
    EXPECT_EQ(message_box(60200u, 0x100ul), 6u);
    EXPECT_EQ(application.last_text, "Really?");
    EXPECT_EQ(GMessageBox(0x100ul, 60201u, 3, "five"), 6u);
    EXPECT_EQ(application.last_text, "3 of five");
    EXPECT_EQ(application.last_type, 0x2034u);
}

TEST(MsgBoxOfApplication, FormatOfAModule_IsThatOfItsStringTable)
{
    NotingApplication application;

    static_cast<void>(
        GMessageBox(0ul, ::GetModuleHandleA(nullptr), static_cast<unsigned>(ZMR_IDS_GRID), 0.25));

    EXPECT_EQ(application.last_text, "Grid = 0.25");
}

TEST(MsgBoxOfApplication, TextWithPercent_IsNoFormat)
{
    NotingApplication application;

    static_cast<void>(MsgBox::message_box("100 %s done", 0ul));

    EXPECT_EQ(application.last_text, "100 %s done");
}

TEST(MsgBoxOfApplication, LongText_IsNotCut)
{
    NotingApplication application;
    const std::string text(20'000, 'x');

    static_cast<void>(MsgBox::message_box(0ul, "%s", text.c_str()));

    EXPECT_EQ(application.last_text, text);
}
