#pragma once

#include "platform/Windows.h"

/// Posted to the main window when results of the worker wait.
inline constexpr UINT WM_RESULTS_WAIT = WM_APP + 1;
