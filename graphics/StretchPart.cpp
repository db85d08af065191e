#include "graphics/StretchPart.h"

#include <algorithm>

namespace zmr {
namespace {

bool clip_axis(int& start, int& length, int& from, int& to, int limit)
{
    if (length <= 0 || to <= from)
        return false;
    const std::int64_t first = std::max(start, 0);
    const std::int64_t end = std::min<std::int64_t>(std::int64_t{start} + length, limit);
    if (end <= first)
        return false;
    const std::int64_t drawn = std::int64_t{to} - from;
    const std::int64_t cut_before = (first - start) * drawn / length;
    const std::int64_t cut_behind = (std::int64_t{start} + length - end) * drawn / length;
    start = static_cast<int>(first);
    length = static_cast<int>(end - first);
    from = static_cast<int>(from + cut_before);
    to = static_cast<int>(to - cut_behind);
    return from < to;
}

}  // namespace

bool clip_to_map(StretchPart& part, int map_width, int map_height)
{
    return clip_axis(part.x, part.width, part.left, part.right, map_width) &&
           clip_axis(part.y, part.height, part.top, part.bottom, map_height);
}

}  // namespace zmr
