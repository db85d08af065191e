#include "app/WindowPlacementRecord.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <algorithm>

namespace zmr {
namespace {

constexpr std::uint32_t kKnownFlags = 7;  // set minimised place, restore to maximised, asynchronous

/// A stretch of one axis. 64 bits wide, because ends of a damaged record lie anywhere.
struct Stretch {
    std::int64_t first;
    std::int64_t end;

    [[nodiscard]] std::int64_t length() const { return end - first; }
    /// How far it is from here to `other`; 0 or less where they overlap.
    [[nodiscard]] std::int64_t gap_to(const Stretch& other) const
    {
        return std::max(first - other.end + 1, other.first - end + 1);
    }
    /// Moved into `room`, and cut to its length.
    [[nodiscard]] Stretch inside(const Stretch& room) const
    {
        const std::int64_t size = std::min(length(), room.length());
        const std::int64_t start = std::clamp(first, room.first, room.end - size);
        return {start, start + size};
    }
    /// The middle three quarters.
    [[nodiscard]] Stretch middle() const { return {first + length() / 8, end - length() / 8}; }
};

struct Place {
    Stretch across;
    Stretch down;

    [[nodiscard]] bool is_empty() const { return across.length() < 1 || down.length() < 1; }
    /// The longer of the two gaps to `area`; 0 or less for a place that shows in it.
    [[nodiscard]] std::int64_t distance(const Place& area) const
    {
        return std::max(across.gap_to(area.across), down.gap_to(area.down));
    }
};

[[nodiscard]] Place place_of(const CRect& rect)
{
    return {{rect.left, rect.right}, {rect.top, rect.bottom}};
}

[[nodiscard]] Place usable_place(const Place& place, std::span<const CRect> work_areas)
{
    if (work_areas.empty())
        return place;
    if (place.is_empty()) {
        const Place primary = place_of(work_areas.front());
        return {primary.across.middle(), primary.down.middle()};
    }
    Place nearest = place_of(work_areas.front());
    for (const CRect& rect : work_areas) {
        const Place area = place_of(rect);
        if (place.distance(area) < place.distance(nearest))
            nearest = area;
    }
    if (place.distance(nearest) <= 0)
        return place;
    return {place.across.inside(nearest.across), place.down.inside(nearest.down)};
}

}  // namespace

opstream& operator<<(opstream& out, const WindowPlacementRecord& record)
{
    out << record.flags << record.show << record.minimized_x << record.minimized_y
        << record.maximized_x << record.maximized_y << record.left << record.top << record.right
        << record.bottom;
    return out;
}

ipstream& operator>>(ipstream& in, WindowPlacementRecord& record)
{
    WindowPlacementRecord read;
    in >> read.flags >> read.show >> read.minimized_x >> read.minimized_y >> read.maximized_x >>
        read.maximized_y >> read.left >> read.top >> read.right >> read.bottom;
    record = read;
    return in;
}

WindowPlacementRecord usable_placement(const WindowPlacementRecord& record,
                                       std::span<const CRect> work_areas)
{
    WindowPlacementRecord usable = record;
    usable.flags &= kKnownFlags;
    if (usable.show > WindowPlacementRecord::kLastShow)
        usable.show = WindowPlacementRecord::kNormal;
    const Place place =
        usable_place({{record.left, record.right}, {record.top, record.bottom}}, work_areas);
    usable.left = static_cast<std::int32_t>(place.across.first);
    usable.top = static_cast<std::int32_t>(place.down.first);
    usable.right = static_cast<std::int32_t>(place.across.end);
    usable.bottom = static_cast<std::int32_t>(place.down.end);
    return usable;
}

}  // namespace zmr
