#pragma once

#include <cstddef>
#include <functional>
#include <string>

/// What this process holds of the system's resources. Windows programs only.
struct ResourceCounts {
    int windows = 0;          ///< With all child windows and those for messages only.
    int menus = 0;            ///< Popups count by themselves.
    int icons = 0;            ///< Cursors as well.
    int drawing_objects = 0;  ///< Device contexts as well.
    int kernel_handles = 0;
    std::size_t heap_bytes = 0;  ///< In use in all heaps.
};

/// Takes some 50 ms.
[[nodiscard]] ResourceCounts count_resources();

/// How often a test for leaks runs its action: 200 times, or as often as ZMR_LEAK_TURNS says.
[[nodiscard]] int leak_turns();

/// Runs `action` some times, counts, runs it `turns` times more and counts again. Says what grew,
/// line by line, and nothing when nothing did. The first runs may fill what the system keeps for
/// good; of the heap, growth up to `heap_bytes_per_turn`, and up to 2 KiB in all, counts as
/// nothing, because it holds what others of the process do as well.
///     EXPECT_EQ(what_leaks([] { CFont font; font.CreatePointFont(90, "Tahoma"); }), "");
[[nodiscard]] std::string what_leaks(const std::function<void()>& action, int turns = leak_turns(),
                                     int heap_bytes_per_turn = 8);
