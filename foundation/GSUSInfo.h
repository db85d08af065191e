#pragma once

#include "platform/Export.h"

/// The scale of lengths in files and on the screen. Process-wide, user-interface thread.
class ZMR_GV_API GSUSInfo {
public:
    /// Sets the scale for values that are read from now on: file units per scene unit. Factors that
    /// are not finite and positive count as 1.
    static void InputScale(double scale);
    [[nodiscard]] static double GetInputScale();
    /// The present view scale, 1 unless the host set another. `is_default`, when given, tells
    /// whether it is still the initial one.
    [[nodiscard]] static double GetViewScale(bool* is_default);
    static void SetViewScale(double scale);
};
