#include "graphics/PaletteCollection.h"
#include "responder/PaletteIndexIsAbsent_Exception.h"
#include "tests/responder/TestResponders.h"

#include <gtest/gtest.h>

namespace {

constexpr RGB_Color kRed(255, 0, 0);
constexpr RGB_Color kBlue(0, 0, 255);

/// Halves the colours, and has a default of its own.
class Shaded : public GResponder {
public:
    RGB_Color get_color(RGB_Color color) override
    {
        return {static_cast<unsigned char>(color.red / 2),
                static_cast<unsigned char>(color.green / 2),
                static_cast<unsigned char>(color.blue / 2)};
    }
    RGB_Color get_default_color(long index) override
    {
        return {static_cast<unsigned char>(index), 100, 200};
    }
};

/// o (exposed, visible) with children a, b, c that log their states.
struct Family {
    Family()
    {
        owner.set_state(GResponder::state_exposed, 1);
        for (TestResponder** child : {&a, &b, &c}) {
            *child = add(owner, child == &a ? "a" : child == &b ? "b" : "c", &log);
            (*child)->logs_states = true;
        }
        log.clear();
    }
    ~Family() { owner.destroy_all(); }
    Family(const Family&) = delete;
    Family& operator=(const Family&) = delete;
    Log log;
    TestResponder owner{"o", &log};
    TestResponder* a = nullptr;
    TestResponder* b = nullptr;
    TestResponder* c = nullptr;
};

}  // namespace

TEST(State, New_IsShownAndNotVisible)
{
    GResponder responder;

    EXPECT_EQ(responder.get_state(), 0x1UL);
    EXPECT_TRUE(responder.is_shown());
    EXPECT_FALSE(responder.is_visible());
    EXPECT_FALSE(responder.is_disabled());
    EXPECT_FALSE(responder.exposed());
    EXPECT_FALSE(responder.is_exposed());
    EXPECT_TRUE(responder.get_state(0x1));
    EXPECT_FALSE(responder.get_state(0x101));
}

TEST(State, InsertedIntoAVisibleOwner_IsExposedAndVisibleUntilRemoved)
{
    TestResponder owner;
    owner.set_state(GResponder::state_exposed, 1);
    ASSERT_TRUE(owner.is_visible());
    auto child = make<TestResponder>();
    add(*child);

    owner.insert(child.get());
    EXPECT_EQ(child->get_state(), 0x1805UL);
    EXPECT_EQ(child->first()->get_state(), 0x1805UL);
    owner.remove(child.get());
    EXPECT_EQ(child->get_state(), 0x1UL);
    EXPECT_EQ(child->first()->get_state(), 0x5UL);
}

TEST(State, HiddenChildInAVisibleOwner_IsExposedOnly)
{
    TestResponder owner;
    owner.set_state(GResponder::state_exposed, 1);
    auto child = make<TestResponder>();
    child->set_state(GResponder::state_shown, 0);
    owner.insert(child.get());

    EXPECT_TRUE(child->exposed());
    EXPECT_FALSE(child->is_visible());
    child->set_state(GResponder::state_shown, 1);
    EXPECT_TRUE(child->is_visible());
}

TEST(State, Hiding_ClearsTheVisibleBitBelowWhereShown)
{
    TestResponder owner;
    owner.set_state(GResponder::state_exposed, 1);
    TestResponder* child = add(owner);
    TestResponder* shown = add(*child);
    TestResponder* hidden = add(*child);
    hidden->set_state(GResponder::state_shown, 0);
    ASSERT_TRUE(shown->is_visible());

    owner.set_state(GResponder::state_shown, 0);

    EXPECT_FALSE(owner.is_visible());
    EXPECT_FALSE(child->is_visible());
    EXPECT_FALSE(shown->is_visible());
    owner.set_state(GResponder::state_shown, 1);
    EXPECT_TRUE(shown->is_visible());
    EXPECT_FALSE(hidden->is_visible());
    owner.destroy_all();
}

TEST(State, Disabling_ReachesTheWholeSubtreeBothWays)
{
    TestResponder owner;
    TestResponder* child = add(owner);
    TestResponder* below = add(*child);
    below->set_state(GResponder::state_disabled, 1);

    owner.set_state(GResponder::state_disabled, 1);
    EXPECT_TRUE(child->is_disabled());
    owner.set_state(GResponder::state_disabled, 0);
    EXPECT_FALSE(child->is_disabled());
    EXPECT_FALSE(below->is_disabled());
    owner.destroy_all();
}

TEST(State, Focus_ReachesOnlyTheCurrentChildren)
{
    TestResponder owner;
    TestResponder* a = add(owner);
    TestResponder* b = add(owner);
    TestResponder* below = add(*b);
    owner.simply_assign_current(b);
    b->simply_assign_current(below);

    owner.set_state(GResponder::state_focused, 1);

    EXPECT_FALSE(a->get_state(GResponder::state_focused));
    EXPECT_TRUE(b->get_state(GResponder::state_focused));
    EXPECT_TRUE(below->get_state(GResponder::state_focused));
    owner.set_state(GResponder::state_focused, 0);
    EXPECT_FALSE(below->get_state(GResponder::state_focused));
    owner.destroy_all();
}

TEST(State, IdleWhenExposed_IsRegisteredExactlyWhileExposed)
{
    Log log;
    TestResponder owner;
    auto child = make<TestResponder>("c", &log);
    child->set_options(GResponder::option_idle_when_exposed, 1);
    owner.insert(child.get());
    EXPECT_FALSE(child->allow_idle());

    owner.set_state(GResponder::state_exposed, 1);
    EXPECT_TRUE(child->allow_idle());
    GIdler::CallAllIdleFunctions();
    EXPECT_EQ(log, Log{"c idle"});
    child->set_state(GResponder::state_exposed, 1);
    owner.remove(child.get());
    EXPECT_FALSE(child->allow_idle());
}

TEST(State, Inherited_PassesTheWholeOfTheBitsFromTheLastChild)
{
    Family family;
    family.owner.set_state(GResponder::state_disabled | 0x400, 1);

    const Log expected = {"c +500", "b +500", "a +500"};
    EXPECT_EQ(family.log, expected);
    EXPECT_TRUE(family.a->get_state(0x500));
}

TEST(State, EachInheritedBit_Spreads)
{
    for (const unsigned long bit : {0x8UL, 0x10UL, 0x80UL, 0x100UL}) {
        Family family;
        family.owner.set_state(bit, 1);
        EXPECT_TRUE(family.b->get_state(bit)) << bit;
        family.owner.set_state(bit, 0);
        EXPECT_FALSE(family.b->get_state(bit)) << bit;
    }
    for (const unsigned long bit : {0x1UL, 0x4UL, 0x20UL, 0x200UL, 0x400UL, 0x10000UL}) {
        Family family;
        family.owner.set_state(bit, 1);
        family.log.clear();
        family.owner.set_state(bit, 1);
        EXPECT_TRUE(family.log.empty()) << bit;
    }
}

TEST(State, Exposing_GoesToChildrenThatDiffer)
{
    Family family;
    family.owner.set_state(GResponder::state_exposed, 0);
    // The owner's own visibility goes first and takes that of the children with it.
    const Log first = {"c -1000", "b -1000", "a -1000", "c -800", "b -800", "a -800"};
    EXPECT_EQ(family.log, first);
    family.b->set_state(GResponder::state_exposed, 1);
    family.log.clear();

    family.owner.set_state(GResponder::state_exposed, 1);

    // `b` differs no more and is only made visible with the others.
    const Log expected = {"c +1000", "b +1000", "a +1000", "c +800", "a +800"};
    EXPECT_EQ(family.log, expected);
}

TEST(State, InheritedAndExposedTogether_ReachChildrenOnce)
{
    Family family;
    family.owner.set_state(GResponder::state_exposed, 0);
    family.log.clear();

    family.owner.set_state(GResponder::state_exposed | GResponder::state_disabled, 1);

    const Log expected = {"c +1000", "b +1000", "a +1000", "c +900", "b +900", "a +900"};
    EXPECT_EQ(family.log, expected);
    EXPECT_EQ(family.a->get_state(), 0x1905UL);
}

TEST(State, Visible_BringsTheInherited10InLine)
{
    Family family;
    family.a->set_state(GResponder::state_shown, 0);
    family.owner.set_state(GResponder::state_inherited_10, 1);
    family.a->set_state(GResponder::state_inherited_10, 0);
    family.log.clear();

    family.a->set_state(GResponder::state_shown, 1);

    const Log expected = {"a +1", "a +1000", "a +10"};
    EXPECT_EQ(family.log, expected);
    EXPECT_TRUE(family.a->get_state(GResponder::state_inherited_10));
}

TEST(State, SiblingsRemovedOnTheWay_ArePassedOver)
{
    class Removing : public GResponder {
    public:
        void set_state(unsigned long bits, unsigned char on) override
        {
            GResponder::set_state(bits, on);
            while (bits == state_disabled && get_owner() != nullptr && get_owner()->getCount() > 1)
                GStreamable::Destroy(get_owner()->first() != this ? get_owner()->first()
                                                                  : get_owner()->last());
        }
    };
    GResponder owner;
    for (int number = 0; number < 9; ++number)
        owner.insert(new GResponder);
    owner.insert_before(new Removing, nullptr);

    owner.set_state(GResponder::state_disabled, 1);

    EXPECT_EQ(owner.getCount(), 1);
    owner.destroy_all();
}

TEST(State, BitsAbove32_AreDropped)
{
    GResponder responder;
    responder.set_state(~0UL, 1);
    EXPECT_EQ(responder.get_state(), 0xFFFFFFFFUL);
    responder.set_options(~0UL, 1);
    EXPECT_EQ(responder.get_options(), 0xFFFFFFFFUL);
    responder.set_options(0xFFUL, 0);
    EXPECT_EQ(responder.get_options(), 0xFFFFFF00UL);
    responder.allow_idle(false);
}

TEST(Select, MovesToTheFrontAndBecomesCurrent)
{
    TestResponder owner;
    add(owner, "a");
    TestResponder* b = add(owner, "b");
    b->set_options(GResponder::option_selectable | GResponder::option_to_front, 1);

    b->select();

    EXPECT_EQ(owner.first(), b);
    EXPECT_EQ(owner.get_current(), b);
    owner.destroy_all();
}

TEST(SelectNext, SingleSelectable_SelectsItAgain)
{
    class Counting : public GResponder {
    public:
        void select() override
        {
            ++selected;
            GResponder::select();
        }
        int selected = 0;
    };
    GResponder owner;
    auto* only = new Counting;
    only->set_options(GResponder::option_selectable, 1);
    owner.insert(only);
    owner.insert(new GResponder);
    owner.set_current(only);

    owner.select_next(1);
    owner.select_next(0);

    EXPECT_EQ(only->selected, 2);
    EXPECT_EQ(owner.get_current(), only);
    owner.destroy_all();
}

TEST(SelectNext, PassesOverHiddenDisabledAndUnselectable)
{
    TestResponder owner;
    TestResponder* all[6];
    for (TestResponder*& child : all) {
        child = add(owner);
        child->set_options(GResponder::option_selectable, 1);
    }
    all[1]->set_state(GResponder::state_shown, 0);
    all[2]->set_state(GResponder::state_disabled, 1);
    all[3]->set_options(GResponder::option_selectable, 0);
    owner.set_current(all[0]);

    owner.select_next(1);
    EXPECT_EQ(owner.get_current(), all[4]);
    owner.select_next(0);
    EXPECT_EQ(owner.get_current(), all[0]);
    owner.select_next(0);
    EXPECT_EQ(owner.get_current(), all[5]);  // round the list
    owner.destroy_all();
}

TEST(SelectNext, WithoutACurrentChild_DoesNothing)
{
    TestResponder owner;
    auto child = make<TestResponder>();
    child->set_options(GResponder::option_selectable, 1);
    owner.insert(child.get());
    owner.select_next(1);
    EXPECT_EQ(owner.get_current(), nullptr);

    owner.set_current(child.get());
    owner.remove(child.get());
    owner.select_next(1);
    EXPECT_EQ(owner.get_current(), child.get());
}

TEST(Regime, RefusingGrandchild_ChangesNothingAnywhere)
{
    TestResponder owner;
    TestResponder* child = add(owner);
    TestResponder* below = add(*child);
    below->is_valid = 0;

    EXPECT_FALSE(owner.change_regime(7));

    EXPECT_EQ(owner.get_regime(), 0UL);
    EXPECT_EQ(child->get_regime(), 0UL);
    EXPECT_EQ(below->get_regime(), 0UL);
    below->is_valid = 1;
    EXPECT_TRUE(owner.change_regime(7));
    EXPECT_EQ(below->get_regime(), 7UL);
    owner.destroy_all();
}

TEST(Regime, Change_PollsForwardsAndSetsBackwards)
{
    Log log;
    TestResponder owner("o", &log);
    add(owner, "a", &log);
    add(owner, "b", &log);
    owner.logs_regimes = true;
    for (short index = 0; index < 2; ++index)
        static_cast<TestResponder*>(owner.at(index))->logs_regimes = true;

    EXPECT_TRUE(owner.change_regime(1));

    const Log expected = {"o valid", "a valid", "b valid", "o regime", "b regime", "a regime"};
    EXPECT_EQ(log, expected);
    owner.destroy_all();
}

TEST(Palette, NoEntriesAnywhere_RootsDefaultThroughTheChildsColour)
{
    Shaded root;
    auto* child = new Shaded;
    root.insert(child);
    auto* plain = new GResponder;
    root.insert(plain);

    EXPECT_EQ(child->get_pal(40), RGB_Color(20, 50, 100));
    EXPECT_EQ(plain->get_pal(40), RGB_Color(40, 100, 200));
    EXPECT_EQ(GResponder().get_pal(3), RGB_Color(0, 0, 0));
    root.destroy_all();
}

TEST(Palette, NearestEntryTowardTheRoot_Counts)
{
    GResponder root;
    auto* child = new GResponder;
    root.insert(child);
    root.set_palette_entry(5, kRed);
    EXPECT_EQ(child->get_pal(5), kRed);
    child->set_palette_entry(5, kBlue);
    EXPECT_EQ(child->get_pal(5), kBlue);
    child->set_palette_entry(5, RGB_Color(1, 2, 3));
    EXPECT_EQ(child->get_palette()->count, 1);
    child->remove_palette_entry(5);
    EXPECT_EQ(child->get_pal(5), kRed);
    child->remove_palette_entry(5);
    root.remove_palette_entry(-9);
    GResponder().remove_palette_entry(1);
    EXPECT_EQ(root.get_pal(6), RGB_Color());
    root.set_palette_entry(-1, kBlue);
    EXPECT_EQ(child->get_palette_entry(-1), kBlue);
    root.destroy_all();
}

TEST(Palette, SetPalette_TakesItOverAlsoItsOwn)
{
    GResponder responder;
    EXPECT_EQ(responder.get_palette(), nullptr);
    auto* palette = new PaletteCollection;
    palette->add_entry(1, kRed);
    responder.set_palette(palette);
    responder.set_palette(responder.get_palette());
    EXPECT_EQ(responder.get_pal(1), kRed);
    responder.set_palette(nullptr);
    EXPECT_EQ(responder.get_palette(), nullptr);
}

TEST(Palette, AbsentIndexException_NamesTheIndex)
{
    const PaletteIndexIsAbsent_Exception absent(-12);

    EXPECT_STREQ(absent.what(), "Palette index #-12 is absent");
    const GLibraryException& base = absent;
    EXPECT_STREQ(base.what(), absent.what());
}

TEST(Palette, ParentColourFlags_AreKept)
{
    GResponder responder;
    EXPECT_FALSE(responder.use_parent_color());
    EXPECT_FALSE(responder.use_parent_select_color());
    responder.set_use_parent_color(true);
    EXPECT_TRUE(responder.use_parent_color());
    EXPECT_FALSE(responder.use_parent_select_color());
    responder.set_use_parent_select_color(true);
    EXPECT_TRUE(responder.use_parent_select_color());
}
