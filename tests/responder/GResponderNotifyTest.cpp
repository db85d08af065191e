#include "foundation/GCollection.h"
#include "responder/NotificationLink.h"
#include "tests/responder/TestResponders.h"

#include <gtest/gtest.h>

namespace {

constexpr GEvent::GEventType kOther = static_cast<GEvent::GEventType>(0x20);

long receivers_of(const GResponder& responder)
{
    GCollection out(0, 4, 0);
    responder.get_notification_receivers(out);
    return out.count;
}

}  // namespace

TEST(Notification, SameTripleTwice_TellsOnce)
{
    Log log;
    GResponder sender;
    TestResponder receiver("r", &log);
    sender.notify_when_modified(&receiver, kBroadcast, 5);
    sender.notify_when_modified(&receiver, kBroadcast, 5);

    sender.object_modified();

    const Log expected = {"r event 10"};
    EXPECT_EQ(log, expected);
}

TEST(Notification, TwoKindsAndWords_ComeInTheOrderOfRegistration)
{
    std::vector<std::pair<std::uint32_t, std::uint32_t>> seen;
    GResponder sender;
    TestResponder receiver;
    receiver.on_event = [&](GEvent& event) { seen.emplace_back(event.what, event.info_word); };
    sender.notify_when_modified(&receiver, kOther, 1);
    sender.notify_when_modified(&receiver, kBroadcast, 1);
    sender.notify_when_modified(&receiver, kOther, 2);

    sender.object_modified();

    const std::vector<std::pair<std::uint32_t, std::uint32_t>> expected = {
        {0x20, 1}, {0x10, 1}, {0x20, 2}};
    EXPECT_EQ(seen, expected);
}

TEST(Notification, Event_CarriesTheModifiedResponder)
{
    GEvent seen;
    GResponder sender;
    TestResponder receiver;
    receiver.on_event = [&](GEvent& event) { seen = event; };
    sender.notify_when_modified(&receiver, kBroadcast, 0xFFFFFFFFUL);

    sender.object_modified();

    EXPECT_EQ(seen.info_word, 0xFFFFFFFFU);
    EXPECT_EQ(reinterpret_cast<GResponder*>(seen.info_long), &sender);
}

TEST(Notification, ReceiverThatHasEnded_IsToldNothing)
{
    Log log;
    GResponder sender;
    TestResponder stays("s", &log);
    auto* ends = new TestResponder("e", nullptr);
    sender.notify_when_modified(ends, kBroadcast, 1);
    sender.notify_when_modified(&stays, kBroadcast, 1);
    GStreamable::Destroy(ends);

    sender.object_modified();

    const Log expected = {"s event 10"};
    EXPECT_EQ(log, expected);
    EXPECT_EQ(receivers_of(sender), 1);
}

TEST(Notification, ReceiversOfNoList_LeaveTheCollectionEmpty)
{
    GResponder sender;
    GCollection out(0, 4, 1);
    out.v_insert(new TestBehaviour);
    const int alive = TestBehaviour::alive;

    sender.get_notification_receivers(out);

    EXPECT_EQ(out.count, 0);
    EXPECT_EQ(out.owns_items, 0);
    EXPECT_EQ(TestBehaviour::alive, alive - 1);
}

TEST(Notification, Receivers_AreTheRecordsInOrderAndNotOwned)
{
    GResponder sender;
    GResponder a;
    GResponder b;
    sender.notify_when_modified(&a, kBroadcast, 1);
    sender.notify_when_modified(&b, kOther, 2);
    {
        GCollection out(0, 4, 1);
        sender.get_notification_receivers(out);
        ASSERT_EQ(out.count, 2);
        const auto* second = static_cast<const NotificationLink*>(out.at(1));
        EXPECT_EQ(second->target, &b);
        EXPECT_EQ(second->event_kind, kOther);
        EXPECT_EQ(second->event_word, 2U);
    }
    EXPECT_EQ(receivers_of(sender), 2);
}

TEST(Notification, NullReceiver_IsIgnored)
{
    GResponder sender;
    sender.notify_when_modified(nullptr, kBroadcast, 1);
    sender.cancel_notification(nullptr, kBroadcast, 1);
    sender.object_modified();

    EXPECT_EQ(receivers_of(sender), 0);
}

TEST(Notification, Cancel_TakesTheTripleAndTheDeadOnes)
{
    GResponder sender;
    GResponder a;
    auto* dead = new GResponder;
    sender.notify_when_modified(&a, kBroadcast, 1);
    sender.notify_when_modified(dead, kBroadcast, 1);
    sender.notify_when_modified(&a, kBroadcast, 2);
    delete dead;

    sender.cancel_notification(&a, kBroadcast, 1);

    EXPECT_EQ(receivers_of(sender), 1);
    sender.cancel_notification(&a, kOther, 2);  // there is none
    EXPECT_EQ(receivers_of(sender), 1);
    sender.cancel_notification(&a, kBroadcast, 2);
    EXPECT_EQ(receivers_of(sender), 0);
}

TEST(Notification, AddedInAHandler_IsToldInTheSameRound)
{
    Log log;
    GResponder sender;
    TestResponder a("a", &log);
    TestResponder b("b", &log);
    sender.notify_when_modified(&a, kBroadcast, 1);
    a.on_event = [&](GEvent&) { sender.notify_when_modified(&b, kBroadcast, 1); };

    sender.object_modified();

    const Log expected = {"a event 10", "b event 10"};
    EXPECT_EQ(log, expected);
}

TEST(Notification, CancelledInAHandler_SkipsTheNext)
{
    Log log;
    GResponder sender;
    TestResponder a("a", &log);
    TestResponder b("b", &log);
    TestResponder c("c", &log);
    for (TestResponder* receiver : {&a, &b, &c})
        sender.notify_when_modified(receiver, kBroadcast, 1);
    a.on_event = [&](GEvent&) { sender.cancel_notification(&a, kBroadcast, 1); };

    sender.object_modified();

    const Log expected = {"a event 10", "c event 10"};
    EXPECT_EQ(log, expected);
}

TEST(Notification, SenderOrListEndsInAHandler_RoundEnds)
{
    for (const bool shuts_down_only : {false, true}) {
        Log log;
        auto* sender = new GResponder;
        TestResponder a("a", &log);
        TestResponder b("b", &log);
        sender->notify_when_modified(&a, kBroadcast, 1);
        sender->notify_when_modified(&b, kBroadcast, 1);
        a.on_event = [&](GEvent&) {
            if (shuts_down_only)
                sender->shut_down();
            else
                GStreamable::destroy(sender);
        };

        sender->object_modified();

        const Log expected = {"a event 10"};
        EXPECT_EQ(log, expected);
        if (shuts_down_only)
            delete sender;
    }
}

TEST(Notification, SenderItself_MayBeAReceiver)
{
    Log log;
    TestResponder sender("s", &log);
    sender.notify_when_modified(&sender, kBroadcast, 1);

    sender.object_modified();

    EXPECT_EQ(log.size(), 1U);
}

TEST(Notification, UntrackedReceiver_IsNeverTold)
{
    Log log;
    GResponder sender;
    TestResponder receiver("r", &log);
    receiver.enableSmartPointers(false);
    sender.notify_when_modified(&receiver, kBroadcast, 1);

    sender.object_modified();

    EXPECT_TRUE(log.empty());
    EXPECT_EQ(receivers_of(sender), 0);
}
