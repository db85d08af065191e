#include "scene_editor/core/EditorSettings.h"

#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "settings/RegistryManager.h"
#include "settings/SettingsBatch.h"

#include <memory>
#include <span>

namespace editor {

namespace {

constexpr const char* kWindow = "Window";
constexpr const char* kPlacement = "Placement";
constexpr const char* kSceneHeight = "SceneHeight";
constexpr const char* kPropertiesWidth = "PropertiesWidth";
constexpr const char* kTreeWidth = "TreeWidth";
constexpr const char* kPreviewWidth = "PreviewWidth";
constexpr const char* kView = "View";
constexpr const char* kScene = "Scene";
constexpr const char* kLibrary = "Library";
constexpr const char* kStatusBar = "StatusBar";
constexpr const char* kDraw = "Draw";
constexpr const char* kFilter = "Filter";

// The system's ways of showing.
constexpr std::uint32_t kShowMinimized = 2;
constexpr std::uint32_t kShowMaximized = 3;
constexpr std::uint32_t kMinimize = 6;
constexpr std::uint32_t kShowMinimizedAside = 7;  // without taking the keyboard

constexpr int kDesignDpi = 96;

struct DeleteBlock {
    void operator()(unsigned char* block) const { ::operator delete(block); }
};

std::optional<zmr::WindowPlacementRecord> read_placement(RegistryManager& manager)
{
    unsigned char* data = nullptr;
    unsigned int size = 0;
    if (!manager.GetProfileBinary(kWindow, kPlacement, &data, &size))
        return std::nullopt;
    const std::unique_ptr<unsigned char, DeleteBlock> owner(data);
    impstream in(std::span<const unsigned char>(data, size));
    zmr::WindowPlacementRecord record;
    try {
        in >> record;
    } catch (const GException&) {
        return std::nullopt;  // cut off
    }
    return record;
}

bool write_placement(RegistryManager& manager, const zmr::WindowPlacementRecord& record)
{
    ompstream out;
    out << record;
    return manager.WriteProfileBinary(kWindow, kPlacement, out.bytes().data(),
                                      static_cast<unsigned>(out.bytes().size())) != 0;
}

// In pixels of this screen; 0 for a length that is missing or no length.
int read_length(RegistryManager& manager, const char* entry, int dpi)
{
    const unsigned stored = manager.GetProfileIntA(kWindow, entry, 0);
    return stored <= EditorSettings::kMostLength ? scaled(static_cast<int>(stored), dpi) : 0;
}

bool write_length(RegistryManager& manager, const char* entry, int length_px, int dpi)
{
    const int at_design = (length_px * kDesignDpi + dpi / 2) / dpi;
    return manager.WriteProfileInt(kWindow, entry, at_design) != 0;
}

bool read_flag(RegistryManager& manager, const char* entry)
{
    return manager.GetProfileIntA(kView, entry, 1) != 0;
}

}  // namespace

EditorSettings read_settings(RegistryManager& manager, int dpi)
{
    const zmr::SettingsBatch batch(manager);
    EditorSettings settings;
    settings.placement = read_placement(manager);
    const PaneWidths widths{read_length(manager, kTreeWidth, dpi),
                            read_length(manager, kPreviewWidth, dpi)};
    if (widths.tree_px > 0 && widths.preview_px > 0)
        settings.widths = widths;
    const PartSizes sizes{read_length(manager, kSceneHeight, dpi),
                          read_length(manager, kPropertiesWidth, dpi)};
    if (sizes.scene_px > 0 && sizes.properties_px > 0)
        settings.sizes = sizes;

    const ShownParts shown{read_flag(manager, kScene), read_flag(manager, kLibrary)};
    if (shown.scene || shown.library)
        settings.shown = shown;
    settings.shows_status_bar = read_flag(manager, kStatusBar);
    const unsigned draw_type = manager.GetProfileIntA(kView, kDraw, EditorSettings::kFirstDrawType);
    if (draw_type >= EditorSettings::kLeastDrawType && draw_type <= EditorSettings::kMostDrawType)
        settings.draw_type = static_cast<int>(draw_type);
    settings.filter = std::string(manager.GetProfileStringA(kView, kFilter).view());
    return settings;
}

bool write_settings(RegistryManager& manager, const EditorSettings& settings, int dpi)
{
    zmr::SettingsBatch batch(manager);
    bool are_kept = true;
    if (settings.placement)
        are_kept &= write_placement(manager, *settings.placement);
    if (settings.widths) {
        are_kept &= write_length(manager, kTreeWidth, settings.widths->tree_px, dpi);
        are_kept &= write_length(manager, kPreviewWidth, settings.widths->preview_px, dpi);
    }
    if (settings.sizes) {
        are_kept &= write_length(manager, kSceneHeight, settings.sizes->scene_px, dpi);
        are_kept &= write_length(manager, kPropertiesWidth, settings.sizes->properties_px, dpi);
    }
    are_kept &= manager.WriteProfileInt(kView, kScene, settings.shown.scene ? 1 : 0) != 0;
    are_kept &= manager.WriteProfileInt(kView, kLibrary, settings.shown.library ? 1 : 0) != 0;
    are_kept &= manager.WriteProfileInt(kView, kStatusBar, settings.shows_status_bar ? 1 : 0) != 0;
    are_kept &= manager.WriteProfileInt(kView, kDraw, settings.draw_type) != 0;
    are_kept &= manager.WriteProfileStringA(kView, kFilter, settings.filter.c_str()) != 0;
    return batch.commit() && are_kept;
}

zmr::WindowPlacementRecord placement_at_start(zmr::WindowPlacementRecord kept, std::uint32_t how)
{
    const bool was_maximized =
        kept.show == kShowMaximized ||
        (kept.show == kShowMinimized &&
         (kept.flags & zmr::WindowPlacementRecord::kRestoreToMaximized) != 0);
    if (how == kShowMaximized || how == kShowMinimized || how == kMinimize ||
        how == kShowMinimizedAside)
        kept.show = how;
    else
        kept.show = was_maximized ? kShowMaximized : zmr::WindowPlacementRecord::kNormal;
    return kept;
}

}  // namespace editor
