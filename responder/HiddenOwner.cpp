#include "responder/HiddenOwner.h"

#include <utility>

namespace zmr {

constinit thread_local HiddenOwner* HiddenOwner::innermost = nullptr;

HiddenOwner::HiddenOwner(GResponder* responder, GResponder*& owner)
    : running_(responder, owner), responder_(responder), field_(owner)
{
    if (std::exchange(owner, nullptr) != nullptr)
        outer_ = std::exchange(innermost, this);
}

HiddenOwner::~HiddenOwner()
{
    if (innermost == this)
        innermost = outer_;
    if (running_.alive())
        field_ = running_.owner();
}

GResponder* HiddenOwner::Find(const GResponder* responder)
{
    const HiddenOwner* hidden = innermost;
    while (hidden != nullptr && hidden->responder_ != responder)
        hidden = hidden->outer_;
    return hidden != nullptr ? hidden->running_.owner() : nullptr;
}

}  // namespace zmr
