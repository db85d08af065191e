#pragma once

#include "platform/Export.h"
#include "platform/PlatformTypes.h"

#include <functional>

namespace zmr {

/// A walk over the items of a menu while handlers may take items out and put others in.
struct PopupWalk {
    UINT index = 0;  ///< The item being brought up to date,
    UINT count = 0;  ///< of so many.
};

/// Where the walk goes on after item `walk.index`, command `id`, was brought up to date, when the
/// menu now has `count_now` items. Items that were put in are visited; when items have gone, those
/// that moved up are visited too, except such as have the command that was just dealt with.
/// `id_at` tells the command at an index below `count_now`.
[[nodiscard]] ZMR_GV_API PopupWalk next_item(PopupWalk walk, UINT id, UINT count_now,
                                             const std::function<UINT(UINT)>& id_at);

}  // namespace zmr
