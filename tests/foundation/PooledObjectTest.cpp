#include "foundation/PooledObject.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <new>
#include <thread>
#include <vector>

namespace {

class Small : public zmr::PooledObject {
public:
    virtual ~Small() = default;
    int number = 1;
};

class Larger : public Small {
public:
    int more[20] = {2};
};

class Huge : public Larger {
public:
    int most[1000] = {3};
};

class Wide final : public Small {
public:
    alignas(128) int first = 4;
};

template <class Base>
class Failing final : public Base {
public:
    Failing() { throw 5; }
};

}  // namespace

TEST(PooledObject, ClassesOfAnySize_EndThroughTheirBase)
{
    std::vector<std::unique_ptr<Small>> all;
    for (int number = 0; number < 2000; ++number) {
        all.push_back(std::make_unique<Small>());
        all.push_back(std::make_unique<Larger>());
        all.push_back(std::make_unique<Huge>());
    }

    for (std::size_t at = 0; at < all.size(); at += 3) {
        EXPECT_EQ(static_cast<Larger&>(*all[at + 1]).more[0], 2);
        EXPECT_EQ(static_cast<Huge&>(*all[at + 2]).most[0], 3);
        all[at + 1].reset();
    }
    const auto again = std::make_unique<Larger>();
    EXPECT_EQ(again->number, 1);
}

TEST(PooledObject, WideAlignment_IsKept)
{
    std::vector<std::unique_ptr<Wide>> all;
    for (int number = 0; number < 10; ++number) {
        all.push_back(std::make_unique<Wide>());
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(all.back().get()) % 128, 0U);
        EXPECT_EQ(all.back()->first, 4);
    }
}

TEST(PooledObject, InMemoryOfTheCallers_StandsThere)
{
    alignas(Small) unsigned char place[sizeof(Small)];

    auto* const small = new (place) Small;

    EXPECT_EQ(static_cast<void*>(small), static_cast<void*>(place));
    small->~Small();
}

TEST(PooledObject, ConstructorThrows_MemoryIsGivenBack)
{
    for (int turn = 0; turn < 3; ++turn)
        EXPECT_THROW(static_cast<void>(std::make_unique<Failing<Small>>()), int);
}

TEST(PooledObject, NoThrow_GivesAnObjectThatEndsAsAnyOther)
{
    for (int turn = 0; turn < 100; ++turn) {
        const std::unique_ptr<Small> small(new (std::nothrow) Small);
        const std::unique_ptr<Small> huge(new (std::nothrow) Huge);
        const std::unique_ptr<Small> wide(new (std::nothrow) Wide);
        ASSERT_NE(small, nullptr);
        ASSERT_NE(wide, nullptr);
        ASSERT_NE(huge, nullptr);
        EXPECT_EQ(static_cast<Huge&>(*huge).most[0], 3);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(wide.get()) % 128, 0U);
    }
}

TEST(PooledObject, NoThrowButConstructorThrows_MemoryIsGivenBack)
{
    const auto make = [] {
        EXPECT_THROW(static_cast<void>(new (std::nothrow) Failing<Small>), int);
        EXPECT_THROW(static_cast<void>(new (std::nothrow) Failing<Huge>), int);
    };
    make();
    std::thread(make).join();
    EXPECT_EQ(std::make_unique<Small>()->number, 1);
}

TEST(PooledObject, MadeAndEndedOnOtherThreads_AreWhole)
{
    std::vector<std::unique_ptr<Small>> here;
    for (int number = 0; number < 3000; ++number)
        here.push_back(std::make_unique<Larger>());
    std::vector<std::unique_ptr<Small>> there;
    std::thread([&] {
        here.clear();
        for (int number = 0; number < 3000; ++number)
            there.push_back(std::make_unique<Larger>());
    }).join();

    for (const auto& object : there)
        ASSERT_EQ(static_cast<Larger&>(*object).more[0], 2);
    there.clear();
    EXPECT_EQ(std::make_unique<Larger>()->more[0], 2);
}
