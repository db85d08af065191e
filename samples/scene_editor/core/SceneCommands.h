#pragma once

#include "graphics/RGB_Color.h"
#include "scene_editor/core/SceneDocument.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace editor {

/// What can be done to the scene. The numbers are the ids of these commands in the process's
/// command set.
enum class SceneCommand : std::uint8_t {
    New,
    Open,
    Save,
    SaveAs,
    AddFromLibrary,
    Delete,
    BringToFront,
    SendToBack,
    SnapToGrid,
    Hide,
    ShowAll,
    Disable,
    EnableAll,
    SelectNext,
    SelectPrevious,
    ViewAll,
    FirstColor = 16,  ///< The scene's own colour; then those of kColors.
    LastColor = 22,
};

struct NamedColor {
    const char* name;
    RGB_Color color;
};
/// The colours that objects can be given.
inline constexpr std::array<NamedColor, 6> kColors{{
    {"Red", {214, 62, 52}},
    {"Orange", {236, 148, 40}},
    {"Green", {78, 168, 86}},
    {"Blue", {58, 118, 214}},
    {"Violet", {142, 88, 190}},
    {"White", {236, 236, 232}},
}};

/// Sets the states of all these commands to what the scene allows now: grey, or with a mark. What
/// is shown of a command asks there. `has_model_row`: a model is selected in the library.
void update_commands(const SceneDocument& document, bool has_model_row);

/// True for the name of a class whose objects are models.
[[nodiscard]] bool is_model_class(std::string_view class_name);

/// Does one of the commands that ask nothing and touch no file: those from Delete on. False, with
/// nothing done, for the others and where it is not enabled now.
bool run_command(SceneDocument& document, SceneCommand command);

}  // namespace editor
