#include "dialogs/modality/ModalList.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

/// Windows by number, and what is done to them.
struct Desk {
    std::set<int> disabled;
    std::string calls;

    zmr::ModalList<int> disable(const std::vector<int>& windows)
    {
        return zmr::ModalList<int>(
            windows, [this](int window) { return !disabled.contains(window); },
            [this](int window) {
                disabled.insert(window);
                calls += "-" + std::to_string(window);
            });
    }
    void end(zmr::ModalList<int>& list)
    {
        list.end([this](int window) {
            disabled.erase(window);
            calls += "+" + std::to_string(window);
        });
    }
};

}  // namespace

TEST(ModalList, End_EnablesFromTheLastToTheFirst)
{
    Desk desk;
    auto list = desk.disable({1, 2, 3});

    desk.end(list);

    EXPECT_EQ(desk.calls, "-1-2-3+3+2+1");
    EXPECT_TRUE(desk.disabled.empty());
}

TEST(ModalList, DisabledBefore_StaysDisabled)
{
    Desk desk;
    desk.disabled = {2};
    auto list = desk.disable({1, 2, 3});

    desk.end(list);

    EXPECT_EQ(desk.disabled, std::set<int>{2});
}

TEST(ModalList, Nested_InnerTakesOnlyWhatIsNew)
{
    Desk desk;
    auto outer = desk.disable({1, 2});
    auto inner = desk.disable({9, 1, 2});

    EXPECT_EQ(inner.size(), 1u);
    desk.end(inner);
    EXPECT_EQ(desk.disabled, (std::set<int>{1, 2}));
    desk.end(outer);
    EXPECT_TRUE(desk.disabled.empty());
}

TEST(ModalList, DisablingDisablesAnother_BothComeBack)
{
    Desk desk;
    zmr::ModalList<int> list(
        {1, 2}, [&](int window) { return !desk.disabled.contains(window); },
        [&](int window) {
            desk.disabled.insert(window);
            desk.disabled.insert(2);  // as a frame does to what it owns
        });

    EXPECT_EQ(list.size(), 2u);
    desk.end(list);

    EXPECT_TRUE(desk.disabled.empty());
}

TEST(ModalList, End_Twice_EnablesOnce)
{
    Desk desk;
    auto list = desk.disable({1});
    desk.end(list);

    desk.end(list);

    EXPECT_EQ(desk.calls, "-1+1");
}
