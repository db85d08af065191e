#pragma once

#include "app/WindowPlacementRecord.h"
#include "scene_editor/core/WindowLayout.h"

#include <cstdint>
#include <optional>
#include <string>

class RegistryManager;

namespace editor {

/// What the program keeps of its window between runs. Lengths are in pixels of the present screen;
/// they are stored as they would be at 96 dots per inch.
struct EditorSettings {
    std::optional<zmr::WindowPlacementRecord> placement;  ///< None before the first run's end.
    std::optional<PaneWidths> widths;
    std::optional<PartSizes> sizes;
    ShownParts shown;
    bool shows_status_bar = true;
    int draw_type = kFirstDrawType;  ///< How the preview draws: kLeastDrawType to kMostDrawType.
    std::string filter;              ///< The text in the line that filters the list.

    static constexpr int kFirstDrawType = 3;
    static constexpr int kLeastDrawType = 1;
    static constexpr int kMostDrawType = 4;
    static constexpr int kMostLength = 16'384;  ///< Of a stored length; those beyond are ignored.
};

/// Values that are missing, damaged or out of range are those of a new EditorSettings.
[[nodiscard]] EditorSettings read_settings(RegistryManager& manager, int dpi);
/// In an initialisation file it is one update, done whole or not at all. False when they are not
/// kept. An absent length keeps what is stored.
[[nodiscard]] bool write_settings(RegistryManager& manager, const EditorSettings& settings,
                                  int dpi);

/// How a window that stood as `kept` is shown again: where it was, and as large as the screen if it
/// was that or was to become it. As an icon, or as large as the screen, where `how`, the way of
/// showing that the program was started with, asks for that; never hidden.
[[nodiscard]] zmr::WindowPlacementRecord placement_at_start(zmr::WindowPlacementRecord kept,
                                                            std::uint32_t how);

}  // namespace editor
