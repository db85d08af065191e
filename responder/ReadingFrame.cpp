#include "responder/ReadingFrame.h"

namespace zmr {

constinit thread_local ReadingFrame* ReadingFrame::innermost = nullptr;

ReadingFrame::~ReadingFrame()
{
    innermost = outer_;
    if (std::uncaught_exceptions() > exceptions_before_)
        return;
    for (const auto& place : places_) {
        GResponder* owner = place->owner.get();
        if (owner == nullptr)
            continue;
        GResponder* behind = place->behind.get();
        if (behind == nullptr || behind->get_owner() != owner)
            behind = owner->first();
        if (owner->insert_before(responder_, behind) != 0 && place->is_current)
            owner->set_current(responder_);
    }
}

ReadingFrame* ReadingFrame::FrameOf(const GResponder* responder)
{
    ReadingFrame* frame = innermost;
    while (frame != nullptr && frame->responder_ != responder)
        frame = frame->outer_;
    return frame;
}

bool ReadingFrame::Await(GResponder* owner, GResponder* child)
{
    ReadingFrame* frame = FrameOf(child);
    if (frame == nullptr)
        return false;
    auto place = std::make_unique<Place>();
    place->owner = owner;
    place->behind = owner->first();
    frame->places_.push_back(std::move(place));
    return true;
}

bool ReadingFrame::AwaitAsCurrent(GResponder* owner, GResponder* child)
{
    const ReadingFrame* frame = FrameOf(child);
    if (frame == nullptr)
        return false;
    for (const auto& place : frame->places_) {
        if (place->owner.get() != owner)
            continue;
        place->is_current = true;
        return true;
    }
    return false;
}

}  // namespace zmr
