#pragma once

#include "platform/CObject.h"
#include "platform/CString.h"
#include "platform/Windows.h"

class CBitmap;
class CWnd;

/// A menu bar or a popup. One that was made or attached is destroyed, with its popups, at this
/// object's end, so detach what a window or another menu takes over. Where items are named, `flags`
/// says how: MF_BYCOMMAND by id, MF_BYPOSITION from 0. An object serves the thread that attached
/// its handle.
class ZMR_GV_API CMenu : public CObject {
    DECLARE_DYNCREATE(CMenu)

public:
    CMenu() = default;
    ~CMenu() override;

    BOOL CreateMenu() { return take(::CreateMenu()); }
    BOOL CreatePopupMenu() { return take(::CreatePopupMenu()); }
    /// A menu of the resources of the program or of a module whose resources the program finds.
    BOOL LoadMenu(LPCTSTR name);
    BOOL LoadMenu(UINT id) { return LoadMenu(MAKEINTRESOURCE(id)); }
    BOOL LoadMenuIndirect(const void* menu_template)
    {
        return take(::LoadMenuIndirect(static_cast<const MENUTEMPLATE*>(menu_template)));
    }
    /// Takes `menu` over. FALSE, with nothing changed, when it is null or this object has one.
    BOOL Attach(HMENU menu);
    /// Gives the handle up to the caller.
    HMENU Detach();
    /// FALSE when there was none.
    BOOL DestroyMenu();
    /// The object of the menu: the one that attached it in this thread, else a temporary one, which
    /// lives until the thread's next idle turn and never destroys it. Null for null.
    [[nodiscard]] static CMenu* FromHandle(HMENU menu);
    /// Null when no object of this thread attached it.
    [[nodiscard]] static CMenu* FromHandlePermanent(HMENU menu);
    /// The object that attached the menu which holds the owner-drawn item, else that of the nearest
    /// menu above it. Looked for in the menu that is being tracked, and when none is in the menu
    /// bar of the window that the current message is for. Null when there is none.
    [[nodiscard]] static CMenu* FromOwnerDrawnItem(UINT id);
    /// Null also when called on a null pointer.
    [[nodiscard]] HMENU GetSafeHmenu() const;
    [[nodiscard]] operator HMENU() const { return m_hMenu; }
    friend bool operator==(const CMenu& a, const CMenu& b) { return a.m_hMenu == b.m_hMenu; }

    /// Shows the popup at a place of the screen, for `window`, which gets its messages, until
    /// something is chosen or it is cancelled. FALSE on failure; with TPM_RETURNCMD the id that was
    /// chosen, 0 for none. Throws on what a handler threw meanwhile.
    BOOL TrackPopupMenu(UINT flags, int x, int y, CWnd* window, LPCRECT spared = nullptr);

    // Items. The system owns the popups of a menu.

    /// `item` is the id, or the popup's handle with MF_POPUP.
    BOOL AppendMenu(UINT flags, UINT_PTR item = 0, LPCTSTR text = nullptr)
    {
        return ::AppendMenu(m_hMenu, flags, item, text);
    }
    BOOL AppendMenu(UINT flags, UINT_PTR item, const CBitmap* bitmap)
    {
        return AppendMenu(flags | MF_BITMAP, item, text_of(bitmap));
    }
    BOOL InsertMenu(UINT before, UINT flags, UINT_PTR item = 0, LPCTSTR text = nullptr)
    {
        return ::InsertMenu(m_hMenu, before, flags, item, text);
    }
    BOOL InsertMenu(UINT before, UINT flags, UINT_PTR item, const CBitmap* bitmap)
    {
        return InsertMenu(before, flags | MF_BITMAP, item, text_of(bitmap));
    }
    BOOL ModifyMenu(UINT which, UINT flags, UINT_PTR item = 0, LPCTSTR text = nullptr)
    {
        return ::ModifyMenu(m_hMenu, which, flags, item, text);
    }
    /// An item's popup goes with it;
    BOOL DeleteMenu(UINT which, UINT flags) { return ::DeleteMenu(m_hMenu, which, flags); }
    /// here it is left to the caller.
    BOOL RemoveMenu(UINT which, UINT flags) { return ::RemoveMenu(m_hMenu, which, flags); }
    /// The former state, -1 when there is no such item. `flags` say the new one: MF_GRAYED ...
    UINT EnableMenuItem(UINT which, UINT flags)
    {
        return static_cast<UINT>(::EnableMenuItem(m_hMenu, which, flags));
    }
    UINT CheckMenuItem(UINT which, UINT flags) { return ::CheckMenuItem(m_hMenu, which, flags); }
    BOOL CheckMenuRadioItem(UINT first, UINT last, UINT chosen, UINT flags)
    {
        return ::CheckMenuRadioItem(m_hMenu, first, last, chosen, flags);
    }
    BOOL SetDefaultItem(UINT which, BOOL by_position = FALSE)
    {
        return ::SetMenuDefaultItem(m_hMenu, which, static_cast<UINT>(by_position));
    }
    [[nodiscard]] UINT GetDefaultItem(UINT flags, BOOL by_position = FALSE) const
    {
        return ::GetMenuDefaultItem(m_hMenu, static_cast<UINT>(by_position), flags);
    }
    BOOL SetMenuItemBitmaps(UINT which, UINT flags, const CBitmap* unchecked,
                            const CBitmap* checked);

    /// -1 when there is no menu.
    [[nodiscard]] int GetMenuItemCount() const { return ::GetMenuItemCount(m_hMenu); }
    /// 0 for a separator, -1 for an item that opens a popup and where there is none.
    [[nodiscard]] UINT GetMenuItemID(int position) const
    {
        return ::GetMenuItemID(m_hMenu, position);
    }
    /// -1 when there is no such item. For an item with a popup the high byte is its item count.
    [[nodiscard]] UINT GetMenuState(UINT which, UINT flags) const
    {
        return ::GetMenuState(m_hMenu, which, flags);
    }
    /// Writes as many whole characters as fit with the closing zero; their number of bytes. Without
    /// a buffer the length of the text.
    int GetMenuString(UINT which, LPSTR text, int size, UINT flags) const;
    /// The length of the text.
    int GetMenuString(UINT which, CString& text, UINT flags) const;
    /// `info->cbSize` is set here.
    BOOL GetMenuItemInfo(UINT which, LPMENUITEMINFO info, BOOL by_position = FALSE) const;
    BOOL SetMenuItemInfo(UINT which, LPMENUITEMINFO info, BOOL by_position = FALSE);
    BOOL InsertMenuItem(UINT before, LPMENUITEMINFO info, BOOL by_position = FALSE);
    /// The item's popup, null when it opens none. Borrowed, perhaps temporary.
    [[nodiscard]] CMenu* GetSubMenu(int position) const;

    // Owner-drawn items of a menu that an object holds.

    virtual void DrawItem(LPDRAWITEMSTRUCT item);
    virtual void MeasureItem(LPMEASUREITEMSTRUCT item);

    HMENU m_hMenu = nullptr;

private:
    BOOL take(HMENU made);
    /// The system's calls take a bitmap where they take a text.
    [[nodiscard]] static LPCTSTR text_of(const CBitmap* bitmap);
};
