#include "platform/CCmdUI.h"

#include "platform/CButton.h"
#include "platform/CEdit.h"
#include "tests/platform/windows/TestApplication.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr UINT kHandled = 41'001;
constexpr UINT kUpdated = 41'002;
constexpr UINT kNobodys = 41'003;
constexpr UINT kBox = 41'004;
constexpr UINT kField = 41'005;
constexpr UINT kPassedOn = 41'006;

/// Where the commands of the tests end.
class Target : public CCmdTarget {
public:
    std::vector<UINT> asked;
    BOOL enabled = FALSE;

protected:
    DECLARE_MESSAGE_MAP()

    void OnHandled() {}
    void OnUpdated(CCmdUI* state)
    {
        asked.push_back(state->m_nID);
        state->Enable(enabled);
        state->SetText("new text");
        state->SetCheck(1);
    }
    void OnPassedOn(CCmdUI* state) { state->ContinueRouting(); }
};

BEGIN_MESSAGE_MAP(Target, CCmdTarget)
    ON_COMMAND(kHandled, &Target::OnHandled)
    ON_UPDATE_COMMAND_UI(kUpdated, &Target::OnUpdated)
    ON_UPDATE_COMMAND_UI(kPassedOn, &Target::OnPassedOn)
END_MESSAGE_MAP()

/// A window that answers for one of its controls itself.
class Owner : public CWnd {
public:
    int own_answers = 0;
    static constexpr UINT kOwn = 41'010;

protected:
    DECLARE_MESSAGE_MAP()

    void OnOwn(CCmdUI* state)
    {
        ++own_answers;
        state->Enable(FALSE);
    }
};

BEGIN_MESSAGE_MAP(Owner, CWnd)
    ON_UPDATE_COMMAND_UI(Owner::kOwn, &Owner::OnOwn)
END_MESSAGE_MAP()

class CmdUITest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(owner.CreateEx(WS_EX_CONTROLPARENT, nullptr, "", WS_OVERLAPPEDWINDOW,
                                   CRect(0, 0, 300, 200), nullptr, 0));
    }
    [[nodiscard]] bool make(CButton& button, UINT id, DWORD style = BS_PUSHBUTTON)
    {
        return button.Create("text", WS_CHILD | WS_VISIBLE | style, CRect(0, 0, 80, 20), &owner,
                             id) != 0;
    }

    Owner owner;
    Target target;
};

}  // namespace

TEST_F(CmdUITest, DoUpdate_NoCommandAsksNobody)
{
    CCmdUI state;
    state.m_nID = 0;
    EXPECT_TRUE(state.DoUpdate(&target, TRUE));
    state.m_nID = 0xFFFF;
    EXPECT_TRUE(state.DoUpdate(&target, TRUE));
    EXPECT_FALSE(state.m_bEnableChanged);
}

TEST_F(CmdUITest, DoUpdate_WithoutUpdateHandler_EnabledExactlyWhenSomebodyHandlesIt)
{
    CButton button;
    ASSERT_TRUE(make(button, kNobodys));
    CCmdUI state;
    state.m_pOther = &button;
    state.m_nID = kNobodys;
    EXPECT_FALSE(state.DoUpdate(&target, FALSE));
    EXPECT_TRUE(button.IsWindowEnabled()) << "not asked to disable";
    EXPECT_FALSE(state.DoUpdate(&target, TRUE));
    EXPECT_FALSE(button.IsWindowEnabled());
    state.m_nID = kHandled;
    EXPECT_FALSE(state.DoUpdate(&target, TRUE)) << "nobody updated it";
    EXPECT_TRUE(button.IsWindowEnabled());
}

TEST_F(CmdUITest, DoUpdate_HandlerThatPassesOn_IsAsIfThereWereNone)
{
    CButton button;
    ASSERT_TRUE(make(button, kPassedOn));
    CCmdUI state;
    state.m_pOther = &button;
    state.m_nID = kPassedOn;
    EXPECT_FALSE(state.DoUpdate(&target, TRUE));
    EXPECT_FALSE(button.IsWindowEnabled());
}

TEST_F(CmdUITest, Window_EnabledCheckedAndNamedByItsHandler)
{
    CButton box;
    ASSERT_TRUE(make(box, kUpdated, BS_AUTOCHECKBOX));
    owner.UpdateDialogControls(&target, TRUE);
    EXPECT_FALSE(box.IsWindowEnabled());
    EXPECT_EQ(box.GetCheck(), 1);
    CString text;
    box.GetWindowText(text);
    EXPECT_STREQ(text, "new text");
    target.enabled = TRUE;
    owner.UpdateDialogControls(&target, TRUE);
    EXPECT_TRUE(box.IsWindowEnabled());
    EXPECT_EQ(target.asked, (std::vector<UINT>{kUpdated, kUpdated}));
}

TEST_F(CmdUITest, UpdateDialogControls_DisablesPushButtonsOfNobodyOnly)
{
    CButton push;
    CButton box;
    CEdit field;
    ASSERT_TRUE(make(push, kNobodys));
    ASSERT_TRUE(make(box, kBox, BS_AUTOCHECKBOX));
    ASSERT_TRUE(field.Create(WS_CHILD | WS_VISIBLE, CRect(0, 0, 50, 20), &owner, kField));
    owner.UpdateDialogControls(&target, FALSE);
    EXPECT_TRUE(push.IsWindowEnabled());
    owner.UpdateDialogControls(&target, TRUE);
    EXPECT_FALSE(push.IsWindowEnabled());
    EXPECT_TRUE(box.IsWindowEnabled());
    EXPECT_TRUE(field.IsWindowEnabled());
}

TEST_F(CmdUITest, UpdateDialogControls_OwnHandlersComeBeforeTheTargets)
{
    CButton button;
    ASSERT_TRUE(make(button, Owner::kOwn));
    owner.UpdateDialogControls(&target, TRUE);
    EXPECT_EQ(owner.own_answers, 1);
    EXPECT_FALSE(button.IsWindowEnabled());
    owner.UpdateDialogControls(&owner, TRUE);
    EXPECT_EQ(owner.own_answers, 2) << "once, also when both are one";
}

TEST_F(CmdUITest, SetText_UnchangedText_IsNotWrittenAgain)
{
    struct Counted : CButton {
        int writes = 0;
        LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override
        {
            writes += message == WM_SETTEXT ? 1 : 0;
            return CButton::WindowProc(message, wparam, lparam);
        }
    };
    Counted button;
    ASSERT_TRUE(make(button, kUpdated));
    CCmdUI state;
    state.m_pOther = &button;
    state.SetText("text");
    EXPECT_EQ(button.writes, 0);
    state.SetText("Text");
    state.SetText("Text");
    EXPECT_EQ(button.writes, 1);
}
