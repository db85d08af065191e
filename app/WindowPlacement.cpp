#include "app/WindowPlacement.h"

#include "app/WindowPlacementRecord.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "platform/AfxState.h"

#include <vector>

static_assert(sizeof(WINDOWPLACEMENT) == 44);

namespace {

using zmr::WindowPlacementRecord;

static_assert(WindowPlacementRecord::kRestoreToMaximized == WPF_RESTORETOMAXIMIZED);
static_assert(WindowPlacementRecord::kHidden == SW_HIDE);
static_assert(WindowPlacementRecord::kNormal == SW_SHOWNORMAL);
static_assert(WindowPlacementRecord::kLastShow == SW_MAX);

[[nodiscard]] WindowPlacementRecord record_of(const WINDOWPLACEMENT& placement)
{
    return {placement.flags,
            placement.showCmd,
            placement.ptMinPosition.x,
            placement.ptMinPosition.y,
            placement.ptMaxPosition.x,
            placement.ptMaxPosition.y,
            placement.rcNormalPosition.left,
            placement.rcNormalPosition.top,
            placement.rcNormalPosition.right,
            placement.rcNormalPosition.bottom};
}

void put_record(const WindowPlacementRecord& record, WINDOWPLACEMENT& placement)
{
    placement.flags = record.flags;
    placement.showCmd = record.show;
    placement.ptMinPosition = {record.minimized_x, record.minimized_y};
    placement.ptMaxPosition = {record.maximized_x, record.maximized_y};
    placement.rcNormalPosition = {record.left, record.top, record.right, record.bottom};
}

struct WorkAreas {
    std::vector<CRect> rects;  ///< The primary monitor's first.
    POINT origin{};            ///< Of workspace coordinates, on the screen.
};

BOOL CALLBACK add_work_area(HMONITOR monitor, HDC, LPRECT, LPARAM target)
{
    return zmr::behind_barrier(
        [&] {
            MONITORINFO info{};
            info.cbSize = sizeof info;
            if (!::GetMonitorInfo(monitor, &info))
                return TRUE;  // it has just gone
            auto& areas = *reinterpret_cast<WorkAreas*>(target);
            const bool primary = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
            if (primary)
                areas.origin = {info.rcWork.left - info.rcMonitor.left,
                                info.rcWork.top - info.rcMonitor.top};
            areas.rects.insert(primary ? areas.rects.begin() : areas.rects.end(), info.rcWork);
            return TRUE;
        },
        FALSE);
}

/// The monitors' work areas in the coordinates that the window's placement counts in.
[[nodiscard]] std::vector<CRect> work_areas_for(HWND window)
{
    WorkAreas areas;
    ::EnumDisplayMonitors(nullptr, nullptr, add_work_area, reinterpret_cast<LPARAM>(&areas));
    zmr::rethrow_pending();
    // Tool windows count in screen coordinates.
    if ((::GetWindowLong(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) == 0) {
        for (CRect& rect : areas.rects)
            rect.OffsetRect(-areas.origin.x, -areas.origin.y);
    }
    return areas.rects;
}

}  // namespace

opstream& operator<<(opstream& out, const WINDOWPLACEMENT& placement)
{
    return out << record_of(placement);
}

ipstream& operator>>(ipstream& in, WINDOWPLACEMENT& placement)
{
    WindowPlacementRecord record;
    in >> record;
    put_record(record, placement);
    return in;
}

void GMfcSaveWindowPlacement(opstream& out, HWND window)
{
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    // Of no window it leaves zeros: a hidden one of no size.
    static_cast<void>(::GetWindowPlacement(window, &placement));
    if (::IsZoomed(window))
        placement.flags |= WPF_RESTORETOMAXIMIZED;
    if ((::GetWindowLong(window, GWL_STYLE) & WS_VISIBLE) == 0)
        placement.showCmd = SW_HIDE;
    out << placement;
}

void GMfcLoadWindowPlacement(ipstream& in, HWND window)
{
    WindowPlacementRecord record;
    in >> record;
    // A child's coordinates are its parent's, who shows it or not.
    if ((::GetWindowLong(window, GWL_STYLE) & WS_CHILD) == 0)
        record = zmr::usable_placement(record, work_areas_for(window));
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    put_record(record, placement);
    static_cast<void>(::SetWindowPlacement(window, &placement));  // the window may be gone
}
