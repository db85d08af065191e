#pragma once

#include "foundation/GPointer.h"
#include "responder/GResponder.h"

#include <exception>
#include <memory>
#include <vector>

namespace zmr {

/// Stands on the stack while parts of a responder are read. By its links a child may be read before
/// its owner, and then the owner within the child: such a child enters the owner's list when the
/// frame ends in which the owner was read. Each thread keeps a list of its own.
class ReadingFrame {
public:
    explicit ReadingFrame(GResponder* responder) : responder_(responder), outer_(innermost)
    {
        innermost = this;
    }
    /// Inserts the responder where it waits to be, unless an exception passes.
    ~ReadingFrame();
    ReadingFrame(const ReadingFrame&) = delete;
    ReadingFrame& operator=(const ReadingFrame&) = delete;

    /// Notes that `child`, which is being read, belongs in front of the present children of
    /// `owner`. False when no frame of the child is on the stack.
    static bool Await(GResponder* owner, GResponder* child);
    /// Notes that the same child is the current one. False when `owner` does not await it.
    static bool AwaitAsCurrent(GResponder* owner, GResponder* child);

private:
    struct Place {
        TGPointer<GResponder> owner;
        TGPointer<GResponder> behind;  ///< The child that it stands in front of, if any.
        bool is_current = false;
    };

    static ReadingFrame* FrameOf(const GResponder* responder);

    static constinit thread_local ReadingFrame* innermost;

    GResponder* responder_;
    ReadingFrame* outer_;
    int exceptions_before_ = std::uncaught_exceptions();
    std::vector<std::unique_ptr<Place>> places_;
};

}  // namespace zmr
