#pragma once

#include "platform/CRect.h"
#include "platform/Export.h"

#include <cstdint>
#include <span>

class ipstream;
class opstream;

namespace zmr {

/// Where a window stands, as it is streamed: ten values of 32 bits, in this order. The rectangle is
/// that of the normal state, in workspace coordinates, which count from the corner of the primary
/// monitor's work area.
struct WindowPlacementRecord {
    static constexpr std::uint32_t kRestoreToMaximized = 2;  ///< A bit of `flags`.
    static constexpr std::uint32_t kHidden = 0;              ///< Values of `show`.
    static constexpr std::uint32_t kNormal = 1;
    static constexpr std::uint32_t kLastShow = 11;

    std::uint32_t flags = 0;
    std::uint32_t show = kNormal;
    std::int32_t minimized_x = -1;
    std::int32_t minimized_y = -1;
    std::int32_t maximized_x = -1;
    std::int32_t maximized_y = -1;
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    friend bool operator==(const WindowPlacementRecord&, const WindowPlacementRecord&) = default;
};

ZMR_GV_API opstream& operator<<(opstream& out, const WindowPlacementRecord& record);
/// Takes any ten values; see usable_placement. A stream that ends early throws GStreamException and
/// leaves `record` as it was.
ZMR_GV_API ipstream& operator>>(ipstream& in, WindowPlacementRecord& record);

/// The record of a stream, which may be damaged or come from a machine with other monitors, for a
/// window of this one. `work_areas` are the monitors' in workspace coordinates, the primary first.
/// A rectangle of which at least a part shows in one of them stays as it is. One that shows nowhere
/// moves by the shortest way into the area that is nearest to it, cut to its size; one without a
/// width or height becomes three quarters of the primary area, in its middle. With no areas the
/// rectangle stays. An unknown way to show becomes the normal one, and unknown flags go.
[[nodiscard]] ZMR_GV_API WindowPlacementRecord usable_placement(const WindowPlacementRecord& record,
                                                                std::span<const CRect> work_areas);

}  // namespace zmr
