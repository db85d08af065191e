#pragma once

class GStreamable;

// What the test's plug-ins export, by name.

#if defined(_WIN32)
#define PLUGIN_EXPORT extern "C" __declspec(dllexport)
#else
#define PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
#endif

/// Is told the name of a plug-in whose static objects end.
using EndListener = void (*)(const char* name);
/// plugin_tell_end: names the listener; null for none.
using TellEnd = void (*)(EndListener listener);
/// plugin_make: a new object of the plug-in's class, the caller's.
using MakeThing = GStreamable* (*)();
/// plugin_use_library: has the library work a little. What went wrong, empty when nothing did.
using UseLibrary = const char* (*)();
