#pragma once

#include <cstdint>

namespace editor {

/// The help's topic about the pane, the field or the bar of that id; 0 where the help has none, and
/// what lies around it is asked.
[[nodiscard]] std::uint32_t help_topic_of(int control);

}  // namespace editor
