#include "scene_module/ReceiversAside.h"

#include "foundation/GCollection.h"
#include "responder/NotificationLink.h"

ReceiversAside::ReceiversAside(GResponder& responder) : responder_(responder)
{
    GCollection links(0, 4, 0);
    responder_.get_notification_receivers(links);
    links_.reserve(static_cast<std::size_t>(links.count));
    for (long index = 0; index < links.count; ++index) {
        const auto* const link = static_cast<const NotificationLink*>(links.items[index]);
        links_.push_back({TGPointer<GResponder>(static_cast<GResponder*>(link->target)),
                          link->event_kind, link->event_word});
    }
    // The last one first: it is found at once.
    for (auto link = links_.rbegin(); link != links_.rend(); ++link)
        responder_.cancel_notification(link->receiver.get(), link->kind, link->word);
}

ReceiversAside::~ReceiversAside()
{
    for (const Link& link : links_)
        responder_.notify_when_modified(link.receiver.get(), link.kind, link.word);
}
