#pragma once

#include "responder/RunningDispatch.h"

class GResponder;

namespace zmr {

/// Stands on the stack while the children of a responder are read: it seems to have no owner then,
/// so that no change of state goes up the tree. The owner comes back at the end, unless one of the
/// two has ended. Each thread keeps a list of those that hide one.
class HiddenOwner {
public:
    /// `owner` is the responder's field.
    HiddenOwner(GResponder* responder, GResponder*& owner);
    ~HiddenOwner();
    HiddenOwner(const HiddenOwner&) = delete;
    HiddenOwner& operator=(const HiddenOwner&) = delete;

    /// The owner of `responder` that is hidden now, or null.
    [[nodiscard]] static GResponder* Of(const GResponder* responder)
    {
        return innermost == nullptr ? nullptr : Find(responder);
    }

private:
    static GResponder* Find(const GResponder* responder);

    static constinit thread_local HiddenOwner* innermost;

    RunningDispatch running_;  ///< Knows who has ended.
    const GResponder* responder_;
    GResponder*& field_;
    HiddenOwner* outer_ = nullptr;
};

}  // namespace zmr
