#include "platform/PopupWalk.h"

#include <algorithm>

namespace zmr {

PopupWalk next_item(PopupWalk walk, UINT id, UINT count_now, const std::function<UINT(UINT)>& id_at)
{
    UINT next = walk.index + 1;
    if (count_now < walk.count) {
        next -= std::min(next, walk.count - count_now);
        while (next < count_now && id_at(next) == id)
            ++next;
    }
    return {next, count_now};
}

}  // namespace zmr
