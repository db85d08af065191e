#pragma once

/// The export mark of every public class and function. The library's own sources compile with
/// ZMR_GV_BUILD; programs that take the folders' objects in directly, as the unit tests do,
/// compile with ZMR_GV_STATIC; hosts and modules define neither.
#if defined(ZMR_GV_STATIC)
#define ZMR_GV_API
#elif defined(_WIN32)
#if defined(ZMR_GV_BUILD)
#define ZMR_GV_API __declspec(dllexport)
#else
#define ZMR_GV_API __declspec(dllimport)
#endif
#else
#define ZMR_GV_API __attribute__((visibility("default")))
#endif
