#pragma once

#include <cstdint>

namespace scene {

/// How an object stands in its scene. A scene unit is a pixel of 1/96 inch when nothing is scaled;
/// x goes to the right and y downwards.
struct Place {
    double x = 0;         ///< Of its middle.
    double y = 0;         ///< Of its middle.
    double turn_deg = 0;  ///< About the axis that is up, from 0 to below 360.
    double scale = 1;     ///< Scene units for each unit of the mesh.
    friend bool operator==(const Place&, const Place&) = default;
};

inline constexpr double kFarthest = 1e6;  ///< Of x and y, to either side.
inline constexpr double kLeastScale = 1e-9;
inline constexpr double kMostScale = 1e9;

/// Colours of a scene, by palette index.
enum PaletteIndex : long {
    kSurfaceColor = 1,
    kGroundColor = 2,
    kGridColor = 3,
    kSelectionColor = 4,  ///< The outline of the selected object.
    kFocusColor = 5,      ///< The same while the keyboard is the scene's.
};

/// What an object of a scene offers beside being a responder: ask any child of a scene's root for
/// it by dynamic_cast. Pure, so that host and module share it without linking each other.
/// User-interface thread.
class SceneItem {
public:
    [[nodiscard]] virtual Place place() const = 0;
    /// Brings values into their limits, which are no numbers count as 0 (the scale as 1);
    /// behaviours may choose another x and y. Tells of the change when there is one.
    virtual void set_place(const Place& place) = 0;
    [[nodiscard]] virtual std::uint32_t triangle_count() const = 0;
    /// The step of the grid on whose points a behaviour holds it, in scene units; 0 without one.
    [[nodiscard]] virtual double grid_step() const = 0;
    /// To be called when the label, the palette or the behaviours were changed from outside.
    virtual void touch() = 0;

protected:
    ~SceneItem() = default;
};

}  // namespace scene
