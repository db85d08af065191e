#include "scene_editor/core/HelpTopics.h"

#include "platform/PlatformIds.h"
#include "scene_editor/resource.h"

#include <algorithm>
#include <array>

namespace editor {

namespace {

// The help's map has a line for each of them.
constexpr std::array kControls{
    IDC_DIRECTORIES,    IDC_FILTER,   IDC_ENTRIES,  IDC_PREVIEW,  IDC_SCENE,       IDC_PROPERTIES,
    IDC_STATUS_GENERAL, IDC_STATUS_X, IDC_STATUS_Y, IDC_STATUS_Z, IDC_STATUS_GRID,
};

}  // namespace

std::uint32_t help_topic_of(int control)
{
    const bool is_known = std::find(kControls.begin(), kControls.end(), control) != kControls.end();
    return is_known ? static_cast<std::uint32_t>(HID_BASE_CONTROL + control) : 0;
}

}  // namespace editor
