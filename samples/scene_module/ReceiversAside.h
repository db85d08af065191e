#pragma once

#include "foundation/GPointer.h"
#include "responder/GEvent.h"
#include "responder/GResponder.h"

#include <vector>

/// Takes away who is told of a responder's changes, for as long as it lives. A scene is written
/// without them: they are the windows of a program; and what data from outside names is dropped.
class ReceiversAside {
public:
    explicit ReceiversAside(GResponder& responder);
    /// Gives them back, unless they were dropped.
    ~ReceiversAside();
    ReceiversAside(const ReceiversAside&) = delete;
    ReceiversAside& operator=(const ReceiversAside&) = delete;

    void drop() { links_.clear(); }

private:
    struct Link {
        TGPointer<GResponder> receiver;
        GEvent::GEventType kind;
        std::uint32_t word;
    };

    GResponder& responder_;
    std::vector<Link> links_;
};
