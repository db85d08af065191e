#include "foundation/SuspendedDestruction.h"
#include "tests/responder/TestResponders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

namespace {

GResponder* send(GResponder* receiver, GEvent::GEventType what)
{
    GEvent event = event_of(what);
    return GResponder::Message(receiver, event);
}

/// A press on a responder that wants to be selected.
Ended<TestResponder> selectable(Log* log = nullptr)
{
    auto responder = make<TestResponder>("r", log);
    responder->set_options(GResponder::option_selectable, 1);
    return responder;
}

}  // namespace

TEST(Message, NullReceiver_ReturnsNullAndLeavesTheEvent)
{
    GEvent event = event_of(kBroadcast);
    GResponder other;
    event.cleared_by = &other;

    EXPECT_EQ(GResponder::Message(nullptr, event), nullptr);

    EXPECT_EQ(event.what, kBroadcast);
    EXPECT_EQ(event.cleared_by, &other);
    EXPECT_EQ(GResponder::Message(nullptr, kBroadcast, 1, 2), nullptr);
    EXPECT_EQ(GResponder::Message(nullptr, kBroadcast, 1, nullptr), nullptr);
}

TEST(Message, PressOnDisabled_ReachesNobodyAndStaysAsItWas)
{
    Log log;
    auto responder = selectable(&log);
    responder->attach(new TestBehaviour("b", &log));
    responder->set_state(GResponder::state_disabled, 1);
    log.clear();
    GEvent event = event_of(GEvent::event_mouse_press);

    EXPECT_EQ(GResponder::Message(responder.get(), event), nullptr);

    EXPECT_EQ(event.what, GEvent::event_mouse_press);
    EXPECT_TRUE(log.empty());
}

TEST(Message, EveryInputKindOnDisabled_IsRefused)
{
    Log log;
    auto responder = make<TestResponder>("r", &log);
    responder->set_state(GResponder::state_disabled, 1);
    for (const std::uint32_t bit : {0x1U, 0x2U, 0x40U, 0x80U, 0x100U, 0x200U})
        send(responder.get(), static_cast<GEvent::GEventType>(bit));
    EXPECT_TRUE(log.empty());
    for (const std::uint32_t bit : {0x4U, 0x8U, 0x10U, 0x20U, 0x400U, 0x800U, 0x80000000U})
        send(responder.get(), static_cast<GEvent::GEventType>(bit));
    EXPECT_EQ(log.size(), 7U);
}

TEST(Message, BroadcastToDisabled_IsDeliveredAndGoesOn)
{
    Log log;
    auto responder = make<TestResponder>("r", &log);
    add(*responder, "c", &log);
    responder->set_state(GResponder::state_disabled, 1);

    send(responder.get(), kBroadcast);

    const Log expected = {"r event 10", "c event 10"};
    EXPECT_EQ(log, expected);
}

TEST(Message, UncancellableKind_IsSeenByAllAndNeverCleared)
{
    Log log;
    auto responder = make<TestResponder>("r", &log);
    TestResponder* a = add(*responder, "a", &log);
    add(*responder, "b", &log);
    a->on_event = [a](GEvent& event) { a->clear_event(event); };

    EXPECT_EQ(send(responder.get(), GEvent::event_uncancellable), nullptr);

    EXPECT_EQ(log.size(), 3U);
}

TEST(Message, UncancellableBitBesideAnother_IsCleared)
{
    TestResponder responder;
    GEvent event = event_of(static_cast<GEvent::GEventType>(0x810));

    responder.clear_event(event);

    EXPECT_EQ(event.what, GEvent::event_none);
    EXPECT_EQ(event.cleared_by, &responder);
    TestResponder other;
    other.clear_event(event);
    EXPECT_EQ(event.cleared_by, &responder);
}

TEST(Message, AlreadyCleared_GivesBackWhoClearedIt)
{
    Log log;
    TestResponder responder("r", &log);
    TestResponder other;
    GEvent event;
    event.cleared_by = &other;

    EXPECT_EQ(GResponder::Message(&responder, event), &other);
    EXPECT_TRUE(log.empty());
}

TEST(Message, Press_SelectsAndIsConsumed)
{
    auto responder = selectable();
    TestResponder owner;
    owner.insert(responder.get());

    EXPECT_EQ(send(responder.get(), GEvent::event_mouse_press), responder.get());

    EXPECT_EQ(owner.get_current(), responder.get());
    EXPECT_TRUE(responder->get_state(GResponder::state_selected));
}

TEST(Message, PressOnSelected_IsNotConsumed)
{
    auto responder = selectable();
    responder->set_state(GResponder::state_selected, 1);

    EXPECT_EQ(send(responder.get(), GEvent::event_mouse_press), nullptr);
}

TEST(Message, PressWithPassClick_SelectsAndReturnsNull)
{
    auto responder = selectable();
    responder->set_options(GResponder::option_pass_click, 1);
    TestResponder owner;
    owner.insert(responder.get());

    EXPECT_EQ(send(responder.get(), GEvent::event_mouse_press), nullptr);

    EXPECT_EQ(owner.get_current(), responder.get());
}

TEST(Message, PressOnUnselectable_IsNotConsumed)
{
    TestResponder responder;
    EXPECT_EQ(send(&responder, GEvent::event_mouse_press), nullptr);
    responder.set_options(GResponder::option_to_front, 1);
    EXPECT_EQ(send(&responder, GEvent::event_mouse_press), &responder);
}

TEST(Message, PressWithAnotherBit_SelectsNobody)
{
    auto responder = selectable();
    EXPECT_EQ(send(responder.get(), static_cast<GEvent::GEventType>(0x3)), nullptr);
    EXPECT_EQ(send(responder.get(), kMouseMove), nullptr);
}

TEST(Message, Order_BehavioursThenMouseThenResponderThenAfterBehaviours)
{
    Log log;
    auto responder = make<TestResponder>("r", &log);
    responder->attach(new TestBehaviour("after", &log, GBehaviour::handles_after));
    responder->attach(new TestBehaviour("both", &log, 3));
    responder->attach(new TestBehaviour("before", &log, GBehaviour::handles_before));
    responder->attach(new TestBehaviour("none", &log, 0));
    log.clear();

    send(responder.get(), kMouseMove);

    const Log expected = {"none mouse",   "before mouse", "before event 2", "both mouse",
                          "both event 2", "after mouse",  "r mouse",        "r event 2",
                          "both event 2", "after event 2"};
    EXPECT_EQ(log, expected);
}

TEST(Message, BehaviourWithBothBits_RunsOnceWithoutAnAfterBehaviour)
{
    Log log;
    auto responder = make<TestResponder>("r", &log);
    responder->attach(new TestBehaviour("both", &log, 3));
    log.clear();

    send(responder.get(), kBroadcast);

    const Log expected = {"both event 10", "r event 10"};
    EXPECT_EQ(log, expected);
}

TEST(Message, MouseTakenByABehaviour_SilencesOnlyThatHook)
{
    Log log;
    auto responder = make<TestResponder>("r", &log);
    responder->attach(new TestBehaviour("c", &log));
    auto* taking = new TestBehaviour("b", &log);
    taking->takes_mouse = true;
    responder->attach(taking);
    responder->attach(new TestBehaviour("a", &log));
    log.clear();

    send(responder.get(), kMouseMove);

    const Log expected = {"a mouse", "a event 2", "b mouse", "b event 2", "c event 2", "r event 2"};
    EXPECT_EQ(log, expected);
}

TEST(Message, PressClearedByABehaviour_IsStillHandledByTheResponder)
{
    Log log;
    auto responder = selectable(&log);
    auto* behaviour = new TestBehaviour("b", &log);
    behaviour->on_event = [&](GEvent& event) { responder->clear_event(event); };
    responder->attach(behaviour);
    log.clear();

    EXPECT_EQ(send(responder.get(), GEvent::event_mouse_press), responder.get());

    const Log expected = {"b mouse", "b event 1", "r event 0"};
    EXPECT_EQ(log, expected);
    EXPECT_FALSE(responder->get_state(GResponder::state_selected));
}

TEST(Message, RemovedInHandleEvent_SkipsTheAfterBehaviours)
{
    Log log;
    TestResponder owner;
    auto responder = make<TestResponder>("r", &log);
    owner.insert(responder.get());
    responder->attach(new TestBehaviour("after", &log, GBehaviour::handles_after));
    responder->on_event = [&](GEvent&) { owner.remove(responder.get()); };
    log.clear();

    send(responder.get(), kBroadcast);

    const Log expected = {"r event 10"};
    EXPECT_EQ(log, expected);
}

TEST(Message, WithoutAnOwnerAtTheStart_AfterBehavioursRunInAnyCase)
{
    Log log;
    TestResponder owner;
    auto responder = make<TestResponder>("r", &log);
    responder->attach(new TestBehaviour("after", &log, GBehaviour::handles_after));
    responder->on_event = [&](GEvent&) { owner.insert(responder.get()); };
    log.clear();

    send(responder.get(), kBroadcast);
    responder->on_event = [&](GEvent&) { owner.remove(responder.get()); };
    send(responder.get(), kBroadcast);

    const Log expected = {"r event 10", "after event 10", "r event 10"};
    EXPECT_EQ(log, expected);
}

TEST(Message, OwnerEndsInHandleEvent_SkipsTheAfterBehaviours)
{
    Log log;
    auto* owner = new TestResponder("o");
    auto responder = make<TestResponder>("r", &log);
    owner->insert(responder.get());
    responder->attach(new TestBehaviour("after", &log, GBehaviour::handles_after));
    responder->on_event = [&](GEvent&) { delete owner; };
    log.clear();

    send(responder.get(), kBroadcast);

    EXPECT_EQ(log.size(), 1U);
}

TEST(Message, ResponderEndsInEachHook_NothingMoreIsCalled)
{
    for (const int hook : {0, 1, 2, 3, 4}) {
        Log log;
        TestResponder owner;
        TestResponder* responder = add(owner, "r", &log);
        add(*responder, "child", &log);
        auto* after = new TestBehaviour("after", &log, GBehaviour::handles_after);
        auto* before = new TestBehaviour("before", &log);
        responder->attach(after);
        responder->attach(before);
        const auto end = [&] { GStreamable::destroy(responder); };
        if (hook == 0)
            before->on_mouse = end;
        else if (hook == 1)
            before->on_event = [&](GEvent&) { end(); };
        else if (hook == 2)
            responder->on_mouse = end;
        else if (hook == 3)
            responder->on_event = [&](GEvent&) { end(); };
        else
            after->on_event = [&](GEvent&) { end(); };
        const int behaviours = TestBehaviour::alive;

        EXPECT_EQ(send(responder, static_cast<GEvent::GEventType>(0x2)), nullptr);

        EXPECT_EQ(owner.getCount(), 0);
        EXPECT_EQ(TestBehaviour::alive, behaviours - 2);
        const std::string last = hook == 0   ? "before mouse"
                                 : hook == 1 ? "before event 2"
                                 : hook == 2 ? "r mouse"
                                 : hook == 3 ? "r event 2"
                                             : "after event 2";
        EXPECT_NE(std::find(log.begin(), log.end(), last), log.end()) << hook;
        log.clear();
    }
}

TEST(Message, BehaviourEndsItselfOrItsNeighbours_WalkGoesOn)
{
    for (const int victim : {0, 1, 2}) {
        Log log;
        TestResponder responder("r", &log);
        std::vector<TestBehaviour*> chain(3);
        for (int number = 2; number >= 0; --number) {
            chain[static_cast<unsigned>(number)] =
                new TestBehaviour(std::to_string(number).c_str(), &log);
            responder.attach(chain[static_cast<unsigned>(number)]);
        }
        chain[1]->on_event = [&](GEvent&) {
            GStreamable::destroy(chain[static_cast<unsigned>(victim)]);
        };
        log.clear();

        send(&responder, kBroadcast);

        Log expected = {"0 event 10", "1 event 10"};
        expected.push_back(std::to_string(victim) + " detached");
        if (victim != 2)
            expected.push_back("2 event 10");
        expected.push_back("r event 10");
        EXPECT_EQ(log, expected) << victim;
    }
}

TEST(Message, BehaviourDetachesItselfAndEndsTheNext_WalkGoesOnBehind)
{
    Log log;
    TestResponder responder("r", &log);
    auto* third = new TestBehaviour("3", &log);
    auto* second = new TestBehaviour("2", &log);
    auto first = make<TestBehaviour>("1", &log);
    responder.attach(third);
    responder.attach(second);
    responder.attach(first.get());
    first->on_event = [&](GEvent&) {
        responder.detach(first.get());
        GStreamable::destroy(second);
    };
    log.clear();

    send(&responder, kBroadcast);

    const Log expected = {"1 event 10", "1 detached", "2 detached", "3 event 10", "r event 10"};
    EXPECT_EQ(log, expected);
}

TEST(Message, AllBehavioursEndInAHandler_WalkEndsAndTheResponderHandles)
{
    for (const bool deferred : {false, true}) {
        SuspendedDestruction::Enable(deferred ? 1 : 0);
        Log log;
        TestResponder responder("r", &log);
        responder.attach(new TestBehaviour("2", &log));
        auto* first = new TestBehaviour("1", &log);
        responder.attach(first);
        first->on_event = [&](GEvent&) { responder.destroy_all_behaviours(); };
        log.clear();

        send(&responder, kBroadcast);

        const Log expected = {"1 event 10", "1 detached", "2 detached", "r event 10"};
        EXPECT_EQ(log, expected);
        SuspendedDestruction::Enable(0);
    }
}

TEST(Broadcast, CurrentChildFirst_ThenTheOthersInOrder)
{
    Log log;
    TestResponder owner("o", &log);
    add(owner, "a", &log);
    TestResponder* b = add(owner, "b", &log);
    add(owner, "c", &log);
    owner.simply_assign_current(b);

    send(&owner, kBroadcast);

    const Log expected = {"o event 10", "b event 10", "a event 10", "c event 10"};
    EXPECT_EQ(log, expected);
    owner.destroy_all();
}

TEST(Broadcast, InputKinds_StayOnTheResponder)
{
    Log log;
    TestResponder owner("o", &log);
    add(owner, "a", &log);

    for (const std::uint32_t bit : {0x1U, 0x2U, 0x40U, 0x80U, 0x100U, 0x200U})
        send(&owner, static_cast<GEvent::GEventType>(bit));

    EXPECT_EQ(std::count_if(log.begin(), log.end(),
                            [](const std::string& line) { return line[0] == 'a'; }),
              0);
    owner.destroy_all();
}

TEST(Broadcast, ClearedEvent_GoesToNobodyElse)
{
    Log log;
    TestResponder owner("o", &log);
    TestResponder* a = add(owner, "a", &log);
    add(owner, "b", &log);
    a->on_event = [a](GEvent& event) { a->clear_event(event); };

    EXPECT_EQ(send(&owner, kBroadcast), a);

    const Log expected = {"o event 10", "a event 10"};
    EXPECT_EQ(log, expected);
    owner.destroy_all();
}

TEST(Broadcast, RemovedChildThatIsStillCurrent_IsAskedFirst)
{
    Log log;
    TestResponder owner("o", &log);
    auto a = make<TestResponder>("a", &log);
    owner.insert(a.get());
    add(owner, "b", &log);
    owner.simply_assign_current(a.get());
    owner.remove(a.get());

    send(&owner, kBroadcast);

    const Log expected = {"o event 10", "a event 10", "b event 10"};
    EXPECT_EQ(log, expected);
    owner.destroy_all();
}

TEST(Broadcast, ChildrenAddedAndRemovedOnTheWay_FollowTheLiveList)
{
    Log log;
    TestResponder owner("o", &log);
    TestResponder* a = add(owner, "a", &log);
    TestResponder* b = add(owner, "b", &log);
    add(owner, "c", &log);
    a->on_event = [&](GEvent&) {
        GStreamable::destroy(b);
        add(owner, "d", &log);
    };

    send(&owner, kBroadcast);

    const Log expected = {"o event 10", "a event 10", "b ends", "c event 10", "d event 10"};
    EXPECT_EQ(log, expected);
    owner.destroy_all();
}

TEST(Broadcast, OwnerEndsInAChild_WalkEnds)
{
    Log log;
    auto* owner = new TestResponder("o", &log);
    TestResponder* a = add(*owner, "a", &log);
    add(*owner, "b", &log);
    a->on_event = [&](GEvent&) { GStreamable::destroy(owner); };

    EXPECT_EQ(send(owner, kBroadcast), nullptr);

    const Log expected = {"o event 10", "a event 10", "o ends", "a ends", "b ends"};
    EXPECT_EQ(log, expected);
}

TEST(Broadcast, DisabledChildAndAKindThatBecomesInput_IsRefused)
{
    Log log;
    TestResponder owner("o", &log);
    TestResponder* a = add(owner, "a", &log);
    TestResponder* b = add(owner, "b", &log);
    b->set_state(GResponder::state_disabled, 1);
    a->on_event = [](GEvent& event) { event.what = GEvent::event_key; };

    send(&owner, kBroadcast);

    const Log expected = {"o event 10", "a event 10"};
    EXPECT_EQ(log, expected);
    owner.destroy_all();
}

TEST(Message, Overloads_FillTheWords)
{
    TestResponder responder;
    GEvent seen;
    responder.on_event = [&](GEvent& event) { seen = event; };

    GResponder::message(&responder, kBroadcast, 7, -3L);
    EXPECT_EQ(seen.what, kBroadcast);
    EXPECT_EQ(seen.info_word, 7U);
    EXPECT_EQ(seen.info_long, -3);
    GResponder::Message(&responder, kBroadcast, 0, 0);
    EXPECT_EQ(seen.info_long, 0);
    GResponder::message(&responder, kBroadcast, 0, -1);
    EXPECT_EQ(seen.info_long, -1);
    GResponder::message(&responder, kBroadcast, 1, static_cast<void*>(&responder));
    EXPECT_EQ(seen.info_long, reinterpret_cast<std::intptr_t>(&responder));
    responder.on_event = [&](GEvent& event) { responder.clear_event(event); };
    GEvent event = event_of(kBroadcast);
    EXPECT_EQ(GResponder::message(&responder, event), &responder);
    EXPECT_EQ(GResponder::message(&responder, kBroadcast, 0, nullptr), &responder);
}

TEST(Message, Reentered_ForOtherResponders)
{
    Log log;
    TestResponder inner("i", &log);
    TestResponder outer("o", &log);
    outer.on_event = [&](GEvent&) { send(&inner, kBroadcast); };

    send(&outer, kBroadcast);

    const Log expected = {"o event 10", "i event 10"};
    EXPECT_EQ(log, expected);
}

TEST(Valid, AsksFromFirstToLastAndStopsAtTheFirstRefusal)
{
    Log log;
    TestResponder owner("o", &log);
    for (const char* name : {"a", "b", "c"})
        add(owner, name, &log)->logs_regimes = true;
    static_cast<TestResponder*>(owner.at(1))->is_valid = 0;

    EXPECT_FALSE(owner.valid(1));

    const Log expected = {"a valid", "b valid"};
    EXPECT_EQ(log, expected);
    owner.destroy_all();
}
