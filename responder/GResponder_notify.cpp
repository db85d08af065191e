#include "foundation/GCollection.h"
#include "responder/GResponder.h"
#include "responder/NotificationLink.h"
#include "responder/RunningDispatch.h"

#include <cstddef>
#include <memory>
#include <utility>

// Who is told of changes. The collection holds NotificationLinks, which are no GStreamables, so
// that it owns nothing and they are deleted here.

namespace {

/// An event that is made again and again stands in one line of the cache, wherever the stack is: no
/// store meets two.
constexpr std::size_t kCacheLine = 64;

NotificationLink* link_at(const GCollection& links, long index)
{
    return static_cast<NotificationLink*>(links.items[index]);
}

bool tells(const NotificationLink& link, const GResponder* receiver, GEvent::GEventType kind,
           std::uint32_t word)
{
    return link.target == receiver && link.event_kind == kind && link.event_word == word;
}

void delete_link(GCollection& links, long index)
{
    const std::unique_ptr<NotificationLink> link(link_at(links, index));
    links.v_at_remove(index);
}

}  // namespace

void GResponder::notify_when_modified(GResponder* receiver, GEvent::GEventType kind,
                                      unsigned long asked_word)
{
    if (receiver == nullptr)
        return;
    const auto word = static_cast<std::uint32_t>(asked_word);
    own_receivers();
    pack_collection_of_notification_receivers();
    if (const GCollection* links = receivers()) {
        for (long index = links->count - 1; index >= 0; --index) {
            if (tells(*link_at(*links, index), receiver, kind, word))
                return;
        }
    }
    add_receiver(receiver, kind, word);
}

/// Adds a record at the end.
NotificationLink* GResponder::add_receiver(GResponder* receiver, GEvent::GEventType kind,
                                           std::uint32_t word)
{
    GCollection*& links = own_extras().receivers;
    if (links == nullptr)
        links = new GCollection(0, 2, 0);
    auto link = std::make_unique<NotificationLink>();
    link->set(receiver, receiver);
    link->event_kind = kind;
    link->event_word = word;
    links->v_insert(link.get());
    return link.release();
}

void GResponder::cancel_notification(GResponder* receiver, GEvent::GEventType kind,
                                     unsigned long asked_word)
{
    const auto word = static_cast<std::uint32_t>(asked_word);
    own_receivers();
    GCollection* const links = receivers();
    if (links == nullptr)
        return;
    for (long index = links->count - 1; index >= 0; --index) {
        const NotificationLink& link = *link_at(*links, index);
        if (link.target == nullptr || tells(link, receiver, kind, word))
            delete_link(*links, index);
    }
}

void GResponder::pack_collection_of_notification_receivers()
{
    own_receivers();
    GCollection* const links = receivers();
    if (links == nullptr)
        return;
    for (long index = links->count - 1; index >= 0; --index) {
        if (link_at(*links, index)->target == nullptr)
            delete_link(*links, index);
    }
}

void GResponder::object_modified()
{
    if (receivers() == nullptr)
        return;
    // A receiver may end this responder, change the list, or bring it to its end.
    const zmr::RunningDispatch running(this, nullptr);
    const Extras& extras = *extras_;  // they stay as long as the responder
    for (long index = 0; extras.receivers != nullptr && index < extras.receivers->count; ++index) {
        const NotificationLink& link = *link_at(*extras.receivers, index);
        auto* const receiver = static_cast<GResponder*>(link.target);
        if (receiver == nullptr)
            continue;
        alignas(kCacheLine) GEvent event;
        event.what = link.event_kind;
        event.info_word = link.event_word;
        event.info_long = reinterpret_cast<std::intptr_t>(this);
        if (event.what != 0 && receiver->takes_directly(event)) [[likely]]
            receiver->handle_event(event);
        else
            Message(receiver, event);
        if (!running.alive())
            return;
    }
}

void GResponder::get_notification_receivers(GCollection& out) const
{
    const_cast<GResponder*>(this)->pack_collection_of_notification_receivers();
    out.empty();
    out.owns_items = 0;
    if (const GCollection* links = receivers())
        out.v_at_insert_range(0, links->items, links->count);
}

void GResponder::destroy_linked_object_collection()
{
    GCollection* const links = receivers();
    if (links == nullptr)
        return;
    extras_->receivers = nullptr;
    if (borrows(kReceivers)) {
        stop_borrowing(kReceivers);
        return;
    }
    for (long index = 0; index < links->count; ++index)
        delete link_at(*links, index);
    links->empty();
    GStreamable::destroy(links);
}
