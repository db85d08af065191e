#pragma once

#include "scene_editor/core/PaneLayout.h"

namespace editor {

/// Which of the two large parts of the window are seen; one of them always is.
struct ShownParts {
    bool scene = true;
    bool library = true;
    bool operator==(const ShownParts&) const = default;
};

/// How large the parts are to be, in pixels. The library and the drawing of the scene have the
/// rest.
struct PartSizes {
    int scene_px = 0;       ///< Height of the scene.
    int properties_px = 0;  ///< Width of the properties.
};

/// Where the parts of the window lie: above the scene with its properties at the right, below the
/// library. What is not seen is empty.
struct WindowLayout {
    PaneRect scene;
    PaneRect properties_splitter;
    PaneRect properties;
    PaneRect library_splitter;
    PaneRect library;
};

/// The parts in `area`. Sizes give way where a part would be smaller than its least size; nothing
/// is ever negative.
[[nodiscard]] WindowLayout lay_out_window(const PaneRect& area, const PartSizes& sizes,
                                          const ShownParts& shown, int dpi);
/// The sizes after the splitter above the library was dragged to `y`, or that of the properties to
/// `x`: as near as the least sizes allow.
[[nodiscard]] PartSizes drag_library_splitter(const PaneRect& area, const PartSizes& sizes, int y,
                                              int dpi);
[[nodiscard]] PartSizes drag_properties_splitter(const PaneRect& area, const PartSizes& sizes,
                                                 int x, int dpi);
/// The sizes that a new window begins with.
[[nodiscard]] PartSizes first_sizes(const PaneRect& area, int dpi);

inline constexpr int kLeastSceneAt96 = 140;       ///< Least height of the scene,
inline constexpr int kLeastLibraryAt96 = 120;     ///< and of the library.
inline constexpr int kLeastPropertiesAt96 = 150;  ///< Least width of the properties,
inline constexpr int kLeastSceneWidthAt96 = 200;  ///< and of the scene.

}  // namespace editor
