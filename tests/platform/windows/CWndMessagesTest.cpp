#include "platform/CCmdUI.h"
#include "platform/CWnd.h"
#include "tests/platform/windows/TestApplication.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr UINT kCommand = 40'001;
constexpr UINT kDisabled = 40'002;
constexpr UINT kPassedOn = 40'003;
constexpr UINT kFirst = 40'010;
constexpr UINT kLast = 40'019;
constexpr UINT kOwn = WM_APP + 5;
constexpr UINT kListId = 11;
constexpr UINT kEditId = 12;
UINT registered_message = 0;

using Calls = std::vector<std::string>;

class Base : public CWnd {
public:
    [[nodiscard]] bool open(DWORD style = WS_OVERLAPPED)
    {
        return CreateEx(0, nullptr, "", style, CRect(0, 0, 200, 100), nullptr, 0) != 0;
    }
    void command(UINT id) { SendMessage(WM_COMMAND, id); }

    Calls calls;

protected:
    DECLARE_MESSAGE_MAP()

    LRESULT OnOwn(WPARAM wparam, LPARAM lparam)
    {
        calls.push_back("base own");
        return static_cast<LRESULT>(wparam) + lparam;
    }
    void OnCommandOfBase() { calls.push_back("base command"); }
    void OnSize(UINT kind, int width, int height)
    {
        CWnd::OnSize(kind, width, height);
        calls.push_back("size " + std::to_string(width) + "x" + std::to_string(height));
    }
};

BEGIN_MESSAGE_MAP(Base, CWnd)
    ON_MESSAGE(kOwn, &Base::OnOwn)
    ON_COMMAND(kCommand, &Base::OnCommandOfBase)
    ON_WM_SIZE()
END_MESSAGE_MAP()

class Heir : public Base {
public:
    bool list_color = false;
    LRESULT notify_answer = 0;

protected:
    DECLARE_MESSAGE_MAP()

    void OnCommandOfHeir() { calls.push_back("heir command"); }
    void OnDisabled() { calls.push_back("disabled command ran"); }
    void OnUpdateDisabled(CCmdUI* state) { state->Enable(FALSE); }
    BOOL OnPassedOn(UINT id)
    {
        calls.push_back("passed on " + std::to_string(id));
        return FALSE;
    }
    void OnRange(UINT id) { calls.push_back("range " + std::to_string(id)); }
    LRESULT OnRegistered(WPARAM wparam, LPARAM)
    {
        calls.push_back("registered");
        return static_cast<LRESULT>(wparam) * 2;
    }
    void OnEditChange() { calls.push_back("parent change"); }
    void OnListItemChanged(NMHDR*, LRESULT* result)
    {
        calls.push_back("parent notify");
        *result = notify_answer;
    }
    BOOL OnAnyNotify(UINT id, NMHDR*, LRESULT* result)
    {
        calls.push_back("any " + std::to_string(id));
        *result = 3;
        return TRUE;
    }
    void OnMouseMove(UINT flags, CPoint point)
    {
        CWnd::OnMouseMove(flags, point);
        calls.push_back("mouse " + std::to_string(point.x) + "," + std::to_string(point.y));
    }
    BOOL OnMouseWheel(UINT flags, short turn, CPoint point)
    {
        calls.push_back("wheel " + std::to_string(turn));
        return CWnd::OnMouseWheel(flags, turn, point);
    }
};

BEGIN_MESSAGE_MAP(Heir, Base)
    ON_COMMAND(kCommand, &Heir::OnCommandOfHeir)
    ON_COMMAND(kDisabled, &Heir::OnDisabled)
    ON_UPDATE_COMMAND_UI(kDisabled, &Heir::OnUpdateDisabled)
    ON_COMMAND_EX(kPassedOn, &Heir::OnPassedOn)
    ON_COMMAND_RANGE(kFirst, kLast, &Heir::OnRange)
    ON_REGISTERED_MESSAGE(registered_message, &Heir::OnRegistered)
    ON_EN_CHANGE(kEditId, &Heir::OnEditChange)
    ON_NOTIFY(LVN_ITEMCHANGED, kListId, &Heir::OnListItemChanged)
    ON_NOTIFY_EX_RANGE(TTN_NEEDTEXTA, 0, 0xFFFF, &Heir::OnAnyNotify)
    ON_WM_MOUSEMOVE()
    ON_WM_MOUSEWHEEL()
END_MESSAGE_MAP()

/// An edit field that is asked about its own notifications first.
class ReflectingEdit : public CWnd {
public:
    Calls* calls = nullptr;
    BOOL keep = TRUE;
    HBRUSH brush = nullptr;

protected:
    DECLARE_MESSAGE_MAP()

    BOOL OnChangeReflected()
    {
        calls->push_back("child change");
        return keep;
    }
    HBRUSH CtlColor(CDC*, UINT kind)
    {
        calls->push_back("child color " + std::to_string(kind));
        return brush;
    }
};

BEGIN_MESSAGE_MAP(ReflectingEdit, CWnd)
    ON_CONTROL_REFLECT_EX(EN_CHANGE, &ReflectingEdit::OnChangeReflected)
    ON_WM_CTLCOLOR_REFLECT()
END_MESSAGE_MAP()

class ReflectingList : public CWnd {
public:
    Calls* calls = nullptr;
    BOOL keep = FALSE;

protected:
    DECLARE_MESSAGE_MAP()

    BOOL OnItemChanged(NMHDR*, LRESULT*)
    {
        calls->push_back("child notify");
        return keep;
    }
};

BEGIN_MESSAGE_MAP(ReflectingList, CWnd)
    ON_NOTIFY_REFLECT_EX(LVN_ITEMCHANGED, &ReflectingList::OnItemChanged)
END_MESSAGE_MAP()

class CWndMessages : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(window_.open());
        window_.calls.clear();
    }

    Heir window_;
};

}  // namespace

TEST_F(CWndMessages, RowOfTheHeir_HidesTheBases)
{
    window_.command(kCommand);

    EXPECT_EQ(window_.calls, Calls{"heir command"});
}

TEST_F(CWndMessages, RowOfTheBase_ServesTheHeir)
{
    EXPECT_EQ(window_.SendMessage(kOwn, 3, 4), 7);
    EXPECT_EQ(window_.calls, Calls{"base own"});
}

TEST_F(CWndMessages, Size_HandlerAfterItsBase)
{
    window_.SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(120, 34));

    EXPECT_EQ(window_.calls, Calls{"size 120x34"});
}

TEST_F(CWndMessages, MouseLeftOfTheWindow_CoordinatesAreNegative)
{
    window_.SendMessage(WM_MOUSEMOVE, 0, MAKELPARAM(-5, -70));
    window_.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, -120), 0);

    EXPECT_EQ(window_.calls, (Calls{"mouse -5,-70", "wheel -120"}));
}

TEST_F(CWndMessages, CommandRange_HandlerIsToldTheId)
{
    window_.command(kFirst);
    window_.command(kLast);
    window_.command(kLast + 1);

    EXPECT_EQ(window_.calls,
              (Calls{"range " + std::to_string(kFirst), "range " + std::to_string(kLast)}));
}

TEST_F(CWndMessages, CommandThatItsUpdateHandlerDisables_DoesNotRun)
{
    window_.command(kDisabled);

    EXPECT_TRUE(window_.calls.empty());
}

TEST_F(CWndMessages, HandlerThatPassesOn_CommandIsNotDone)
{
    EXPECT_FALSE(window_.OnCmdMsg(kPassedOn, static_cast<int>(CN_COMMAND), nullptr, nullptr));
    EXPECT_EQ(window_.calls, Calls{"passed on " + std::to_string(kPassedOn)});
}

TEST_F(CWndMessages, RouteAskedWithInfo_FindsTheHandlerAndCallsNobody)
{
    AFX_CMDHANDLERINFO info;

    EXPECT_TRUE(window_.OnCmdMsg(kCommand, static_cast<int>(CN_COMMAND), nullptr, &info));
    EXPECT_EQ(info.pTarget, &window_);
    EXPECT_FALSE(window_.OnCmdMsg(1, static_cast<int>(CN_COMMAND), nullptr, &info));
    EXPECT_TRUE(window_.calls.empty());
}

TEST_F(CWndMessages, RegisteredMessage_ServedOnceItHasItsNumber)
{
    registered_message = 0;
    window_.SendMessage(0xC123, 1);
    EXPECT_TRUE(window_.calls.empty());

    registered_message = ::RegisterWindowMessage("ZMR_GV test message");
    EXPECT_EQ(window_.SendMessage(registered_message, 21), 42);
    EXPECT_EQ(window_.calls, Calls{"registered"});
}

TEST_F(CWndMessages, ControlNotification_ChildIsAskedFirstAndKeepsIt)
{
    ReflectingEdit edit;
    edit.calls = &window_.calls;
    ASSERT_TRUE(edit.Create("EDIT", "", 0, CRect(0, 0, 50, 20), &window_, kEditId));
    window_.calls.clear();

    edit.SendMessage(EM_REPLACESEL, 0, reinterpret_cast<LPARAM>("a"));
    EXPECT_EQ(window_.calls, Calls{"child change"});
}

TEST_F(CWndMessages, ControlNotification_ChildThatLetsItPass_ParentHandlesItNext)
{
    ReflectingEdit edit;
    edit.calls = &window_.calls;
    edit.keep = FALSE;
    ASSERT_TRUE(edit.Create("EDIT", "", 0, CRect(0, 0, 50, 20), &window_, kEditId));
    window_.calls.clear();

    edit.SendMessage(EM_REPLACESEL, 0, reinterpret_cast<LPARAM>("a"));
    EXPECT_EQ(window_.calls, (Calls{"child change", "parent change"}));
}

TEST_F(CWndMessages, Notification_ChildFirstThenParentWithTheParentsAnswer)
{
    ReflectingList list;
    list.calls = &window_.calls;
    ASSERT_TRUE(list.Create(WC_LISTVIEW, "", LVS_LIST, CRect(0, 0, 50, 50), &window_, kListId));
    NMLISTVIEW notification{};
    notification.hdr = {list.m_hWnd, kListId, static_cast<UINT>(LVN_ITEMCHANGED)};
    window_.calls.clear();
    window_.notify_answer = 17;

    EXPECT_EQ(window_.SendMessage(WM_NOTIFY, kListId, reinterpret_cast<LPARAM>(&notification)), 17);
    EXPECT_EQ(window_.calls, (Calls{"child notify", "parent notify"}));

    window_.calls.clear();
    list.keep = TRUE;
    window_.SendMessage(WM_NOTIFY, kListId, reinterpret_cast<LPARAM>(&notification));
    EXPECT_EQ(window_.calls, Calls{"child notify"});
}

TEST_F(CWndMessages, NotifyRange_OverAllIds)
{
    CWnd child;
    ASSERT_TRUE(child.Create("STATIC", "", 0, CRect(0, 0, 5, 5), &window_, 77));
    NMHDR header{child.m_hWnd, 77, static_cast<UINT>(TTN_NEEDTEXTA)};

    EXPECT_EQ(window_.SendMessage(WM_NOTIFY, 77, reinterpret_cast<LPARAM>(&header)), 3);
    EXPECT_EQ(window_.calls, Calls{"any 77"});
}

TEST_F(CWndMessages, NotifyFromATip_IsTheTipsIdZeroWhateverToolItAsksAbout)
{
    CWnd tip;
    ASSERT_TRUE(tip.CreateEx(0, TOOLTIPS_CLASS, "", WS_POPUP, CRect(0, 0, 5, 5), &window_, 0));
    NMHDR header{tip.m_hWnd, 0x1'0000'1234, static_cast<UINT>(TTN_NEEDTEXTA)};

    EXPECT_EQ(window_.SendMessage(WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header)), 3);
    EXPECT_EQ(window_.calls, Calls{"any 0"});
}

TEST_F(CWndMessages, ControlColor_ChildsBrushWinsAndWithoutOneTheSystemsIsUsed)
{
    ReflectingEdit edit;
    edit.calls = &window_.calls;
    ASSERT_TRUE(edit.Create("EDIT", "", 0, CRect(0, 0, 50, 20), &window_, kEditId));
    const HDC dc = ::GetDC(edit.m_hWnd);
    const auto ask = [&] {
        return reinterpret_cast<HBRUSH>(window_.SendMessage(
            WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(edit.m_hWnd)));
    };
    const HBRUSH systems = ask();
    window_.calls.clear();
    edit.brush = static_cast<HBRUSH>(::GetStockObject(BLACK_BRUSH));

    EXPECT_EQ(ask(), edit.brush);
    EXPECT_EQ(window_.calls, Calls{"child color 1"});
    EXPECT_NE(systems, nullptr);
    EXPECT_NE(systems, edit.brush);
    ::ReleaseDC(edit.m_hWnd, dc);
}

TEST_F(CWndMessages, NotifyFormat_IsTheNarrowOne)
{
    EXPECT_EQ(window_.SendMessage(WM_NOTIFYFORMAT, 0, NF_QUERY), NFR_ANSI);
}

TEST_F(CWndMessages, CurrentMessage_IsTheInnermostAndGoneOutside)
{
    EXPECT_EQ(CWnd::GetCurrentMessage(), nullptr);
}

TEST_F(CWndMessages, SendMessageToDescendants_EveryLevelOnce)
{
    Base child;
    Base grandchild;
    ASSERT_TRUE(child.Create(nullptr, "", 0, CRect(0, 0, 5, 5), &window_, 1));
    ASSERT_TRUE(grandchild.Create(nullptr, "", 0, CRect(0, 0, 5, 5), &child, 2));
    child.calls.clear();
    grandchild.calls.clear();

    window_.SendMessageToDescendants(kOwn, 0, 0, TRUE, TRUE);
    EXPECT_EQ(child.calls, Calls{"base own"});
    EXPECT_EQ(grandchild.calls, Calls{"base own"});

    window_.SendMessageToDescendants(kOwn, 0, 0, FALSE, FALSE);
    EXPECT_EQ(child.calls.size(), 2u);
    EXPECT_EQ(grandchild.calls.size(), 1u);
}

TEST_F(CWndMessages, PreTranslate_InnermostWindowFirstUpToTheStop)
{
    class Filter : public Base {
    public:
        BOOL take = FALSE;

    protected:
        BOOL PreTranslateMessage(MSG*) override
        {
            calls.push_back("asked");
            return take;
        }
    };
    Filter outer;
    Filter middle;
    Filter inner;
    ASSERT_TRUE(outer.open());
    ASSERT_TRUE(middle.Create(nullptr, "", 0, CRect(0, 0, 5, 5), &outer, 1));
    ASSERT_TRUE(inner.Create(nullptr, "", 0, CRect(0, 0, 5, 5), &middle, 1));
    for (Filter* window : {&outer, &middle, &inner})
        window->calls.clear();
    MSG message{inner.m_hWnd, WM_KEYDOWN, 0, 0, 0, {}};

    EXPECT_FALSE(CWnd::WalkPreTranslateTree(middle.m_hWnd, &message));
    EXPECT_EQ(inner.calls.size(), 1u);
    EXPECT_EQ(middle.calls.size(), 1u);
    EXPECT_TRUE(outer.calls.empty());

    inner.take = TRUE;
    EXPECT_TRUE(CWnd::WalkPreTranslateTree(outer.m_hWnd, &message));
    EXPECT_EQ(middle.calls.size(), 1u);
}
