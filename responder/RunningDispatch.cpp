#include "responder/RunningDispatch.h"

#include "responder/GBehaviour.h"

#include <utility>

namespace zmr {

constinit thread_local RunningDispatch* RunningDispatch::innermost = nullptr;

GBehaviour* RunningDispatch::step()
{
    GBehaviour* behind = std::exchange(behind_, nullptr);
    return stand_on(behaviour_ != nullptr ? behaviour_->next_behaviour : behind);
}

void RunningDispatch::ChainEnds(const GResponder* responder)
{
    for (RunningDispatch* running = innermost; running != nullptr; running = running->outer_) {
        if (running->responder_ != responder)
            continue;
        running->behaviour_ = nullptr;
        running->behind_ = nullptr;
    }
}

void RunningDispatch::ForgetResponder(const GResponder* responder)
{
    for (RunningDispatch* running = innermost; running != nullptr; running = running->outer_) {
        if (running->responder_ == responder)
            running->responder_ = nullptr;
        if (running->owner_ == responder)
            running->owner_ = nullptr;
    }
}

void RunningDispatch::ForgetBehaviour(GBehaviour* behaviour)
{
    for (RunningDispatch* running = innermost; running != nullptr; running = running->outer_) {
        GBehaviour*& at = running->behaviour_;
        if (at == behaviour) {
            at = nullptr;
            running->behind_ = behaviour->next_behaviour;
        } else if (at != nullptr && at->next_behaviour == behaviour) {
            at->next_behaviour = behaviour->next_behaviour;  // `at` was taken out before it
        } else if (running->behind_ == behaviour) {
            running->behind_ = behaviour->next_behaviour;
        }
    }
}

}  // namespace zmr
