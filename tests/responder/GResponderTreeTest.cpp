#include "foundation/GPointer.h"
#include "foundation/SuspendedDestruction.h"
#include "tests/responder/TestResponders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

/// The children by name, from first to last.
std::string order(const GResponder& owner)
{
    std::string names;
    for (short index = 0; index < owner.getCount(); ++index)
        names += static_cast<TestResponder*>(owner.at(index))->name;
    return names;
}

/// A responder that refuses to let children go, or to take them.
class Stubborn : public TestResponder {
public:
    void remove(GResponder* child) override
    {
        if (lets_go)
            TestResponder::remove(child);
    }
    int insert_before(GResponder* child, GResponder* target) override
    {
        ++asked_before;
        return TestResponder::insert_before(child, target);
    }
    int insert_to_list(GResponder* child, GResponder* target, unsigned char announce) override
    {
        ++asked_list;
        return takes ? TestResponder::insert_to_list(child, target, announce) : 0;
    }
    bool lets_go = true;
    bool takes = true;
    int asked_before = 0;
    int asked_list = 0;
};

TestResponder* with_priority(const char* name, unsigned short priority)
{
    auto* responder = new TestResponder(name);
    responder->priority = priority;
    return responder;
}

short by_name(const GResponder* a, const GResponder* b)
{
    const std::string& name = static_cast<const TestResponder*>(a)->name;
    return static_cast<short>(name.compare(static_cast<const TestResponder*>(b)->name));
}

}  // namespace

TEST(GResponderTree, BareResponder_TakesFewBytes)
{
    EXPECT_LE(sizeof(GResponder), 72U);
}

TEST(GResponderTree, New_IsDetachedAndShown)
{
    GResponder responder;

    EXPECT_EQ(responder.get_owner(), nullptr);
    EXPECT_EQ(responder.get_current(), nullptr);
    EXPECT_EQ(responder.getCount(), 0);
    EXPECT_EQ(responder.first(), nullptr);
    EXPECT_EQ(responder.last(), nullptr);
    EXPECT_EQ(responder.at(0), nullptr);
    EXPECT_EQ(responder.get_state(), 1UL);
    EXPECT_EQ(responder.get_options(), 0UL);
    EXPECT_EQ(responder.get_regime(), 0UL);
    EXPECT_EQ(responder.get_label(), nullptr);
    EXPECT_FALSE(responder.allow_idle());
    EXPECT_STREQ(responder.getClassName(), "GResponder");
    EXPECT_EQ(GResponder::metaclass_.getBuilder(), nullptr);
    EXPECT_EQ(GResponder::metaclass_.buildObject(), nullptr);
}

TEST(GResponderTree, InsertWithOwner_ReturnsZeroAndLeavesBothLists)
{
    auto one = make<TestResponder>();
    auto other = make<TestResponder>();
    TestResponder* child = add(*one, "a");
    add(*other, "b");

    EXPECT_EQ(other->insert_before(child, nullptr), 0);
    EXPECT_FALSE(other->silent_insert(child));
    EXPECT_EQ(one->insert_before(child, nullptr), 0);

    EXPECT_EQ(order(*one), "a");
    EXPECT_EQ(order(*other), "b");
    EXPECT_EQ(child->get_owner(), one.get());
}

TEST(GResponderTree, InsertBeforeForeignTarget_ReturnsZero)
{
    auto one = make<TestResponder>();
    auto other = make<TestResponder>();
    TestResponder* foreign = add(*other, "b");
    auto child = make<TestResponder>("a");

    EXPECT_EQ(one->insert_before(child.get(), foreign), 0);
    EXPECT_EQ(one->insert_after(child.get(), foreign), 0);
    EXPECT_EQ(one->valid_inserted_pointer(child.get(), foreign), 0);

    EXPECT_EQ(one->getCount(), 0);
    EXPECT_EQ(child->get_owner(), nullptr);
}

TEST(GResponderTree, InsertNull_ReturnsZero)
{
    auto owner = make<TestResponder>();

    EXPECT_EQ(owner->insert_before(nullptr, nullptr), 0);
    EXPECT_EQ(owner->at_insert(0, nullptr), 0);
    owner->insert(nullptr);

    EXPECT_EQ(owner->getCount(), 0);
}

TEST(GResponderTree, InsertIntoItselfOrBelowItself_ReturnsZero)
{
    auto top = make<TestResponder>("t");
    TestResponder* middle = add(*top, "m");
    TestResponder* low = add(*middle, "l");

    EXPECT_EQ(top->insert_before(top.get(), nullptr), 0);
    EXPECT_EQ(middle->insert_before(top.get(), nullptr), 0);
    EXPECT_EQ(low->insert_before(top.get(), nullptr), 0);

    EXPECT_EQ(top->get_owner(), nullptr);
    EXPECT_EQ(low->getCount(), 0);
}

TEST(GResponderTree, InsertAtTheLimit_ReturnsZero)
{
    auto owner = make<GResponder>();
    for (int number = 0; number < zmr::ChildList::kMaxCount; ++number)
        ASSERT_EQ(owner->insert_before(new GResponder, nullptr), 1);
    auto more = make<GResponder>();

    EXPECT_EQ(owner->insert_before(more.get(), nullptr), 0);
    EXPECT_FALSE(owner->silent_insert(more.get()));

    EXPECT_EQ(owner->getCount(), 32767);
    EXPECT_EQ(more->get_owner(), nullptr);
}

TEST(GResponderTree, IsSubobjectOfNull_IsTrueAlsoForARoot)
{
    auto root = make<TestResponder>();
    TestResponder* child = add(*root);

    EXPECT_TRUE(root->isSubobject(nullptr));
    EXPECT_TRUE(child->isSubobject(nullptr));
    EXPECT_TRUE(child->isSubobject(root.get()));
    EXPECT_FALSE(root->isSubobject(child));
    EXPECT_FALSE(root->isSubobject(root.get()));
}

TEST(GResponderTree, IndexOfNull_IsTheCount)
{
    auto owner = make<TestResponder>();
    add(*owner);
    add(*owner);

    EXPECT_EQ(owner->index_of(nullptr), 2);
    EXPECT_FALSE(owner->contains(nullptr));
    EXPECT_EQ(owner->index_of(owner->at(1)), 1);
    EXPECT_TRUE(owner->contains(owner->at(1)));
}

TEST(GResponderTree, NextOfTheOnlyChild_IsThatChildAndNextViewNull)
{
    auto owner = make<TestResponder>();
    TestResponder* only = add(*owner);

    EXPECT_EQ(owner->next(only), only);
    EXPECT_EQ(owner->prev(only), only);
    EXPECT_EQ(only->next(), only);
    EXPECT_EQ(only->prev(), only);
    EXPECT_EQ(only->next_view(), nullptr);
    EXPECT_EQ(only->prev_view(), nullptr);
}

TEST(GResponderTree, NextAndPrev_GoRoundTheList)
{
    auto owner = make<TestResponder>();
    TestResponder* a = add(*owner, "a");
    TestResponder* b = add(*owner, "b");
    TestResponder* c = add(*owner, "c");

    EXPECT_EQ(owner->next(a), b);
    EXPECT_EQ(owner->next(c), a);
    EXPECT_EQ(owner->prev(a), c);
    EXPECT_EQ(a->next_view(), b);
    EXPECT_EQ(c->next_view(), nullptr);
    EXPECT_EQ(a->prev_view(), nullptr);
    EXPECT_EQ(c->prev_view(), b);
    EXPECT_EQ(owner->next(owner.get()), nullptr);
    EXPECT_EQ(owner->prev(nullptr), nullptr);
    EXPECT_EQ(owner->next(), nullptr);
    EXPECT_EQ(owner->prev(), nullptr);
    EXPECT_EQ(owner->next_view(), nullptr);
    EXPECT_EQ(owner->prev_view(), nullptr);
}

TEST(GResponderTree, NextAndPrevAmongThousands_AreTheNeighboursInTheList)
{
    constexpr short kChildren = 2000;
    const auto owner = make<GResponder>();
    std::vector<GResponder*> children;
    for (short number = 0; number < kChildren; ++number) {
        children.push_back(new GResponder);
        owner->insert_before(children.back(), number % 3 == 0 ? owner->first() : nullptr);
    }
    const auto expect_neighbours = [&] {
        for (short index = 0; index < owner->getCount(); ++index) {
            const GResponder* child = owner->at(index);
            ASSERT_EQ(child->next_view(), owner->next_object(index));
            ASSERT_EQ(child->prev_view(), owner->prev_object(index));
        }
        EXPECT_EQ(owner->last()->next(), owner->first());
        EXPECT_EQ(owner->first()->prev(), owner->last());
    };
    expect_neighbours();

    std::shuffle(children.begin(), children.end(), std::mt19937(3));
    for (int number = 0; number < kChildren / 4; ++number) {
        GStreamable::destroy(children.back());
        children.pop_back();
    }
    expect_neighbours();

    for (std::size_t number = 0; number < 100; ++number)
        children[number]->makeFirst();
    owner->sort([](const GResponder* a, const GResponder* b) -> short { return a < b ? -1 : 1; });
    expect_neighbours();
}

TEST(GResponderTree, NextAndPrevObject_OutsideTheListAreNull)
{
    auto owner = make<TestResponder>();
    TestResponder* a = add(*owner, "a");
    TestResponder* b = add(*owner, "b");

    EXPECT_EQ(owner->next_object(1), nullptr);
    EXPECT_EQ(owner->next_object(-1), nullptr);
    EXPECT_EQ(owner->prev_object(0), nullptr);
    EXPECT_EQ(owner->prev_object(2), nullptr);
    EXPECT_EQ(owner->next_object(0), b);
    EXPECT_EQ(owner->prev_object(1), a);
    EXPECT_EQ(owner->next_object(32767), nullptr);
    EXPECT_EQ(owner->at(-1), nullptr);
    EXPECT_EQ(owner->at(2), nullptr);
}

TEST(GResponderTree, AtInsert_OutsideTheListInsertsAtTheNearerEnd)
{
    auto owner = make<TestResponder>();
    add(*owner, "a");
    add(*owner, "b");

    EXPECT_EQ(owner->at_insert(-5, new TestResponder("x")), 1);
    EXPECT_EQ(owner->at_insert(3, new TestResponder("y")), 1);
    EXPECT_EQ(owner->at_insert(100, new TestResponder("z")), 1);
    EXPECT_EQ(owner->at_insert(1, new TestResponder("w")), 1);

    EXPECT_EQ(order(*owner), "xwabyz");
}

TEST(GResponderTree, AtInsertAtTheCount_AppendsLowerAndHigherPriority)
{
    auto owner = make<TestResponder>();
    add(*owner, "a");

    EXPECT_EQ(owner->at_insert(1, with_priority("h", 0x9000)), 1);

    EXPECT_EQ(order(*owner), "ah");
}

TEST(GResponderTree, InsertByPriority_GoesBehindTheHigherBand)
{
    auto owner = make<TestResponder>();
    owner->insert(with_priority("c", 0x8000));
    owner->insert(with_priority("b", 0x8001));
    owner->insert(with_priority("a", 0x8001));
    ASSERT_EQ(order(*owner), "abc");

    owner->insert(with_priority("x", 0x8000));
    EXPECT_EQ(order(*owner), "abxc");
    owner->insert(with_priority("y", 0x8001));
    EXPECT_EQ(order(*owner), "yabxc");
    owner->insert(with_priority("z", 0x7FFF));
    EXPECT_EQ(order(*owner), "yabxcz");
    owner->insert(with_priority("w", 0xFFFF));  // compared as unsigned
    EXPECT_EQ(order(*owner), "wyabxcz");
}

TEST(GResponderTree, HighPriorityOption_IsThePriorityOfTheHigherBand)
{
    GResponder responder;
    EXPECT_EQ(responder.Priority(), 0x8000);
    responder.set_options(GResponder::option_high_priority, 1);
    EXPECT_EQ(responder.Priority(), 0x8001);
}

TEST(GResponderTree, KeepOrder_GoesWhereItIsTold)
{
    auto owner = make<TestResponder>();
    owner->insert(with_priority("b", 0x9000));
    auto* low = with_priority("a", 0x1000);
    low->set_state(GResponder::state_keep_order, 1);

    EXPECT_EQ(owner->insert_before(low, owner->first()), 1);

    EXPECT_EQ(order(*owner), "ab");
}

TEST(GResponderTree, InsertBeforeTargetOfLowerPriority_IgnoresWhatStandsInFront)
{
    auto owner = make<TestResponder>();
    auto* front = with_priority("a", 0x1000);
    front->set_state(GResponder::state_keep_order, 1);
    owner->insert_before(front, nullptr);
    auto* target = with_priority("b", 0x2000);
    target->set_state(GResponder::state_keep_order, 1);
    owner->insert_before(target, nullptr);

    EXPECT_EQ(owner->insert_before(with_priority("x", 0x2000), target), 1);
    EXPECT_EQ(order(*owner), "axb");
}

TEST(GResponderTree, InsertAfter_NullLastAndMiddle)
{
    auto owner = make<TestResponder>();
    TestResponder* a = add(*owner, "a");
    TestResponder* b = add(*owner, "b");

    EXPECT_EQ(owner->insert_after(new TestResponder("0"), nullptr), 1);
    EXPECT_EQ(owner->insert_after(new TestResponder("1"), a), 1);
    EXPECT_EQ(owner->insert_after(new TestResponder("2"), b), 1);

    EXPECT_EQ(order(*owner), "0a1b2");
}

TEST(GResponderTree, SilentInsertAndRemove_PassByTheOverrides)
{
    auto owner = make<Stubborn>();
    owner->insert(new TestResponder("a"));
    EXPECT_EQ(owner->asked_before, 1);
    EXPECT_TRUE(owner->silent_insert(new TestResponder("b")));
    EXPECT_EQ(owner->asked_before, 1);
    EXPECT_EQ(owner->asked_list, 2);
    owner->lets_go = false;
    GResponder* child = owner->first();
    owner->remove(child);
    EXPECT_EQ(owner->getCount(), 2);
    EXPECT_TRUE(owner->silent_remove(child));
    EXPECT_EQ(owner->getCount(), 1);
    EXPECT_FALSE(owner->silent_remove(child));
    EXPECT_FALSE(owner->silent_remove(nullptr));
    GStreamable::Destroy(child);
}

TEST(GResponderTree, PlusAndMinus_InsertAndRemove)
{
    auto owner = make<TestResponder>();
    auto a = make<TestResponder>("a");
    auto b = make<TestResponder>("b");

    *owner + a.get() + b.get();
    EXPECT_EQ(order(*owner), "ba");
    *owner - a.get() - b.get();
    EXPECT_EQ(owner->getCount(), 0);
    EXPECT_EQ(a->get_owner(), nullptr);
}

TEST(GResponderTree, InsertionAndRemoval_AnnounceInOrder)
{
    Log log;
    auto owner = make<TestResponder>();
    owner->set_state(GResponder::state_exposed, 1);
    auto child = make<TestResponder>("c", &log);
    child->logs_states = true;

    owner->insert(child.get());
    owner->remove(child.get());

    const Log expected = {"c +4", "c +800", "c +1000", "c -800", "c -1000", "c -4"};
    EXPECT_EQ(log, expected);
    EXPECT_EQ(child->get_state(), 1UL);
}

TEST(GResponderTree, RemovedCurrent_StaysCurrent)
{
    auto owner = make<TestResponder>();
    TestResponder* child = add(*owner);
    child->set_options(GResponder::option_selectable, 1);
    owner->set_current(child);

    owner->remove(child);

    EXPECT_EQ(owner->get_current(), child);
    GStreamable::Destroy(child);
    EXPECT_EQ(owner->get_current(), nullptr);  // and goes when it ends
}

TEST(GResponderTree, CurrentChildThatEnds_IsNotCurrentAnyMore)
{
    auto owner = make<TestResponder>();
    TestResponder* child = add(*owner);
    owner->simply_assign_current(child);

    GStreamable::Destroy(child);

    EXPECT_EQ(owner->get_current(), nullptr);
    EXPECT_EQ(owner->topmost(), owner.get());
}

TEST(GResponderTree, FormerCurrentAboveItsFormerOwner_MakesNoCircle)
{
    auto top = make<TestResponder>();
    TestResponder* child = add(*top);
    top->simply_assign_current(child);
    top->remove(child);
    ASSERT_EQ(top->get_current(), child);

    child->insert(top.release());
    child->simply_assign_current(child->first());

    EXPECT_EQ(child->topmost(), child->first());
    EXPECT_EQ(child->first()->get_current(), nullptr);
    GEvent event = event_of(kBroadcast);
    EXPECT_EQ(GResponder::Message(child, event), nullptr);
    GStreamable::Destroy(child);
}

TEST(GResponderTree, MakeFirst_AtTheFrontOrBehindAHigherBand_ChangesNothing)
{
    auto owner = make<TestResponder>();
    auto* high = with_priority("h", 0x9000);
    owner->insert(high);
    TestResponder* low = add(*owner, "l");

    EXPECT_EQ(high->makeFirst(), 0);
    EXPECT_EQ(low->makeFirst(), 0);
    EXPECT_EQ(owner->makeFirst(), 0);

    EXPECT_EQ(order(*owner), "hl");
}

TEST(GResponderTree, MakeFirst_GoesToTheFrontOfItsBandUnannounced)
{
    Log log;
    auto owner = make<TestResponder>();
    owner->insert(with_priority("h", 0x9000));
    add(*owner, "a");
    TestResponder* b = add(*owner, "b", &log);
    b->logs_states = true;

    EXPECT_EQ(b->makeFirst(), 1);

    EXPECT_EQ(order(*owner), "hba");
    EXPECT_TRUE(log.empty());
    EXPECT_TRUE(b->is_shown());
    EXPECT_EQ(b->get_owner(), owner.get());
}

TEST(GResponderTree, MakeFirst_HiddenStaysHidden)
{
    auto owner = make<TestResponder>();
    add(*owner, "a");
    TestResponder* b = add(*owner, "b");
    b->set_state(GResponder::state_shown, 0);

    EXPECT_EQ(b->makeFirst(), 1);

    EXPECT_EQ(order(*owner), "ba");
    EXPECT_FALSE(b->is_shown());
}

TEST(GResponderTree, MakeFirst_RefusedByTheOwner_StaysWhereItWas)
{
    auto owner = make<Stubborn>();
    add(*owner, "a");
    TestResponder* b = add(*owner, "b");
    add(*owner, "c");
    owner->takes = false;

    EXPECT_EQ(b->makeFirst(), 1);

    EXPECT_EQ(order(*owner), "abc");
    EXPECT_EQ(b->get_owner(), owner.get());
}

TEST(GResponderTree, SetCurrentOfHiddenOrUnselectable_ChangesNothing)
{
    auto owner = make<TestResponder>();
    TestResponder* good = add(*owner);
    good->set_options(GResponder::option_selectable, 1);
    TestResponder* hidden = add(*owner);
    hidden->set_options(GResponder::option_selectable, 1);
    hidden->set_state(GResponder::state_shown, 0);
    TestResponder* unselectable = add(*owner);
    owner->set_current(good);

    owner->set_current(hidden);
    owner->set_current(unselectable);

    EXPECT_EQ(owner->get_current(), good);
    EXPECT_TRUE(good->get_state(GResponder::state_selected));
}

TEST(GResponderTree, SetCurrentNull_LeavesNoneSelected)
{
    auto owner = make<TestResponder>();
    TestResponder* child = add(*owner);
    child->set_options(GResponder::option_selectable, 1);
    owner->set_current(child);

    owner->set_current(nullptr);

    EXPECT_EQ(owner->get_current(), nullptr);
    EXPECT_FALSE(child->get_state(GResponder::state_selected));
}

TEST(GResponderTree, SetCurrent_OrderOfFocusAndSelection)
{
    Log log;
    auto owner = make<TestResponder>();
    TestResponder* a = add(*owner, "a", &log);
    TestResponder* b = add(*owner, "b", &log);
    for (TestResponder* child : {a, b}) {
        child->set_options(GResponder::option_selectable, 1);
        child->logs_states = true;
    }
    owner->set_state(GResponder::state_focused, 1);
    owner->set_current(a);
    log.clear();

    owner->set_current(b);

    const Log expected = {"a -40", "a -20", "b +20", "b +40"};
    EXPECT_EQ(log, expected);
}

TEST(GResponderTree, SetCurrent_UnfocusedOwnerFocusesNobody)
{
    auto owner = make<TestResponder>();
    TestResponder* a = add(*owner);
    a->set_options(GResponder::option_selectable, 1);

    owner->set_current(a);

    EXPECT_FALSE(a->get_state(GResponder::state_focused));
}

TEST(GResponderTree, SimplyAssignCurrent_TakesChildrenAndNullOnly)
{
    Log log;
    auto owner = make<TestResponder>();
    TestResponder* child = add(*owner, "c", &log);
    child->logs_states = true;
    auto foreign = make<TestResponder>();

    owner->simply_assign_current(child);
    EXPECT_EQ(owner->get_current(), child);
    owner->simply_assign_current(foreign.get());
    EXPECT_EQ(owner->get_current(), child);
    owner->simply_assign_current(nullptr);
    EXPECT_EQ(owner->get_current(), nullptr);
    EXPECT_TRUE(log.empty());
}

TEST(GResponderTree, ResetCurrent_TakesTheFirstShownAndSelectable)
{
    auto owner = make<TestResponder>();
    add(*owner, "a");
    TestResponder* b = add(*owner, "b");
    TestResponder* c = add(*owner, "c");
    b->set_options(GResponder::option_selectable, 1);
    c->set_options(GResponder::option_selectable, 1);
    b->set_state(GResponder::state_shown, 0);

    owner->reset_current();
    EXPECT_EQ(owner->get_current(), c);
    c->set_options(GResponder::option_selectable, 0);
    owner->reset_current();
    EXPECT_EQ(owner->get_current(), nullptr);
}

TEST(GResponderTree, Topmost_FollowsTheCurrentChildren)
{
    auto top = make<TestResponder>();
    TestResponder* middle = add(*top);
    TestResponder* low = add(*middle);
    top->simply_assign_current(middle);
    middle->simply_assign_current(low);

    EXPECT_EQ(top->topmost(), low);
    EXPECT_EQ(low->topmost(), low);
}

TEST(GResponderTree, FirstThatAndFirstMatch_RunInOppositeDirections)
{
    auto owner = make<TestResponder>();
    TestResponder* a = add(*owner, "a");
    TestResponder* b = add(*owner, "b");
    const auto any = [](GResponder*, void* argument) -> unsigned char {
        ++*static_cast<int*>(argument);
        return 1;
    };
    int calls = 0;

    EXPECT_EQ(owner->first_that(any, &calls), b);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(owner->first_match(GResponder::state_shown, 0), a);
    EXPECT_EQ(owner->first_match(GResponder::state_shown, GResponder::option_selectable), nullptr);
    b->set_options(GResponder::option_selectable | GResponder::option_to_front, 1);
    EXPECT_EQ(owner->first_match(GResponder::state_shown, GResponder::option_selectable), b);
}

TEST(GResponderTree, FindSubObjectNull_IsTheFirstWithoutALabel)
{
    auto top = make<TestResponder>("t");
    top->set_label("top");
    TestResponder* a = add(*top, "a");
    a->set_label("a");
    TestResponder* b = add(*a, "b");
    add(*top, "c");

    EXPECT_EQ(top->find_sub_object(nullptr), b);
    b->set_label("b");
    EXPECT_EQ(top->find_sub_object(nullptr), top->at(1));
}

TEST(GResponderTree, FindSubObject_DepthFirstByteByByte)
{
    auto top = make<TestResponder>();
    TestResponder* a = add(*top);
    TestResponder* below = add(*a);
    TestResponder* b = add(*top);
    below->set_label("x");
    b->set_label("x");

    EXPECT_EQ(top->find_sub_object("x"), below);
    EXPECT_EQ(top->find_sub_object("X"), nullptr);
    EXPECT_EQ(top->find_sub_object(""), nullptr);
    top->set_label("x");
    EXPECT_EQ(top->find_sub_object("x"), top.get());
}

TEST(GResponderTree, SetLabel_CopiesAlsoItsOwn)
{
    GResponder responder;
    char text[] = "name";
    responder.set_label(text);
    text[0] = 'g';
    EXPECT_STREQ(responder.get_label(), "name");
    responder.set_label(responder.get_label() + 1);
    EXPECT_STREQ(responder.get_label(), "ame");
    responder.set_label(nullptr);
    EXPECT_EQ(responder.get_label(), nullptr);
}

TEST(GResponderTree, RearrangeTowardTheFront_MovesBeforeTheTarget)
{
    auto owner = make<TestResponder>();
    for (const char* name : {"a", "b", "c", "d"})
        add(*owner, name);

    owner->rearrange(owner->at(3), owner->at(1));
    EXPECT_EQ(order(*owner), "adbc");
    owner->rearrange(owner->at(2), nullptr);
    EXPECT_EQ(order(*owner), "badc");
    owner->rearrange(owner->at(1), owner->at(1));
    EXPECT_EQ(order(*owner), "badc");
}

TEST(GResponderTree, RearrangeOfForeign_DoesNothing)
{
    auto owner = make<TestResponder>();
    add(*owner, "a");
    add(*owner, "b");
    auto foreign = make<TestResponder>();

    owner->rearrange(foreign.get(), owner->first());
    owner->rearrange(owner->at(1), foreign.get());
    owner->rearrange(nullptr, owner->first());

    EXPECT_EQ(order(*owner), "ab");
}

TEST(GResponderTree, RearrangeTowardTheBack_OverwritesAndStaysInsideTheList)
{
    auto owner = make<TestResponder>();
    for (const char* name : {"a", "b", "c", "d", "e"})
        add(*owner, name);
    TestResponder* a = static_cast<TestResponder*>(owner->at(0));
    Ended<TestResponder> b(static_cast<TestResponder*>(owner->at(1)));

    // One entry moves down to the target's place, and then `a` is stored over it.
    owner->rearrange(a, b.get());
    EXPECT_EQ(order(*owner), "aacde");
    EXPECT_EQ(b->get_owner(), nullptr);
    EXPECT_EQ(a->get_owner(), owner.get());

    // Both places of a double go with one removal.
    owner->remove(a);
    EXPECT_EQ(order(*owner), "cde");
    EXPECT_EQ(a->get_owner(), nullptr);
    GStreamable::Destroy(a);
}

TEST(GResponderTree, RearrangeToTheVeryBack_MovesOnlyWhatLiesInTheList)
{
    auto owner = make<TestResponder>();
    for (const char* name : {"a", "b", "c", "d"})
        add(*owner, name);
    TestResponder* b = static_cast<TestResponder*>(owner->at(1));
    Ended<TestResponder> d(static_cast<TestResponder*>(owner->at(3)));

    owner->rearrange(b, d.get());

    EXPECT_EQ(order(*owner), "abcb");
    EXPECT_EQ(d->get_owner(), nullptr);
    owner->destroy_all();
    EXPECT_EQ(owner->getCount(), 0);
}

TEST(GResponderTree, RearrangeByThreeTowardTheBack_ShiftsTheTailDown)
{
    auto owner = make<TestResponder>();
    for (const char* name : {"a", "b", "c", "d", "e", "f", "g"})
        add(*owner, name);
    Ended<TestResponder> e(static_cast<TestResponder*>(owner->at(4)));
    Ended<TestResponder> f(static_cast<TestResponder*>(owner->at(5)));

    // From 1 to 4: min(3, 2) entries behind the target, "fg", move one place down over "ef", and
    // then `b` is stored at 4.
    owner->rearrange(owner->at(1), owner->at(4));

    EXPECT_EQ(order(*owner), "abcdbgg");
    EXPECT_EQ(e->get_owner(), nullptr);
    EXPECT_EQ(f->get_owner(), nullptr);
    owner->destroy_all();
}

TEST(GResponderTree, Sort_OrdersAndResetsTheCurrentChild)
{
    auto owner = make<TestResponder>();
    for (const char* name : {"d", "b", "e", "a", "c"})
        add(*owner, name)->set_options(GResponder::option_selectable, 1);

    owner->sort(by_name);

    EXPECT_EQ(order(*owner), "abcde");
    EXPECT_EQ(owner->get_current(), owner->first());
}

TEST(GResponderTree, DestroyAll_EndsTheChildrenFirstChildFirst)
{
    Log log;
    auto owner = make<TestResponder>("o");
    TestResponder* a = add(*owner, "a", &log);
    add(*owner, "b", &log);
    add(*a, "a1", &log);
    add(*a, "a2", &log);
    const int alive = TestResponder::alive;

    owner->destroy_all();

    const Log expected = {"a ends", "a1 ends", "a2 ends", "b ends"};
    EXPECT_EQ(log, expected);
    EXPECT_EQ(owner->getCount(), 0);
    EXPECT_EQ(TestResponder::alive, alive - 4);
}

TEST(GResponderTree, DestroyAll_WhileFreeingIsDeferred_EmptiesTheListAtOnce)
{
    SuspendedDestruction::Enable(1);
    auto owner = make<TestResponder>("o");
    add(*owner);
    add(*owner);
    const int alive = TestResponder::alive;

    owner->destroy_all();

    EXPECT_EQ(owner->getCount(), 0);
    EXPECT_EQ(TestResponder::alive, alive);
    SuspendedDestruction::Enable(0);
    EXPECT_EQ(TestResponder::alive, alive - 2);
}

TEST(GResponderTree, DestroyAll_OfAnOwnerThatLetsNobodyGo_Ends)
{
    auto owner = make<Stubborn>();
    add(*owner);
    add(*owner);
    owner->lets_go = false;
    const int alive = TestResponder::alive;

    owner->destroy_all();

    EXPECT_EQ(owner->getCount(), 0);
    EXPECT_EQ(TestResponder::alive, alive - 2);
}

TEST(GResponderTree, DestroyedChild_LeavesItsOwner)
{
    auto owner = make<TestResponder>();
    TestResponder* child = add(*owner, "a");
    add(*owner, "b");
    TGPointer<TestResponder> pointer(child);

    GStreamable::destroy(child);

    EXPECT_EQ(order(*owner), "b");
    EXPECT_EQ(pointer.get(), nullptr);
}

TEST(GResponderTree, ShutDown_LeavesTheObjectAlive)
{
    Log log;
    auto owner = make<TestResponder>();
    TestResponder* child = add(*owner, "c", &log);
    child->attach(new TestBehaviour("b", &log));
    add(*child, "g", &log);
    child->notify_when_modified(owner.get(), kBroadcast, 1);
    log.clear();

    child->shut_down();

    const Log expected = {"c ends", "g ends", "b detached"};
    EXPECT_EQ(log, expected);
    EXPECT_EQ(child->get_owner(), nullptr);
    EXPECT_EQ(child->getCount(), 0);
    EXPECT_EQ(child->get_behaviours(), nullptr);
    EXPECT_EQ(owner->getCount(), 0);
    delete child;
}

TEST(GResponderTree, DeletedWithoutShutDown_LeavesNoPointerInTheTree)
{
    auto owner = make<TestResponder>();
    auto* middle = new TestResponder("m");
    owner->insert(middle);
    Ended<TestResponder> low(add(*middle));

    delete middle;

    EXPECT_EQ(owner->getCount(), 0);
    EXPECT_EQ(low->get_owner(), nullptr);
}
