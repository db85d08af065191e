#include "tests/support/ResourceLedger.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

// The ledger is believed by many tests: it must find what is left behind, by its kind.

TEST(ResourceLedger, NothingLeft_SaysNothing)
{
    EXPECT_EQ(what_leaks([] {}), "");
}

TEST(ResourceLedger, ThingsLeft_AreNamed)
{
    constexpr int kTurns = 3;
    std::vector<HWND> windows;
    std::vector<HMENU> menus;
    std::vector<HICON> icons;
    std::vector<HBRUSH> brushes;
    std::vector<HANDLE> events;
    std::vector<std::unique_ptr<char[]>> blocks;
    blocks.reserve(2000);

    EXPECT_THAT(what_leaks(
                    [&] {
                        windows.push_back(::CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 5, 5,
                                                          nullptr, nullptr, nullptr, nullptr));
                    },
                    kTurns),
                testing::HasSubstr("windows:"));
    EXPECT_THAT(what_leaks([&] { menus.push_back(::CreatePopupMenu()); }, kTurns),
                testing::HasSubstr("menus:"));
    EXPECT_THAT(
        what_leaks([&] { icons.push_back(::CopyIcon(::LoadIconA(nullptr, IDI_ERROR))); }, kTurns),
        testing::HasSubstr("icons and cursors:"));
    EXPECT_THAT(what_leaks([&] { brushes.push_back(::CreateSolidBrush(1)); }, kTurns),
                testing::HasSubstr("drawing objects:"));
    EXPECT_THAT(what_leaks([&] { events.push_back(::CreateEventA(nullptr, TRUE, FALSE, nullptr)); },
                           kTurns),
                testing::HasSubstr("kernel handles:"));
    EXPECT_THAT(what_leaks([&] { blocks.push_back(std::make_unique<char[]>(16)); }),
                testing::HasSubstr("heap bytes:"));

    for (const HWND window : windows)
        ::DestroyWindow(window);
    for (const HMENU menu : menus)
        ::DestroyMenu(menu);
    for (const HICON icon : icons)
        ::DestroyIcon(icon);
    for (const HBRUSH brush : brushes)
        ::DeleteObject(brush);
    for (const HANDLE event : events)
        ::CloseHandle(event);
}
