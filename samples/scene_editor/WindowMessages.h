#pragma once

#include "platform/Windows.h"

/// Posted to the main window when results of the worker wait.
inline constexpr UINT WM_RESULTS_WAIT = WM_APP + 1;

/// Posted to the window that plays a movie when there is a frame to draw.
inline constexpr UINT WM_MOVIE_FRAME = WM_APP + 5;
