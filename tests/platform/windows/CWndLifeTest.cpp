#include "platform/AfxState.h"
#include "platform/CWnd.h"
#include "platform/ThreadState.h"
#include "tests/platform/windows/TestApplication.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

namespace {

/// Writes down each message from the first on.
class RecordingWindow : public CWnd {
public:
    ~RecordingWindow() override { DestroyWindow(); }

    [[nodiscard]] bool open(CWnd* parent = nullptr)
    {
        return CreateEx(0, nullptr, "recording", parent != nullptr ? WS_CHILD : WS_OVERLAPPED,
                        CRect(0, 0, 80, 60), parent, 0) != 0;
    }

    std::vector<UINT> messages;
    bool* deleted = nullptr;
    bool refuse = false;
    int subclassed = 0;
    int post_nc_destroys = 0;

protected:
    BOOL PreCreateWindow(CREATESTRUCT& creation) override
    {
        return !refuse && CWnd::PreCreateWindow(creation);
    }
    void PreSubclassWindow() override { ++subclassed; }
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override
    {
        messages.push_back(message);
        return CWnd::WindowProc(message, wparam, lparam);
    }
    void PostNcDestroy() override
    {
        ++post_nc_destroys;
        if (deleted != nullptr) {
            *deleted = true;
            delete this;
        }
    }
};

}  // namespace

TEST(CWndLife, Create_ObjectSeesEveryMessageFromNcCreateOn)
{
    RecordingWindow window;
    ASSERT_TRUE(window.open());

    const auto position = [&](UINT message) {
        return std::find(window.messages.begin(), window.messages.end(), message) -
               window.messages.begin();
    };
    EXPECT_LT(position(WM_NCCREATE), position(WM_CREATE));
    EXPECT_LE(position(WM_NCCREATE), 1);  // a top level window is asked for its size limits first
    EXPECT_EQ(CWnd::FromHandlePermanent(window.m_hWnd), &window);
    EXPECT_EQ(CWnd::FromHandle(window.m_hWnd), &window);
}

TEST(CWndLife, Create_PreSubclassWindowComesOnceBeforeTheFirstMessage)
{
    RecordingWindow window;
    ASSERT_TRUE(window.open());

    EXPECT_EQ(window.subclassed, 1);
}

TEST(CWndLife, Create_RefusedByPreCreateWindow_NoWindowAndPostNcDestroyCalled)
{
    RecordingWindow window;
    window.refuse = true;

    EXPECT_FALSE(window.open());
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(window.post_nc_destroys, 1);
}

TEST(CWndLife, Create_UnknownClass_FailsAndTheNextWindowIsNotTaken)
{
    RecordingWindow window;

    EXPECT_FALSE(
        window.CreateEx(0, "no such class", "", WS_OVERLAPPED, CRect(0, 0, 9, 9), nullptr, 0));
    EXPECT_EQ(window.post_nc_destroys, 1);
    CWnd other;
    ASSERT_TRUE(other.CreateEx(0, nullptr, "", WS_OVERLAPPED, CRect(0, 0, 9, 9), nullptr, 0));
    EXPECT_EQ(window.m_hWnd, nullptr);
}

TEST(CWndLife, Create_SecondWindowOnTheSameObject_Refused)
{
    RecordingWindow window;
    ASSERT_TRUE(window.open());
    const HWND first = window.m_hWnd;

    EXPECT_FALSE(window.open());
    EXPECT_EQ(window.m_hWnd, first);
    EXPECT_EQ(window.post_nc_destroys, 0);
}

TEST(CWndLife, WindowMadeInsideOfOnCreate_DoesNotTakeTheOuterObject)
{
    class Outer : public RecordingWindow {
    public:
        RecordingWindow inner;

    protected:
        LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override
        {
            if (message == WM_CREATE) {
                EXPECT_TRUE(inner.open(this));
            }
            return RecordingWindow::WindowProc(message, wparam, lparam);
        }
    };
    Outer outer;
    ASSERT_TRUE(outer.open());

    EXPECT_NE(outer.inner.m_hWnd, nullptr);
    EXPECT_EQ(outer.inner.GetParent(), &outer);
}

TEST(CWndLife, ControlOfTheSystem_ComesToItsObjectAndKeepsItsOwnProcedure)
{
    RecordingWindow parent;
    ASSERT_TRUE(parent.open());
    RecordingWindow edit;
    ASSERT_TRUE(edit.Create("EDIT", "text", WS_CHILD, CRect(0, 0, 50, 20), &parent, 5));

    CString text;
    edit.GetWindowText(text);
    EXPECT_STREQ(text, "text");
    edit.SendMessage(EM_SETSEL, 1, 2);
    DWORD start = 0;
    DWORD end = 0;
    edit.SendMessage(EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(start, 1u);
    EXPECT_EQ(end, 2u);
}

TEST(CWndLife, DestroyWindow_HandleGoneAndPostNcDestroyLast)
{
    RecordingWindow window;
    ASSERT_TRUE(window.open());
    const HWND handle = window.m_hWnd;

    EXPECT_TRUE(window.DestroyWindow());
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(window.messages.back(), static_cast<UINT>(WM_NCDESTROY));
    EXPECT_EQ(window.post_nc_destroys, 1);
    EXPECT_FALSE(::IsWindow(handle));
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
    EXPECT_FALSE(window.DestroyWindow());
}

TEST(CWndLife, ObjectThatDeletesItselfAtTheEnd_IsNotTouchedAfterwards)
{
    bool deleted = false;
    auto* const window = new RecordingWindow;
    window->deleted = &deleted;
    ASSERT_TRUE(window->open());

    ::DestroyWindow(window->m_hWnd);
    EXPECT_TRUE(deleted);
}

TEST(CWndLife, EndOfTheObject_DestroysTheWindow)
{
    HWND handle = nullptr;
    {
        RecordingWindow window;
        ASSERT_TRUE(window.open());
        handle = window.m_hWnd;
    }
    EXPECT_FALSE(::IsWindow(handle));
}

TEST(CWndLife, ChildrenEndWithTheirParent)
{
    RecordingWindow parent;
    RecordingWindow child;
    ASSERT_TRUE(parent.open());
    ASSERT_TRUE(child.open(&parent));

    parent.DestroyWindow();
    EXPECT_EQ(child.m_hWnd, nullptr);
    EXPECT_EQ(child.post_nc_destroys, 1);
}

TEST(CWndLife, SubclassAndUnsubclass_FormerProcedureIsBack)
{
    const HWND plain = ::CreateWindowEx(0, "EDIT", "plain", WS_POPUP, 0, 0, 10, 10, nullptr,
                                        nullptr, nullptr, nullptr);
    const LONG_PTR former = ::GetWindowLongPtr(plain, GWLP_WNDPROC);
    RecordingWindow window;

    ASSERT_TRUE(window.SubclassWindow(plain));
    EXPECT_EQ(window.subclassed, 1);
    CString text;
    window.GetWindowText(text);
    EXPECT_STREQ(text, "plain");
    EXPECT_FALSE(window.messages.empty());

    EXPECT_EQ(window.UnsubclassWindow(), plain);
    EXPECT_EQ(::GetWindowLongPtr(plain, GWLP_WNDPROC), former);
    EXPECT_EQ(window.m_hWnd, nullptr);
    ::DestroyWindow(plain);
}

TEST(CWndLife, SubclassWindow_NullForeignOrTaken_Refused)
{
    RecordingWindow window;
    RecordingWindow other;
    ASSERT_TRUE(other.open());

    EXPECT_FALSE(window.SubclassWindow(nullptr));
    EXPECT_FALSE(window.SubclassWindow(::GetDesktopWindow()));
    EXPECT_FALSE(window.SubclassWindow(other.m_hWnd));
    EXPECT_EQ(window.m_hWnd, nullptr);
}

TEST(CWndLife, SubclassedWindowsEnd_LetsGoOfTheObject)
{
    const HWND plain = ::CreateWindowEx(0, "STATIC", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                        nullptr, nullptr);
    RecordingWindow window;
    ASSERT_TRUE(window.SubclassWindow(plain));

    ::DestroyWindow(plain);
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(window.post_nc_destroys, 1);
}

TEST(CWndLife, FromHandle_ForeignWindow_TemporaryUntilTheIdleTurn)
{
    const HWND plain = ::CreateWindowEx(0, "STATIC", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                        nullptr, nullptr);
    CWnd* const temporary = CWnd::FromHandle(plain);

    ASSERT_NE(temporary, nullptr);
    EXPECT_EQ(temporary->m_hWnd, plain);
    EXPECT_EQ(CWnd::FromHandle(plain), temporary);
    EXPECT_EQ(CWnd::FromHandlePermanent(plain), nullptr);

    the_application().idle();
    EXPECT_EQ(zmr::ThreadState::current().windows.temporary_count(), 0u);
    EXPECT_TRUE(::IsWindow(plain));
    ::DestroyWindow(plain);
}

TEST(CWndLife, TemporariesLocked_SurviveTheIdleTurn)
{
    const HWND plain = ::CreateWindowEx(0, "STATIC", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                        nullptr, nullptr);
    AfxLockTempMaps();
    CWnd* const temporary = CWnd::FromHandle(plain);

    the_application().idle();
    EXPECT_EQ(CWnd::FromHandle(plain), temporary);
    EXPECT_TRUE(AfxUnlockTempMaps());
    EXPECT_EQ(zmr::ThreadState::current().windows.temporary_count(), 0u);
    EXPECT_FALSE(AfxUnlockTempMaps());
    ::DestroyWindow(plain);
}

TEST(CWndLife, HandleMaps_AreEachThreadsOwn)
{
    RecordingWindow window;
    ASSERT_TRUE(window.open());
    const HWND handle = window.m_hWnd;
    CWnd* seen = &window;

    std::thread([&] { seen = CWnd::FromHandlePermanent(handle); }).join();
    EXPECT_EQ(seen, nullptr);
}

TEST(CWndLife, FromHandle_Null_IsNull)
{
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(nullptr), nullptr);
}

TEST(CWndLife, MainWindowsEnd_PostsQuit)
{
    RecordingWindow window;
    ASSERT_TRUE(window.open());
    the_application().pump_all();
    the_application().m_pMainWnd = &window;

    window.DestroyWindow();
    EXPECT_EQ(the_application().m_pMainWnd, nullptr);
    MSG message;
    ASSERT_TRUE(::PeekMessage(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
}

TEST(CWndLife, WindowClass_SameStyle_OneClass)
{
    const LPCTSTR first = AfxRegisterWndClass(CS_HREDRAW);

    EXPECT_STREQ(first, AfxRegisterWndClass(CS_HREDRAW));
    EXPECT_STRNE(first, AfxRegisterWndClass(CS_VREDRAW));
}
