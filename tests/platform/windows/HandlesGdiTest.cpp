#include "platform/HandlesGdi.h"

#include "platform/HandlesUser.h"
#include "tests/support/ResourceLedger.h"

#include <gtest/gtest.h>

namespace {

BITMAPINFO tiny_picture()
{
    BITMAPINFO description{};
    description.bmiHeader.biSize = sizeof description.bmiHeader;
    description.bmiHeader.biWidth = 2;
    description.bmiHeader.biHeight = 2;
    description.bmiHeader.biPlanes = 1;
    description.bmiHeader.biBitCount = 32;
    return description;
}

zmr::OwnedBitmap make_bitmap()
{
    const BITMAPINFO description = tiny_picture();
    void* bits = nullptr;
    return zmr::OwnedBitmap(
        ::CreateDIBSection(nullptr, &description, DIB_RGB_COLORS, &bits, nullptr, 0));
}

LRESULT CALLBACK pass_on(int code, WPARAM wparam, LPARAM lparam)
{
    return ::CallNextHookEx(nullptr, code, wparam, lparam);
}

}  // namespace

TEST(DrawingHandles, OwnedObjects_AreDeletedAtTheEndOfScope)
{
    HGDIOBJ bitmap = nullptr;
    HDC dc = nullptr;
    {
        const zmr::OwnedBitmap owned = make_bitmap();
        const zmr::OwnedMemoryDC memory(::CreateCompatibleDC(nullptr));
        bitmap = owned.get();
        dc = memory.get();
        ASSERT_EQ(::GetObjectType(bitmap), static_cast<DWORD>(OBJ_BITMAP));
        ASSERT_EQ(::GetObjectType(dc), static_cast<DWORD>(OBJ_MEMDC));
    }

    EXPECT_EQ(::GetObjectType(bitmap), 0u);
    EXPECT_EQ(::GetObjectType(dc), 0u);
}

TEST(DrawingHandles, Selection_PutsTheFormerObjectBack)
{
    const zmr::OwnedBitmap bitmap = make_bitmap();
    const zmr::OwnedMemoryDC memory(::CreateCompatibleDC(nullptr));
    const HGDIOBJ former = ::GetCurrentObject(memory.get(), OBJ_BITMAP);
    {
        const zmr::Selection selected(memory.get(), bitmap.get());
        EXPECT_TRUE(selected);
        EXPECT_EQ(::GetCurrentObject(memory.get(), OBJ_BITMAP), bitmap.get());
    }

    EXPECT_EQ(::GetCurrentObject(memory.get(), OBJ_BITMAP), former);
}

TEST(DrawingHandles, Selection_OfNullOrOfABitmapSelectedElsewhere_ChangesNothing)
{
    const zmr::OwnedBitmap bitmap = make_bitmap();
    const zmr::OwnedMemoryDC first(::CreateCompatibleDC(nullptr));
    const zmr::OwnedMemoryDC second(::CreateCompatibleDC(nullptr));
    const zmr::Selection selected(first.get(), bitmap.get());
    const HGDIOBJ former = ::GetCurrentObject(second.get(), OBJ_BITMAP);

    EXPECT_FALSE(zmr::Selection(second.get(), bitmap.get()));
    EXPECT_FALSE(zmr::Selection(second.get(), nullptr));
    EXPECT_EQ(::GetCurrentObject(second.get(), OBJ_BITMAP), former);
}

TEST(DrawingHandles, SavedState_ComesBackAtTheEndOfScope)
{
    const zmr::OwnedMemoryDC memory(::CreateCompatibleDC(nullptr));
    ::SetTextColor(memory.get(), RGB(1, 2, 3));
    {
        const zmr::SavedState saved(memory.get());
        ::SetTextColor(memory.get(), RGB(4, 5, 6));
    }

    EXPECT_EQ(::GetTextColor(memory.get()), static_cast<COLORREF>(RGB(1, 2, 3)));
}

TEST(DrawingHandles, WindowDC_OfTheScreenAndOfNoWindow)
{
    const zmr::WindowDC screen(nullptr);
    const zmr::WindowDC none(reinterpret_cast<HWND>(std::uintptr_t{0xDEAD}));

    EXPECT_TRUE(screen);
    EXPECT_FALSE(none);
}

TEST(DrawingHandles, Close_KeepsTheLastErrorCode)
{
    ::SetLastError(1234);
    {
        const zmr::OwnedMenu menu(reinterpret_cast<HMENU>(std::uintptr_t{0xDEAD}));  // is none
    }

    EXPECT_EQ(::GetLastError(), 1234u);
}

TEST(GlobalBlock, Lock_SeesTheItemAndEndsWithTheScope)
{
    const zmr::OwnedGlobal block(::GlobalAlloc(GMEM_MOVEABLE, 2 * sizeof(DWORD)));
    {
        const zmr::GlobalLockOf<DWORD> lock(block.get());
        ASSERT_NE(lock.get(), nullptr);
        EXPECT_GE(lock.count(), 2u);
        *lock.get() = 77;
        EXPECT_EQ(::GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 1u);
    }

    EXPECT_EQ(::GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 0u);
    EXPECT_EQ(*zmr::GlobalLockOf<DWORD>(block.get()).get(), 77u);
}

TEST(GlobalBlock, Lock_OfNullOrOfAShortBlock_GivesNull)
{
    struct Large {
        char bytes[4096];
    };
    const zmr::OwnedGlobal block(::GlobalAlloc(GMEM_MOVEABLE, 16));

    EXPECT_EQ(zmr::GlobalLockOf<Large>(block.get()).get(), nullptr);
    EXPECT_EQ(zmr::GlobalLockOf<Large>(block.get()).count(), 0u);
    EXPECT_EQ(zmr::GlobalLockOf<char>(nullptr).get(), nullptr);
}

TEST(HandleLeaks, EachKindOfOwner_LeavesNothingBehind)
{
    const auto open_and_close = [] {
        const zmr::OwnedBitmap bitmap = make_bitmap();
        const zmr::OwnedMemoryDC memory(::CreateCompatibleDC(nullptr));
        const zmr::Selection selected(memory.get(), bitmap.get());
        const zmr::WindowDC screen(nullptr);
        const zmr::OwnedIcon icon(::CopyIcon(::LoadIcon(nullptr, IDI_ERROR)));
        const zmr::OwnedCursor cursor(::CopyIcon(::LoadCursor(nullptr, IDC_CROSS)));
        const zmr::OwnedMenu menu(::CreatePopupMenu());
        const zmr::OwnedImageList images(::ImageList_Create(16, 16, ILC_COLOR32, 1, 1));
        ACCEL key{FVIRTKEY, VK_F2, 5};
        const zmr::OwnedAccelerators keys(::CreateAcceleratorTable(&key, 1));
        const zmr::OwnedHook hook(
            ::SetWindowsHookEx(WH_MOUSE, pass_on, nullptr, ::GetCurrentThreadId()));
        const zmr::OwnedGlobal block(::GlobalAlloc(GMEM_MOVEABLE, 100));
        const zmr::OwnedKernelHandle event(::CreateEvent(nullptr, TRUE, FALSE, nullptr));
        const zmr::OwnedModule library(::LoadLibrary("user32.dll"));
        HKEY key_handle = nullptr;
        ::RegOpenKeyEx(HKEY_CURRENT_USER, "Software", 0, KEY_READ, &key_handle);
        const zmr::OwnedRegistryKey registry(key_handle);
        ASSERT_TRUE(bitmap && memory && selected && screen && icon && cursor && menu && images &&
                    keys && hook && block && event && library && registry);
    };

    EXPECT_EQ(what_leaks(open_and_close, 200), "");
}
