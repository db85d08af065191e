#include "responder/GBehaviour.h"
#include "responder/GResponder.h"
#include "responder/RunningDispatch.h"

#include <algorithm>

namespace {

/// So many children in front of the present one, the next ones are fetched into the cache.
constexpr int kAhead = 4;

}  // namespace

// The way of an event. A responder without behaviours and children costs one call; whatever goes on
// after code outside has run stands under a RunningDispatch.

GResponder* GResponder::Message(GResponder* receiver, GEvent& event)
{
    if (receiver == nullptr)
        return nullptr;
    if (event.what != 0) {
        if (receiver->takes_directly(event))
            receiver->handle_event(event);
        else if ((event.what & GEvent::event_input_mask) != 0 && receiver->is_disabled())
            return nullptr;
        else
            receiver->dispatch_by_behaviours(event);
    }
    return event.what == 0 ? event.cleared_by : nullptr;
}

GResponder* GResponder::Message(GResponder* receiver, GEvent::GEventType what, unsigned long word,
                                long value)
{
    if (receiver == nullptr)
        return nullptr;
    GEvent event;
    event.what = what;
    event.info_word = static_cast<std::uint32_t>(word);
    event.info_long = value;
    return Message(receiver, event);
}

GResponder* GResponder::Message(GResponder* receiver, GEvent::GEventType what, unsigned long word,
                                void* value)
{
    if (receiver == nullptr)
        return nullptr;
    GEvent event;
    event.what = what;
    event.info_word = static_cast<std::uint32_t>(word);
    event.info_long = reinterpret_cast<std::intptr_t>(value);
    return Message(receiver, event);
}

void GResponder::dispatch_by_behaviours(GEvent& event)
{
    GResponder* const owner_before = owner_;
    zmr::RunningDispatch running(this, owner_before);
    bool taken = false;
    bool after = false;
    for (GBehaviour* behaviour = running.stand_on(get_behaviours()); behaviour != nullptr;
         behaviour = running.step()) {
        if ((event.what & GEvent::event_positional_mask) != 0 && !taken)
            taken = behaviour->mouse_ran_round(event);
        if (!running.alive())
            return;
        if (!running.on_behaviour())
            continue;
        if ((behaviour->mode & GBehaviour::handles_before) != 0)
            behaviour->handle_event(event);
        else if ((behaviour->mode & GBehaviour::handles_after) != 0)
            after = true;
        if (!running.alive())
            return;
    }

    if ((event.what & GEvent::event_positional_mask) != 0 && !taken) {
        mouse_ran_round(event);
        if (!running.alive())
            return;
    }
    handle_event(event);
    if (!after || !running.alive())
        return;
    // Out of the list of an owner that it had, the responder is about to go.
    if (owner_before != nullptr &&
        (running.owner() == nullptr || (owner_ != owner_before && !owner_before->contains(this))))
        return;
    for (GBehaviour* behaviour = running.stand_on(get_behaviours()); behaviour != nullptr;
         behaviour = running.step()) {
        if ((behaviour->mode & GBehaviour::handles_after) != 0)
            behaviour->handle_event(event);
        if (!running.alive())
            return;
    }
}

void GResponder::handle_event(GEvent& event)
{
    if ((event.what & GEvent::event_input_mask) != 0)
        take_press(event);
    else if (children_.count() != 0)
        broadcast(event);
}

void GResponder::take_press(GEvent& event)
{
    if (event.what != GEvent::event_mouse_press ||
        (state_ & (state_selected | state_disabled)) != 0 ||
        (options_ & (option_selectable | option_to_front)) == 0)
        return;
    const zmr::RunningDispatch running(this, nullptr);
    select();
    if (running.alive() && (options_ & option_pass_click) == 0)
        clear_event(event);
}

/// The current child first, then the others in the order of the list, which may change meanwhile.
void GResponder::broadcast(GEvent& event)
{
    const zmr::RunningDispatch running(this, nullptr);
    for (int index = 0; index < std::min(kAhead, children_.count()); ++index)
        children_.prefetch(index);
    GResponder* const current = get_current();
    if (current != nullptr) {
        Message(current, event);
        if (!running.alive())
            return;
    }
    for (int index = 0; index < children_.count(); ++index) {
        if (event.what == 0)
            return;  // the others would not look at it
        children_.prefetch(index + kAhead);
        GResponder* child = children_[index];
        if (child == current)
            continue;
        if (child->takes_directly(event)) [[likely]]
            child->handle_event(event);
        else
            Message(child, event);
        if (!running.alive())
            return;
    }
}

void GResponder::mouse_ran_round(const GEvent&) {}

void GResponder::clear_event(GEvent& event)
{
    if ((event.what & ~std::uint32_t{GEvent::event_uncancellable}) == 0)
        return;
    event.what = GEvent::event_none;
    event.cleared_by = this;
}

unsigned char GResponder::valid(unsigned long regime)
{
    for (int index = 0; index < children_.count(); ++index) {
        if (children_[index]->valid(regime) == 0)
            return 0;
    }
    return 1;
}
