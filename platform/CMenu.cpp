#include "platform/CMenu.h"

#include "platform/AfxResources.h"
#include "platform/AfxState.h"
#include "platform/ByteText.h"
#include "platform/CBitmap.h"
#include "platform/CWnd.h"
#include "platform/HandlesUser.h"
#include "platform/ThreadState.h"

#include <string_view>
#include <utility>

IMPLEMENT_DYNCREATE(CMenu, CObject)

namespace {

/// Says in the thread's state which menu is being tracked, for the life of this object.
class Tracking {
public:
    Tracking(HMENU menu, HWND window)
        : state_(zmr::ThreadState::current()),
          former_menu_(std::exchange(state_.tracked_menu, menu)),
          former_window_(std::exchange(state_.tracking_window, window))
    {
    }
    ~Tracking()
    {
        state_.tracked_menu = former_menu_;
        state_.tracking_window = former_window_;
    }
    Tracking(const Tracking&) = delete;
    Tracking& operator=(const Tracking&) = delete;

private:
    zmr::ThreadState& state_;
    HMENU former_menu_;
    HWND former_window_;
};

/// The innermost menu with an object on the way from `menu` to the owner-drawn item, found from the
/// top down; `found` says whether the item is there at all.
CMenu* holder_of(HMENU menu, UINT id, CMenu* above, bool& found)
{
    CMenu* const own = CMenu::FromHandlePermanent(menu);
    CMenu* const nearest = own != nullptr ? own : above;
    const int count = ::GetMenuItemCount(menu);
    for (int position = 0; position < count; ++position) {
        if (const HMENU popup = ::GetSubMenu(menu, position); popup != nullptr) {
            if (CMenu* const inside = holder_of(popup, id, nearest, found); found)
                return inside;
        }
        MENUITEMINFO info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_ID | MIIM_FTYPE;
        if (::GetMenuItemInfo(menu, static_cast<UINT>(position), TRUE, &info) && info.wID == id &&
            (info.fType & MFT_OWNERDRAW) != 0) {
            found = true;
            return nearest;
        }
    }
    return nullptr;
}

/// Null for child windows: what they have in a menu's place is their id.
HMENU menu_bar_of(HWND window)
{
    if (window == nullptr || (::GetWindowLongPtr(window, GWL_STYLE) & WS_CHILD) != 0)
        return nullptr;
    return ::GetMenu(window);
}

HBITMAP bitmap_of(const CBitmap* bitmap)
{
    return bitmap != nullptr ? static_cast<HBITMAP>(*bitmap) : nullptr;
}

}  // namespace

CMenu::~CMenu()
{
    DestroyMenu();
}

BOOL CMenu::take(HMENU made)
{
    zmr::OwnedMenu menu(made);
    if (!Attach(menu.get()))
        return FALSE;
    static_cast<void>(menu.release());
    return TRUE;
}

BOOL CMenu::LoadMenu(LPCTSTR name)
{
    return take(::LoadMenu(AfxFindResourceHandle(name, RT_MENU), name));
}

BOOL CMenu::Attach(HMENU menu)
{
    if (menu == nullptr || m_hMenu != nullptr)
        return FALSE;
    zmr::ThreadState::current().menus.set_permanent(menu, this);
    m_hMenu = menu;
    return TRUE;
}

HMENU CMenu::Detach()
{
    if (m_hMenu != nullptr)
        zmr::ThreadState::current().menus.remove_permanent(m_hMenu);
    return std::exchange(m_hMenu, nullptr);
}

BOOL CMenu::DestroyMenu()
{
    const HMENU menu = Detach();
    return menu != nullptr && ::DestroyMenu(menu);
}

CMenu* CMenu::FromHandle(HMENU menu)
{
    return zmr::ThreadState::current().menus.from_handle<&CMenu::m_hMenu>(menu);
}

CMenu* CMenu::FromHandlePermanent(HMENU menu)
{
    return zmr::ThreadState::current().menus.find_permanent(menu);
}

CMenu* CMenu::FromOwnerDrawnItem(UINT id)
{
    const zmr::ThreadState& state = zmr::ThreadState::current();
    HMENU menu = state.tracked_menu;
    if (menu == nullptr)
        menu = menu_bar_of(state.last_message.hwnd);
    bool found = false;
    return menu != nullptr ? holder_of(menu, id, nullptr, found) : nullptr;
}

HMENU CMenu::GetSafeHmenu() const
{
    return this == nullptr ? nullptr : m_hMenu;
}

BOOL CMenu::TrackPopupMenu(UINT flags, int x, int y, CWnd* window, LPCRECT spared)
{
    const HWND owner = window != nullptr ? window->m_hWnd : nullptr;
    TPMPARAMS around{};
    around.cbSize = sizeof around;
    if (spared != nullptr)
        around.rcExclude = *spared;
    BOOL answer = FALSE;
    {
        const Tracking tracking(m_hMenu, owner);
        answer =
            ::TrackPopupMenuEx(m_hMenu, flags, x, y, owner, spared != nullptr ? &around : nullptr);
    }
    zmr::rethrow_pending();
    return answer;
}

BOOL CMenu::SetMenuItemBitmaps(UINT which, UINT flags, const CBitmap* unchecked,
                               const CBitmap* checked)
{
    return ::SetMenuItemBitmaps(m_hMenu, which, flags, bitmap_of(unchecked), bitmap_of(checked));
}

int CMenu::GetMenuString(UINT which, CString& text, UINT flags) const
{
    const int length = ::GetMenuString(m_hMenu, which, nullptr, 0, flags);
    if (length <= 0) {
        text.Empty();
        return 0;
    }
    ::GetMenuString(m_hMenu, which, text.GetBufferSetLength(length), length + 1, flags);
    text.ReleaseBuffer();
    return text.GetLength();
}

int CMenu::GetMenuString(UINT which, LPSTR text, int size, UINT flags) const
{
    CString whole;
    const int length = GetMenuString(which, whole, flags);
    if (text == nullptr || size <= 0)
        return length;
    const std::string_view bytes(whole, static_cast<std::size_t>(length));
    return static_cast<int>(zmr::copy_cut(text, static_cast<std::size_t>(size), bytes));
}

BOOL CMenu::GetMenuItemInfo(UINT which, LPMENUITEMINFO info, BOOL by_position) const
{
    info->cbSize = sizeof *info;
    return ::GetMenuItemInfo(m_hMenu, which, by_position, info);
}

BOOL CMenu::SetMenuItemInfo(UINT which, LPMENUITEMINFO info, BOOL by_position)
{
    info->cbSize = sizeof *info;
    return ::SetMenuItemInfo(m_hMenu, which, by_position, info);
}

BOOL CMenu::InsertMenuItem(UINT before, LPMENUITEMINFO info, BOOL by_position)
{
    info->cbSize = sizeof *info;
    return ::InsertMenuItem(m_hMenu, before, by_position, info);
}

CMenu* CMenu::GetSubMenu(int position) const
{
    return FromHandle(::GetSubMenu(m_hMenu, position));
}

void CMenu::DrawItem(LPDRAWITEMSTRUCT) {}

void CMenu::MeasureItem(LPMEASUREITEMSTRUCT) {}

LPCTSTR CMenu::text_of(const CBitmap* bitmap)
{
    return reinterpret_cast<LPCTSTR>(bitmap_of(bitmap));
}
