#include "dialogs/modality/TrueModalMaker.h"

#include "platform/CFrameWnd.h"
#include "platform/CWinApp.h"
#include "tests/support/WindowInput.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

// Real windows at the top level: frames, plain ones, dialogs, and those of another thread.

namespace {

/// A window at the top level that lives on the stack and counts clicks.
class TopWindow : public CWnd {
public:
    int clicks = 0;

    [[nodiscard]] bool open(int left, HWND owner = nullptr, DWORD style = WS_POPUP | WS_VISIBLE)
    {
        return CreateEx(0, AfxRegisterWndClass(0), "", style, left, 60, 150, 150, owner, nullptr) !=
               0;
    }

protected:
    DECLARE_MESSAGE_MAP()

    void OnLButtonDown(UINT, CPoint) { ++clicks; }
};

BEGIN_MESSAGE_MAP(TopWindow, CWnd)
    ON_WM_LBUTTONDOWN()
END_MESSAGE_MAP()

/// A window of a thread of its own, with its message loop.
class ForeignWindow {
public:
    ForeignWindow()
    {
        std::atomic<HWND> made = nullptr;
        thread_ = std::thread([&made] {
            TopWindow window;
            made = window.open(900) ? window.m_hWnd : HWND(INVALID_HANDLE_VALUE);
            MSG message;
            while (::GetMessage(&message, nullptr, 0, 0) > 0)
                ::DispatchMessage(&message);
        });
        while (made == nullptr)
            ::Sleep(1);
        handle = made;
    }
    ~ForeignWindow()
    {
        ::PostThreadMessage(::GetWindowThreadProcessId(handle, nullptr), WM_QUIT, 0, 0);
        thread_.join();
    }
    ForeignWindow(const ForeignWindow&) = delete;
    ForeignWindow& operator=(const ForeignWindow&) = delete;

    HWND handle = nullptr;

private:
    std::thread thread_;
};

bool is_enabled(const CWnd& window)
{
    return ::IsWindowEnabled(window.m_hWnd) != FALSE;
}

/// Two windows of this thread, the first being its main window.
class TrueModal : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(main.open(60));
        ASSERT_TRUE(second.open(260));
        application.m_pMainWnd = &main;
    }
    void TearDown() override { application.m_pMainWnd = nullptr; }

    CWinApp application{"Test"};
    TopWindow main;
    TopWindow second;
};

}  // namespace

TEST_F(TrueModal, TwoWindowsOfTheThread_BothDisabledAndBothBack)
{
    {
        const TrueModalMaker modal;

        EXPECT_FALSE(is_enabled(main));
        EXPECT_FALSE(is_enabled(second));
    }
    EXPECT_TRUE(is_enabled(main));
    EXPECT_TRUE(is_enabled(second));
}

TEST_F(TrueModal, TwoFrames_AModalBoxDisablesBothAndBothComeBack)
{
    auto* const first_frame = new CFrameWnd;
    auto* const second_frame = new CFrameWnd;
    ASSERT_TRUE(first_frame->Create(nullptr, "first", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                    CRect(60, 300, 360, 500)));
    ASSERT_TRUE(second_frame->Create(nullptr, "second", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                     CRect(400, 300, 700, 500)));
    bool first_during = true;
    bool second_during = true;
    std::jthread user([&] {
        const ULONGLONG last = ::GetTickCount64() + 10'000;
        HWND box = nullptr;
        while ((box = visible_window("#32770")) == nullptr && ::GetTickCount64() < last)
            ::Sleep(5);
        first_during = is_enabled(*first_frame);
        second_during = is_enabled(*second_frame);
        ::PostMessage(box, WM_COMMAND, IDOK, 0);
    });

    {
        const TrueModalMaker modal;
        EXPECT_EQ(::MessageBox(first_frame->m_hWnd, "text", "box", MB_OK), IDOK);
    }
    user.join();

    EXPECT_FALSE(first_during);
    EXPECT_FALSE(second_during);
    EXPECT_TRUE(is_enabled(*first_frame));
    EXPECT_TRUE(is_enabled(*second_frame));
    first_frame->DestroyWindow();
    second_frame->DestroyWindow();
}

TEST_F(TrueModal, WindowOfAnotherThread_StaysEnabled)
{
    const ForeignWindow foreign;

    const TrueModalMaker modal;

    EXPECT_TRUE(::IsWindowEnabled(foreign.handle));
    EXPECT_FALSE(is_enabled(main));
}

TEST_F(TrueModal, WindowDisabledBefore_StaysDisabledAfter)
{
    second.EnableWindow(FALSE);
    {
        const TrueModalMaker modal;
    }
    EXPECT_FALSE(is_enabled(second));
    EXPECT_TRUE(is_enabled(main));
}

TEST_F(TrueModal, Nested_InnerGivesBackOnlyTheModalWindow)
{
    const TrueModalMaker outer;
    TopWindow dialog;
    ASSERT_TRUE(dialog.open(460, main.m_hWnd));
    {
        const TrueModalMaker inner;
        EXPECT_FALSE(is_enabled(dialog));
    }

    EXPECT_TRUE(is_enabled(dialog));
    EXPECT_FALSE(is_enabled(main)) << "the outer one still runs";
    EXPECT_FALSE(is_enabled(second));
}

TEST_F(TrueModal, WindowMadeMeanwhile_IsNotTouched)
{
    TopWindow dialog;
    {
        const TrueModalMaker modal;
        ASSERT_TRUE(dialog.open(460));
        EXPECT_TRUE(is_enabled(dialog));
        dialog.EnableWindow(FALSE);
    }
    EXPECT_FALSE(is_enabled(dialog));
}

TEST_F(TrueModal, ExceptionPasses_WindowsComeBack)
{
    const auto run = [] {
        const TrueModalMaker modal;
        throw std::runtime_error("from a modal run");
    };

    EXPECT_THROW(run(), std::runtime_error);

    EXPECT_TRUE(is_enabled(main));
    EXPECT_TRUE(is_enabled(second));
}

TEST_F(TrueModal, WindowDestroyedMeanwhile_TheOthersComeBack)
{
    {
        const TrueModalMaker modal;
        second.DestroyWindow();
    }
    EXPECT_TRUE(is_enabled(main));
}

TEST_F(TrueModal, HiddenWindow_IsDisabledToo)
{
    TopWindow hidden;
    ASSERT_TRUE(hidden.open(460, nullptr, WS_POPUP));

    const TrueModalMaker modal;

    EXPECT_FALSE(is_enabled(hidden));
}

TEST_F(TrueModal, FramesOwnPopups_AllComeBack)
{
    auto* const frame = new CFrameWnd;
    ASSERT_TRUE(frame->Create(nullptr, "frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                              CRect(60, 300, 360, 500)));
    TopWindow palette;
    ASSERT_TRUE(palette.open(460, frame->m_hWnd));
    {
        // A frame that is disabled disables what it owns by itself, and enables it again.
        const TrueModalMaker modal;
        EXPECT_FALSE(is_enabled(palette));
        EXPECT_FALSE(is_enabled(*frame));
    }
    EXPECT_TRUE(is_enabled(palette));
    EXPECT_TRUE(is_enabled(*frame));
    EXPECT_FALSE(frame->InModalState());
    frame->DestroyWindow();
}

TEST_F(TrueModal, NoMainWindow_DisablesNothing)
{
    application.m_pMainWnd = nullptr;

    const TrueModalMaker modal;

    EXPECT_TRUE(is_enabled(main));
    EXPECT_TRUE(is_enabled(second));
}

TEST_F(TrueModal, MainWindowWithoutHandle_DisablesNothing)
{
    CWnd closed;
    application.m_pMainWnd = &closed;

    const TrueModalMaker modal;

    EXPECT_TRUE(is_enabled(second));
}

TEST_F(TrueModal, ThreadWithoutObject_DisablesNothingOfTheMainThread)
{
    bool main_during = false;
    std::thread([&] {
        TopWindow own;
        static_cast<void>(own.open(460));
        const TrueModalMaker modal;
        main_during = is_enabled(main);
    }).join();

    EXPECT_TRUE(main_during);
}

TEST_F(TrueModal, Copy_GivesTheSameWindowsBack)
{
    std::optional<TrueModalMaker> modal(std::in_place);
    std::optional<TrueModalMaker> copy(*modal);

    modal.reset();
    EXPECT_TRUE(is_enabled(main));
    copy.reset();

    EXPECT_TRUE(is_enabled(main));
    EXPECT_TRUE(is_enabled(second));
}

TEST_F(TrueModal, ClickOnADisabledWindow_DoesNotReachIt)
{
    const CPoint place = middle_of(second.m_hWnd);
    TopWindow dialog;
    {
        const TrueModalMaker modal;
        ASSERT_TRUE(dialog.open(460));
        const CPoint inside = middle_of(dialog.m_hWnd);
        EXPECT_TRUE(WindowInput()
                        .move_to(inside)
                        .wait_until([&] { return ::WindowFromPoint(inside) == dialog.m_hWnd; })
                        .click(place)
                        .click(inside)
                        .play_until([&] { return dialog.clicks > 0; }));
        EXPECT_EQ(second.clicks, 0);
    }
    EXPECT_TRUE(WindowInput().click(place).play_until([&] { return second.clicks > 0; }));
}
