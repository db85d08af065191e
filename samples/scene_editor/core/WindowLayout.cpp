#include "scene_editor/core/WindowLayout.h"

#include <algorithm>

namespace editor {

namespace {

// The size of the first of two parts: at least `least` and leaving `least_rest` where there is room
// for both, else a share of what there is.
int fitting(int room, int wanted, int least, int least_rest)
{
    if (room < least + least_rest)
        return std::max(0, room) * least / std::max(1, least + least_rest);
    return std::clamp(wanted, least, room - least_rest);
}

int room_of(int length, int dpi)
{
    return std::max(0, length - scaled(kSplitterAt96, dpi));
}

int scene_height(const PaneRect& area, int wanted, int dpi)
{
    return fitting(room_of(area.height(), dpi), wanted, scaled(kLeastSceneAt96, dpi),
                   scaled(kLeastLibraryAt96, dpi));
}

int properties_width(const PaneRect& area, int wanted, int dpi)
{
    return fitting(room_of(area.width(), dpi), wanted, scaled(kLeastPropertiesAt96, dpi),
                   scaled(kLeastSceneWidthAt96, dpi));
}

}  // namespace

WindowLayout lay_out_window(const PaneRect& area, const PartSizes& sizes, const ShownParts& shown,
                            int dpi)
{
    WindowLayout parts;
    const int right = std::max(area.left, area.right);
    const int bottom = std::max(area.top, area.bottom);
    const int splitter = scaled(kSplitterAt96, dpi);
    int scene_bottom = bottom;
    if (!shown.scene)
        scene_bottom = area.top;
    else if (shown.library)
        scene_bottom = area.top + scene_height(area, sizes.scene_px, dpi);
    if (shown.scene) {
        const int left = right - properties_width(area, sizes.properties_px, dpi);
        parts.properties = {left, area.top, right, scene_bottom};
        parts.properties_splitter = {std::max(area.left, left - splitter), area.top, left,
                                     scene_bottom};
        parts.scene = {area.left, area.top, parts.properties_splitter.left, scene_bottom};
    }
    if (!shown.library)
        return parts;
    int top = scene_bottom;
    if (shown.scene) {
        top = std::min(bottom, scene_bottom + splitter);
        parts.library_splitter = {area.left, scene_bottom, right, top};
    }
    parts.library = {area.left, top, right, bottom};
    return parts;
}

PartSizes drag_library_splitter(const PaneRect& area, const PartSizes& sizes, int y, int dpi)
{
    return {scene_height(area, y - area.top, dpi), sizes.properties_px};
}

PartSizes drag_properties_splitter(const PaneRect& area, const PartSizes& sizes, int x, int dpi)
{
    const int wanted = area.right - x - scaled(kSplitterAt96, dpi);
    return {sizes.scene_px, properties_width(area, wanted, dpi)};
}

PartSizes first_sizes(const PaneRect& area, int dpi)
{
    return {area.height() * 57 / 100, scaled(230, dpi)};
}

}  // namespace editor
