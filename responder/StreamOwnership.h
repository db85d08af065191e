#pragma once

#include "foundation/GException.h"
#include "foundation/ipstream.h"

namespace zmr {

/// Claims what the last readPointer of `in` gave. False when the data gives it to a second owner,
/// or to a part of itself: the caller then does without it.
[[nodiscard]] inline bool try_claim(ipstream& in)
{
    try {
        in.claim();
    } catch (const GStreamException&) {
        return false;
    }
    return true;
}

}  // namespace zmr
