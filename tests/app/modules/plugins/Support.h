#pragma once

// The library that the second plug-in needs.

#if !defined(_WIN32)
#define SUPPORT_EXPORT __attribute__((visibility("default")))
#elif defined(SUPPORT_BUILD)
#define SUPPORT_EXPORT __declspec(dllexport)
#else
#define SUPPORT_EXPORT __declspec(dllimport)
#endif

extern "C" SUPPORT_EXPORT int support_number();
