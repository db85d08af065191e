#include "foundation/GCollection.h"
#include "graphics/PaletteCollection.h"
#include "tests/responder/TestResponders.h"

#include <gtest/gtest.h>

namespace {

constexpr RGB_Color kRed(255, 0, 0);
constexpr RGB_Color kBlue(0, 0, 255);

/// One with something in every field.
struct Full {
    Full()
    {
        source.set_label("label");
        source.set_options(0x2001, 1);
        source.change_regime(9);
        source.set_state(~0UL & ~GResponder::state_exposed & ~GResponder::state_visible, 1);
        source.set_palette_entry(3, kRed);
        source.set_use_parent_color(true);
        auto* second = new TestBehaviour("2");
        second->user_word = 2;
        source.attach(second);
        auto* skipped = new TestBehaviour("x");
        skipped->leave_out();
        source.attach(skipped);
        child = add(source);
        source.simply_assign_current(child);
        source.notify_when_modified(&receiver, kBroadcast, 1);
    }
    ~Full() { source.destroy_all(); }
    Full(const Full&) = delete;
    Full& operator=(const Full&) = delete;

    TestResponder receiver;
    TestResponder source;
    TestResponder* child = nullptr;
};

long receivers_of(const GResponder& responder)
{
    GCollection out(0, 4, 0);
    responder.get_notification_receivers(out);
    return out.count;
}

}  // namespace

TEST(GResponderCopy, IsDetachedWithCopiesOfItsOwn)
{
    Full full;
    GResponder copy(full.source);

    EXPECT_EQ(copy.get_state(), 0x709UL);
    EXPECT_EQ(copy.get_options(), 0x2001UL);
    EXPECT_EQ(copy.get_regime(), 9UL);
    EXPECT_STREQ(copy.get_label(), "label");
    EXPECT_NE(copy.get_label(), full.source.get_label());
    EXPECT_EQ(copy.get_owner(), nullptr);
    EXPECT_EQ(copy.get_current(), nullptr);
    EXPECT_EQ(copy.getCount(), 0);
    EXPECT_EQ(receivers_of(copy), 0);
    ASSERT_NE(copy.get_palette(), nullptr);
    EXPECT_NE(copy.get_palette(), full.source.get_palette());
    EXPECT_EQ(copy.get_pal(3), kRed);
    EXPECT_FALSE(copy.use_parent_color());
    EXPECT_FALSE(copy.use_parent_select_color());
    EXPECT_FALSE(copy.allow_idle());
}

TEST(GResponderCopy, BehavioursToBeWritten_AreClonedAndAttached)
{
    Full full;
    GResponder copy(full.source);

    ASSERT_NE(copy.get_behaviours(), nullptr);
    const auto* clone = static_cast<TestBehaviour*>(copy.get_behaviours());
    EXPECT_EQ(clone->user_word, 2U);
    EXPECT_EQ(clone->host(), &copy);
    EXPECT_EQ(clone->get_next(), nullptr);
    EXPECT_NE(copy.get_behaviours(), full.source.get_behaviours()->get_next());
}

TEST(GResponderAssign, TakesEveryFieldPointersIncluded)
{
    Full full;
    {
        TestResponder target;
        target = full.source;

        EXPECT_EQ(target.get_label(), full.source.get_label());
        EXPECT_EQ(target.get_behaviours(), full.source.get_behaviours());
        EXPECT_EQ(target.get_palette(), full.source.get_palette());
        EXPECT_EQ(target.getCount(), 1);
        EXPECT_EQ(target.first(), full.child);
        EXPECT_EQ(target.get_current(), full.child);
        EXPECT_EQ(target.get_state(), full.source.get_state());
        EXPECT_EQ(target.get_regime(), 9UL);
        EXPECT_TRUE(target.use_parent_color());
        EXPECT_EQ(receivers_of(target), 1);
    }
    // The borrower has ended and freed nothing.
    EXPECT_STREQ(full.source.get_label(), "label");
    EXPECT_EQ(full.source.get_pal(3), kRed);
    EXPECT_EQ(full.source.first(), full.child);
    EXPECT_EQ(full.child->get_owner(), &full.source);
    EXPECT_EQ(full.source.get_current(), full.child);
    EXPECT_EQ(receivers_of(full.source), 1);
    EXPECT_NE(full.source.get_behaviours(), nullptr);
}

TEST(GResponderAssign, ChangesOfTheBorrower_LeaveTheSource)
{
    Full full;
    TestResponder target;
    target = full.source;
    GBehaviour* const chain = full.source.get_behaviours();

    target.set_label("other");
    target.set_palette_entry(3, kBlue);
    target.insert(new TestResponder);
    target.attach(new TestBehaviour("new"));
    target.notify_when_modified(&target, kBroadcast, 2);
    target.set_current(nullptr);

    EXPECT_STREQ(full.source.get_label(), "label");
    EXPECT_EQ(full.source.get_pal(3), kRed);
    EXPECT_EQ(target.get_pal(3), kBlue);
    EXPECT_EQ(full.source.getCount(), 1);
    EXPECT_EQ(target.getCount(), 2);
    EXPECT_EQ(full.source.get_behaviours(), chain);
    EXPECT_EQ(static_cast<TestBehaviour*>(chain)->host(), &full.source);
    EXPECT_EQ(receivers_of(full.source), 1);
    EXPECT_EQ(receivers_of(target), 2);
    EXPECT_EQ(full.source.get_current(), full.child);
    target.destroy_all();
    EXPECT_EQ(full.source.first(), full.child);
}

TEST(GResponderAssign, ShutDownOfTheBorrower_EndsNothingOfTheSource)
{
    Full full;
    const int responders = TestResponder::alive;
    const int behaviours = TestBehaviour::alive;
    {
        TestResponder target;
        target = full.source;
        target.shut_down();
        EXPECT_EQ(target.getCount(), 0);
        EXPECT_EQ(target.get_behaviours(), nullptr);
    }
    EXPECT_EQ(TestResponder::alive, responders);
    EXPECT_EQ(TestBehaviour::alive, behaviours);
    EXPECT_EQ(full.source.getCount(), 1);
}

TEST(GResponderAssign, WhatTheTargetHad_IsGivenUp)
{
    Full full;
    TestResponder owner;
    const int behaviours = TestBehaviour::alive;
    TestResponder* target = add(owner);
    target->set_label("old");
    target->attach(new TestBehaviour("old"));
    target->set_palette_entry(1, kBlue);
    Ended<TestResponder> child(add(*target));

    *target = full.source;
    TestResponder& same = *target;
    same = *target;

    EXPECT_EQ(TestBehaviour::alive, behaviours);
    EXPECT_EQ(child->get_owner(), nullptr);
    EXPECT_EQ(owner.getCount(), 0);
    EXPECT_EQ(target->get_label(), full.source.get_label());
    delete target;
}
