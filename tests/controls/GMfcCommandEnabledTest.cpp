#include "controls/GMfcCommandEnabled.h"

#include "platform/CCmdUI.h"
#include "platform/CFrameWnd.h"
#include "platform/CMenu.h"

#include <gtest/gtest.h>

namespace {

constexpr UINT kHandled = 41'101;
constexpr UINT kUpdated = 41'102;
constexpr UINT kSilent = 41'103;         ///< Has an update handler that does nothing,
constexpr UINT kSilentHandled = 41'104;  ///< and this one a handler besides.
constexpr UINT kNobodys = 41'105;
constexpr UINT kOfView = 41'106;
constexpr UINT kPassedOn = 41'107;

/// A frame on the stack, with a menu.
class Frame : public CFrameWnd {
public:
    ~Frame() override { DestroyWindow(); }

    [[nodiscard]] bool open()
    {
        if (!menu_.CreateMenu() || !menu_.AppendMenu(MF_STRING, kUpdated, "Updated"))
            return false;
        if (!Create(nullptr, "frame", WS_OVERLAPPEDWINDOW, CRect(0, 0, 300, 200)))
            return false;
        return ::SetMenu(m_hWnd, menu_.m_hMenu) != FALSE;
    }
    [[nodiscard]] UINT menu_state() const
    {
        return ::GetMenuState(menu_.m_hMenu, kUpdated, MF_BYCOMMAND);
    }

    BOOL enables = TRUE;
    int updates = 0;
    int runs = 0;

protected:
    DECLARE_MESSAGE_MAP()

    void PostNcDestroy() override {}

    void OnRun() { ++runs; }
    void OnUpdated(CCmdUI* state)
    {
        ++updates;
        state->SetText("another text");
        state->SetCheck(1);
        state->SetRadio(TRUE);
        state->Enable(enables);
    }
    void OnSilent(CCmdUI*) {}
    void OnPassedOn(CCmdUI* state)
    {
        state->Enable(FALSE);
        state->ContinueRouting();
    }

private:
    CMenu menu_;
};

BEGIN_MESSAGE_MAP(Frame, CFrameWnd)
    ON_COMMAND(kHandled, &Frame::OnRun)
    ON_COMMAND(kSilentHandled, &Frame::OnRun)
    ON_COMMAND(kUpdated, &Frame::OnRun)
    ON_UPDATE_COMMAND_UI(kUpdated, &Frame::OnUpdated)
    ON_UPDATE_COMMAND_UI(kSilent, &Frame::OnSilent)
    ON_UPDATE_COMMAND_UI(kSilentHandled, &Frame::OnSilent)
    ON_UPDATE_COMMAND_UI(kPassedOn, &Frame::OnPassedOn)
END_MESSAGE_MAP()

/// A pane of the frame; what it does not know goes on to the frame.
class View : public CWnd {
public:
    [[nodiscard]] bool open(Frame& frame)
    {
        frame_ = &frame;
        return Create(nullptr, "view", WS_CHILD | WS_VISIBLE, CRect(0, 0, 100, 100), &frame,
                      AFX_IDW_PANE_FIRST) != FALSE;
    }
    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) override
    {
        return CWnd::OnCmdMsg(id, code, extra, info) || frame_->OnCmdMsg(id, code, extra, info);
    }

    BOOL enables = FALSE;

protected:
    DECLARE_MESSAGE_MAP()

    void OnUpdateOwn(CCmdUI* state) { state->Enable(enables); }
    void OnUpdateForFrame(CCmdUI* state) { state->ContinueRouting(); }

private:
    Frame* frame_ = nullptr;
};

BEGIN_MESSAGE_MAP(View, CWnd)
    ON_UPDATE_COMMAND_UI(kOfView, &View::OnUpdateOwn)
    ON_UPDATE_COMMAND_UI(kUpdated, &View::OnUpdateForFrame)
END_MESSAGE_MAP()

class GMfcCommandEnabledTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(frame.open());
        ASSERT_TRUE(view.open(frame));
    }

    Frame frame;
    View view;
};

}  // namespace

TEST_F(GMfcCommandEnabledTest, UpdateHandler_DecidesEachTimeItIsAsked)
{
    EXPECT_TRUE(GMfcCommandEnabled(frame, kUpdated));
    frame.enables = FALSE;
    EXPECT_FALSE(GMfcCommandEnabled(frame, kUpdated));
    frame.enables = TRUE;
    EXPECT_TRUE(GMfcCommandEnabled(frame, kUpdated));
    EXPECT_EQ(frame.updates, 3);
}

TEST_F(GMfcCommandEnabledTest, HandlerWithoutUpdateHandler_IsEnabledAndNotRun)
{
    EXPECT_TRUE(GMfcCommandEnabled(frame, kHandled));
    EXPECT_EQ(frame.runs, 0);
}

TEST_F(GMfcCommandEnabledTest, NobodysCommand_IsDisabled)
{
    EXPECT_FALSE(GMfcCommandEnabled(frame, kNobodys));
    EXPECT_FALSE(GMfcCommandEnabled(view, kNobodys));
}

TEST_F(GMfcCommandEnabledTest, UpdateHandlerThatSaysNothing_EnabledExactlyWithAHandler)
{
    EXPECT_TRUE(GMfcCommandEnabled(frame, kSilentHandled));
    EXPECT_FALSE(GMfcCommandEnabled(frame, kSilent));
}

TEST_F(GMfcCommandEnabledTest, UpdateHandlerThatPassesOn_WhatItSaidStays)
{
    EXPECT_FALSE(GMfcCommandEnabled(frame, kPassedOn));
}

TEST_F(GMfcCommandEnabledTest, Route_GoesFromTheViewOnToTheFrame)
{
    EXPECT_FALSE(GMfcCommandEnabled(view, kOfView));
    view.enables = TRUE;
    EXPECT_TRUE(GMfcCommandEnabled(view, kOfView));
    EXPECT_FALSE(GMfcCommandEnabled(frame, kOfView)) << "the view's own";
    EXPECT_TRUE(GMfcCommandEnabled(view, kHandled));
    frame.enables = FALSE;
    EXPECT_FALSE(GMfcCommandEnabled(view, kUpdated)) << "the view passes it on";
    EXPECT_EQ(frame.updates, 1);
}

TEST_F(GMfcCommandEnabledTest, Asking_LeavesTheMenuAsItIs)
{
    const UINT before = frame.menu_state();
    frame.enables = FALSE;
    EXPECT_FALSE(GMfcCommandEnabled(frame, kUpdated));
    EXPECT_EQ(frame.menu_state(), before);
}

TEST_F(GMfcCommandEnabledTest, NoCommand_AsksNobody)
{
    frame.enables = FALSE;
    EXPECT_TRUE(GMfcCommandEnabled(frame, 0));
    EXPECT_TRUE(GMfcCommandEnabled(frame, 0xFFFF));
    EXPECT_EQ(frame.updates, 0);
}

TEST_F(GMfcCommandEnabledTest, DisabledWindow_AnswersAsBefore)
{
    frame.EnableWindow(FALSE);
    EXPECT_TRUE(GMfcCommandEnabled(frame, kHandled)) << "commands are routed, not clicked";
    EXPECT_FALSE(GMfcCommandEnabled(frame, kNobodys));
}
