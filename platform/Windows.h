#pragma once

// The one place that includes <windows.h>, with the switches that the whole library is built with:
// the narrow functions, distinct handle types, no min and max macros.
#if defined(UNICODE) || defined(_UNICODE)
#error "ZMR_GV is built for the narrow functions: text is bytes, UTF-8 by the program's manifest."
#endif
#ifndef STRICT
#define STRICT
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef _WIN32_WINNT
#define _WIN32_WINNT 0x0601
#endif
#include <windows.h>

#include "platform/PlatformTypes.h"
