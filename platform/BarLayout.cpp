#include "platform/BarLayout.h"

#include <algorithm>
#include <cstdint>

namespace zmr {
namespace {

constexpr int kDesignDpi = 96;
constexpr int kEdgeHeight = 2;  // the sunken edge of a pane, above and below its text

CRect without_negative_lengths(const CRect& rect)
{
    return {static_cast<int>(rect.left), static_cast<int>(rect.top),
            static_cast<int>(std::max(rect.left, rect.right)),
            static_cast<int>(std::max(rect.top, rect.bottom))};
}

}  // namespace

CRect take_edge(RoomForBars& room, BarEdge edge, const CSize& wanted)
{
    room.rest = without_negative_lengths(room.rest);
    CRect& rest = room.rest;
    CRect bar = rest;
    const bool horizontal = edge == BarEdge::top || edge == BarEdge::bottom;
    const int width = std::clamp(static_cast<int>(wanted.cx), 0, rest.Width());
    const int height = std::clamp(static_cast<int>(wanted.cy), 0, rest.Height());
    if (horizontal) {
        room.total.cy += height;
        room.total.cx = std::max<LONG>(room.total.cx, width);
        if (!room.stretch)
            bar.right = bar.left + width;
    } else {
        room.total.cx += width;
        room.total.cy = std::max<LONG>(room.total.cy, height);
        if (!room.stretch)
            bar.bottom = bar.top + height;
    }
    switch (edge) {
        case BarEdge::left:
            bar.right = rest.left += width;
            break;
        case BarEdge::top:
            bar.bottom = rest.top += height;
            break;
        case BarEdge::right:
            bar.left = rest.right -= width;
            break;
        case BarEdge::bottom:
            bar.top = rest.bottom -= height;
            break;
    }
    return bar;
}

std::vector<int> pane_edges(std::span<const PaneWidth> panes, int width, int padding, int gap)
{
    std::int64_t left = width;
    int stretching = 0;
    for (const PaneWidth& pane : panes) {
        left -= std::max(pane.text, 0) + 2 * padding;
        stretching += pane.stretch ? 1 : 0;
    }
    if (!panes.empty())
        left -= gap * static_cast<std::int64_t>(panes.size() - 1);
    left = std::max<std::int64_t>(left, 0);

    std::vector<int> edges;
    edges.reserve(panes.size());
    int at = 0;
    bool first = true;
    for (const PaneWidth& pane : panes) {
        at += edges.empty() ? 0 : gap;
        at += std::max(pane.text, 0) + 2 * padding;
        if (pane.stretch) {
            const auto share = static_cast<int>(left / stretching);
            at += first ? share + static_cast<int>(left % stretching) : share;
            first = false;
        }
        edges.push_back(at);
    }
    if (!panes.empty() && panes.back().stretch)
        edges.back() = -1;
    return edges;
}

int status_bar_height(int text, int border, int least)
{
    return std::max(std::max(text, 0) + 2 * (std::max(border, 0) + kEdgeHeight), least);
}

int scaled_to_dpi(int length, int dpi)
{
    const std::int64_t product = static_cast<std::int64_t>(length) * dpi;
    const std::int64_t half = product < 0 ? -kDesignDpi / 2 : kDesignDpi / 2;
    return static_cast<int>((product + half) / kDesignDpi);
}

}  // namespace zmr
