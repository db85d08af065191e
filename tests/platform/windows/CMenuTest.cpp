#include "platform/CMenu.h"

#include "platform/CBitmap.h"
#include "platform/CWnd.h"
#include "platform/HandlesUser.h"
#include "platform/ThreadState.h"
#include "tests/support/ResourceLedger.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <stdexcept>

namespace {

constexpr UINT kTestMenu = 202;
constexpr UINT kOpen = 301;
constexpr UINT kClose = 302;
constexpr UINT kHelp = 303;
constexpr UINT kNone = static_cast<UINT>(-1);

/// A window on the screen that popups belong to.
class PopupOwner : public CWnd {
public:
    ~PopupOwner() override { DestroyWindow(); }

    [[nodiscard]] bool open()
    {
        const bool made = CreateEx(0, nullptr, "owner", WS_POPUP | WS_VISIBLE,
                                   CRect(20, 20, 120, 80), nullptr, 0) != 0;
        return made && SetForegroundWindow();
    }

    std::function<void(CMenu*)> on_open = [](CMenu*) {};
    std::function<void()> on_wait = [] { ::EndMenu(); };
    UINT chosen = 0;

protected:
    DECLARE_MESSAGE_MAP()

    void OnInitMenuPopup(CMenu* menu, UINT, BOOL) { on_open(menu); }
    void OnEnterIdle(UINT, CWnd*) { on_wait(); }
    void OnChosen(UINT id) { chosen = id; }
};

BEGIN_MESSAGE_MAP(PopupOwner, CWnd)
    ON_WM_INITMENUPOPUP()
    ON_WM_ENTERIDLE()
    ON_COMMAND_RANGE(kOpen, kHelp, &PopupOwner::OnChosen)
END_MESSAGE_MAP()

/// A menu with items of its own drawing.
class DrawnMenu : public CMenu {
public:
    void DrawItem(LPDRAWITEMSTRUCT item) override { drawn = item->itemID; }
    void MeasureItem(LPMEASUREITEMSTRUCT item) override
    {
        measured = item->itemID;
        item->itemWidth = 50;
        item->itemHeight = 30;
    }

    UINT drawn = 0;
    UINT measured = 0;
};

}  // namespace

TEST(CMenu, EndOfScope_DestroysTheMenuWithItsPopups)
{
    HMENU menu = nullptr;
    HMENU popup = nullptr;
    {
        CMenu loaded;
        ASSERT_TRUE(loaded.LoadMenu(kTestMenu));
        menu = loaded;
        popup = ::GetSubMenu(loaded, 0);
        ASSERT_TRUE(::IsMenu(popup));
    }

    EXPECT_FALSE(::IsMenu(menu));
    EXPECT_FALSE(::IsMenu(popup));
}

TEST(CMenu, Creation_IsRefusedWhenThereIsOneOrNoResource)
{
    CMenu menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    const HMENU first = menu;

    EXPECT_FALSE(menu.CreateMenu());
    EXPECT_FALSE(menu.LoadMenu(kTestMenu));
    EXPECT_FALSE(menu.Attach(first));
    EXPECT_EQ(menu.m_hMenu, first);
    EXPECT_FALSE(CMenu().LoadMenu(9999));
    EXPECT_FALSE(CMenu().LoadMenu("NO_SUCH_MENU"));
    EXPECT_FALSE(CMenu().Attach(nullptr));
    EXPECT_FALSE(CMenu().DestroyMenu());
}

TEST(CMenu, LoadMenuIndirect_MakesAMenuOfATemplate)
{
    // A header of two words, then the items: flags, id, text.
    const std::array<WORD, 12> menu_template = {0,   0,   MF_END, kOpen, 'O', 'p',
                                                'e', 'n', 0,      0,     0,   0};
    CMenu menu;
    ASSERT_TRUE(menu.LoadMenuIndirect(menu_template.data()));
    CString text;

    EXPECT_EQ(menu.GetMenuItemCount(), 1);
    EXPECT_EQ(menu.GetMenuItemID(0), kOpen);
    EXPECT_EQ(menu.GetMenuString(0, text, MF_BYPOSITION), 4);
    EXPECT_EQ(text, "Open");
}

TEST(CMenu, FromHandle_IsTheObjectOrATemporaryThatNeverDestroys)
{
    CMenu menu;
    ASSERT_TRUE(menu.LoadMenu(kTestMenu));
    CMenu* const popup = menu.GetSubMenu(0);
    ASSERT_NE(popup, nullptr);
    const HMENU popup_handle = popup->GetSafeHmenu();

    EXPECT_EQ(CMenu::FromHandle(menu), &menu);
    EXPECT_EQ(CMenu::FromHandlePermanent(menu), &menu);
    EXPECT_EQ(CMenu::FromHandlePermanent(popup_handle), nullptr);
    EXPECT_EQ(CMenu::FromHandle(popup_handle), popup);
    EXPECT_EQ(CMenu::FromHandle(nullptr), nullptr);
    EXPECT_EQ(menu.GetSubMenu(1), nullptr);
    EXPECT_EQ(menu.GetSubMenu(7), nullptr);
    zmr::ThreadState::current().drop_temporaries();
    EXPECT_TRUE(::IsMenu(popup_handle));
}

TEST(CMenu, GetSafeHmenu_OfANullObject_IsNull)
{
    const CMenu* volatile none = nullptr;

    EXPECT_EQ(none->GetSafeHmenu(), nullptr);
}

TEST(CMenu, ItemsAreToldByPositionAndById)
{
    CMenu menu;
    ASSERT_TRUE(menu.LoadMenu(kTestMenu));
    CMenu* const file = menu.GetSubMenu(0);
    std::array<char, 5> cut{};

    EXPECT_EQ(menu.GetMenuItemCount(), 2);
    EXPECT_EQ(menu.GetMenuItemID(0), kNone);
    EXPECT_EQ(menu.GetMenuItemID(1), kHelp);
    EXPECT_EQ(file->GetMenuItemID(1), 0u);
    EXPECT_EQ(file->GetMenuItemID(9), kNone);
    EXPECT_EQ(menu.GetMenuState(9999, MF_BYCOMMAND), kNone);
    CString text = "before";
    EXPECT_EQ(file->GetMenuString(kClose, text, MF_BYCOMMAND), 6);
    EXPECT_EQ(text, "&Close");
    EXPECT_EQ(file->GetMenuString(kClose, cut.data(), 5, MF_BYCOMMAND), 4);
    EXPECT_STREQ(cut.data(), "&Clo");
    EXPECT_EQ(file->GetMenuString(kClose, nullptr, 0, MF_BYCOMMAND), 6);
    EXPECT_EQ(file->GetMenuString(1, text, MF_BYPOSITION), 0);
    EXPECT_EQ(text, "");
    EXPECT_EQ(CMenu().GetMenuItemCount(), -1);
}

TEST(CMenu, ItemsComeAndGo)
{
    CMenu menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    EXPECT_TRUE(menu.AppendMenu(MF_STRING, kOpen, "Open"));
    EXPECT_TRUE(menu.AppendMenu(MF_SEPARATOR));
    EXPECT_TRUE(menu.InsertMenu(0, MF_BYPOSITION | MF_STRING, kHelp, "Help"));
    EXPECT_TRUE(menu.ModifyMenu(kOpen, MF_BYCOMMAND | MF_STRING, kClose, "Close"));
    EXPECT_EQ(menu.GetMenuItemID(0), kHelp);
    EXPECT_EQ(menu.GetMenuItemID(1), kClose);
    EXPECT_TRUE(menu.DeleteMenu(kHelp, MF_BYCOMMAND));
    EXPECT_FALSE(menu.DeleteMenu(kHelp, MF_BYCOMMAND));
    EXPECT_EQ(menu.GetMenuItemCount(), 2);

    CMenu inner;
    ASSERT_TRUE(inner.CreatePopupMenu());
    const HMENU popup = inner.Detach();
    EXPECT_TRUE(menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(popup), "More"));
    EXPECT_TRUE(menu.RemoveMenu(2, MF_BYPOSITION));
    EXPECT_TRUE(::IsMenu(popup)) << "a removed popup is left to the caller";
    EXPECT_TRUE(inner.Attach(popup));

    CBitmap picture;
    ASSERT_TRUE(picture.LoadBitmap(201));
    EXPECT_TRUE(menu.AppendMenu(0, kOpen, &picture));
    EXPECT_TRUE(menu.InsertMenu(0, MF_BYPOSITION, kHelp, &picture));
    MENUITEMINFO info{};
    info.fMask = MIIM_BITMAP;
    EXPECT_TRUE(menu.GetMenuItemInfo(0, &info, TRUE));
    EXPECT_EQ(info.hbmpItem, static_cast<HBITMAP>(picture));
    EXPECT_TRUE(menu.SetMenuItemBitmaps(kClose, MF_BYCOMMAND, nullptr, &picture));
    menu.DestroyMenu();
}

TEST(CMenu, StatesAreSetAndTold)
{
    CMenu menu;
    ASSERT_TRUE(menu.LoadMenu(kTestMenu));
    EXPECT_EQ(menu.EnableMenuItem(kOpen, MF_GRAYED), static_cast<UINT>(MF_ENABLED));
    EXPECT_EQ(menu.EnableMenuItem(9999, MF_GRAYED), kNone);
    EXPECT_EQ(menu.CheckMenuItem(kClose, MF_CHECKED), static_cast<UINT>(MF_UNCHECKED));
    CMenu* const file = menu.GetSubMenu(0);
    EXPECT_TRUE(file->SetDefaultItem(kClose));
    EXPECT_EQ(file->GetDefaultItem(0), kClose);
    EXPECT_EQ(file->GetDefaultItem(0, TRUE), 2u);

    EXPECT_TRUE(menu.GetMenuState(kOpen, MF_BYCOMMAND) & MF_GRAYED);
    EXPECT_TRUE(menu.GetMenuState(kClose, MF_BYCOMMAND) & MF_CHECKED);
    EXPECT_TRUE(file->CheckMenuRadioItem(0, 2, 0, MF_BYPOSITION));
    EXPECT_TRUE(file->GetMenuState(kOpen, MF_BYCOMMAND) & MF_CHECKED);
    EXPECT_FALSE(file->GetMenuState(kClose, MF_BYCOMMAND) & MF_CHECKED);
}

TEST(CMenu, ItemRecords_GetTheirSizeHere)
{
    CMenu menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    MENUITEMINFO info{};
    info.fMask = MIIM_ID | MIIM_STRING;
    info.wID = kOpen;
    std::string text = "Open";
    info.dwTypeData = text.data();
    EXPECT_TRUE(menu.InsertMenuItem(0, &info, TRUE));
    info.fMask = MIIM_DATA;
    info.dwItemData = 77;
    EXPECT_TRUE(menu.SetMenuItemInfo(kOpen, &info));
    MENUITEMINFO read{};
    read.fMask = MIIM_DATA | MIIM_ID;
    EXPECT_TRUE(menu.GetMenuItemInfo(0, &read, TRUE));

    EXPECT_EQ(read.wID, kOpen);
    EXPECT_EQ(read.dwItemData, 77u);
    EXPECT_FALSE(menu.GetMenuItemInfo(9999, &read));
}

TEST(CMenu, TrackPopupMenu_Cancelled_GivesNoIdAndTellsTheThreadMeanwhile)
{
    PopupOwner owner;
    ASSERT_TRUE(owner.open());
    CMenu menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    menu.AppendMenu(MF_STRING, kOpen, "Open");
    const zmr::ThreadState& state = zmr::ThreadState::current();
    HMENU tracked = nullptr;
    HWND window = nullptr;
    CMenu* opened = nullptr;
    owner.on_open = [&](CMenu* popup) {
        opened = popup;
        tracked = state.tracked_menu;
        window = state.tracking_window;
    };

    EXPECT_EQ(menu.TrackPopupMenu(TPM_RETURNCMD, 40, 40, &owner), 0);
    EXPECT_EQ(opened, &menu);
    EXPECT_EQ(tracked, menu.m_hMenu);
    EXPECT_EQ(window, owner.m_hWnd);
    EXPECT_EQ(state.tracked_menu, nullptr);
    EXPECT_EQ(state.tracking_window, nullptr);
}

TEST(CMenu, TrackPopupMenu_ChosenByKeys_GivesTheIdOrSendsTheCommand)
{
    PopupOwner owner;
    ASSERT_TRUE(owner.open());
    CMenu menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    menu.AppendMenu(MF_STRING, kOpen, "Open");
    menu.AppendMenu(MF_STRING, kClose, "Close");
    owner.on_open = [&](CMenu*) {
        owner.PostMessage(WM_KEYDOWN, VK_DOWN);
        owner.PostMessage(WM_KEYDOWN, VK_DOWN);
        owner.PostMessage(WM_KEYDOWN, VK_RETURN);
    };
    owner.on_wait = [] {};

    EXPECT_EQ(menu.TrackPopupMenu(TPM_RETURNCMD, 40, 40, &owner), static_cast<BOOL>(kClose));
    EXPECT_EQ(owner.chosen, 0u);
    EXPECT_TRUE(menu.TrackPopupMenu(0, 40, 40, &owner, CRect(40, 40, 60, 60)));
    MSG message;
    while (::PeekMessage(&message, nullptr, 0, 0, PM_REMOVE))
        ::DispatchMessage(&message);
    EXPECT_EQ(owner.chosen, kClose);
}

TEST(CMenu, TrackPopupMenu_HandlerThrows_ComesOutOfTheCallWithTheStateRestored)
{
    PopupOwner owner;
    ASSERT_TRUE(owner.open());
    CMenu menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    menu.AppendMenu(MF_STRING, kOpen, "Open");
    owner.on_open = [](CMenu*) { throw std::runtime_error("no items today"); };

    EXPECT_THROW(menu.TrackPopupMenu(TPM_RETURNCMD, 40, 40, &owner), std::runtime_error);
    EXPECT_EQ(zmr::ThreadState::current().tracked_menu, nullptr);
    EXPECT_EQ(zmr::ThreadState::current().pending, nullptr);
}

TEST(CMenu, OwnerDrawnItem_IsMeasuredAndDrawnByTheMenusObject)
{
    PopupOwner owner;
    ASSERT_TRUE(owner.open());
    CMenu menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    DrawnMenu inner;
    ASSERT_TRUE(inner.CreatePopupMenu());
    inner.AppendMenu(MF_OWNERDRAW, kHelp);
    menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(inner.m_hMenu), "More");
    int popups = 0;
    owner.on_open = [&](CMenu*) {
        ++popups;
        if (popups == 1) {
            owner.PostMessage(WM_KEYDOWN, VK_DOWN);
            owner.PostMessage(WM_KEYDOWN, VK_RIGHT);
        }
    };
    owner.on_wait = [&] {
        if (inner.drawn != 0)
            ::EndMenu();
    };

    menu.TrackPopupMenu(TPM_RETURNCMD, 40, 40, &owner);
    EXPECT_EQ(inner.measured, kHelp);
    EXPECT_EQ(inner.drawn, kHelp);
    EXPECT_TRUE(menu.RemoveMenu(0, MF_BYPOSITION));  // inner destroys its own handle
}

TEST(CMenu, FromOwnerDrawnItem_FindsTheNearestObjectAboveTheItem)
{
    CMenu menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    menu.AppendMenu(MF_OWNERDRAW, kOpen);
    menu.AppendMenu(MF_STRING, kClose, "Close");
    zmr::OwnedMenu nameless(::CreatePopupMenu());
    ::AppendMenu(nameless.get(), MF_OWNERDRAW, kHelp, nullptr);
    menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(nameless.release()), "More");
    zmr::ThreadState& state = zmr::ThreadState::current();

    EXPECT_EQ(CMenu::FromOwnerDrawnItem(kOpen), nullptr) << "nothing is being tracked";
    state.tracked_menu = menu;
    EXPECT_EQ(CMenu::FromOwnerDrawnItem(kOpen), &menu);
    EXPECT_EQ(CMenu::FromOwnerDrawnItem(kHelp), &menu);
    EXPECT_EQ(CMenu::FromOwnerDrawnItem(kClose), nullptr);
    EXPECT_EQ(CMenu::FromOwnerDrawnItem(9999), nullptr);
    state.tracked_menu = nullptr;
}

TEST(CMenu, OwnerDrawnItemOfAMenuBar_IsMeasuredByItsObject)
{
    PopupOwner owner;
    ASSERT_TRUE(owner.open());
    CMenu bar;
    ASSERT_TRUE(bar.CreateMenu());
    DrawnMenu popup;
    ASSERT_TRUE(popup.CreatePopupMenu());
    popup.AppendMenu(MF_OWNERDRAW, kOpen);
    bar.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(popup.m_hMenu), "File");
    ASSERT_TRUE(owner.SetMenu(&bar));
    MEASUREITEMSTRUCT item{};
    item.CtlType = ODT_MENU;
    item.itemID = kOpen;
    owner.SendMessage(WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&item));

    EXPECT_EQ(popup.measured, kOpen);
    EXPECT_EQ(item.itemWidth, 50u);
    EXPECT_EQ(CMenu::FromOwnerDrawnItem(kOpen), nullptr) << "outside of a message";
    owner.SetMenu(nullptr);
    EXPECT_TRUE(bar.RemoveMenu(0, MF_BYPOSITION));  // popup destroys its own handle
}

TEST(CMenu, ManyMenus_LeaveNothingBehind)
{
    const auto open_and_close = [] {
        CMenu menu;
        menu.LoadMenu(kTestMenu);
        static_cast<void>(menu.GetSubMenu(0));
        CMenu popup;
        popup.CreatePopupMenu();
        popup.AppendMenu(MF_STRING, kOpen, "Open");
        zmr::ThreadState::current().drop_temporaries();
    };

    EXPECT_EQ(what_leaks(open_and_close), "");
    EXPECT_EQ(zmr::ThreadState::current().menus.permanent_count(), 0u);
}
