#pragma once

#include "foundation/GString.h"
#include "platform/PlatformTypes.h"

/// A loaded dynamic library; unloaded at the end of its life. Its classes register as it loads and
/// leave as it unloads. While objects of its counted classes live (zmr::CountedObject) it stays as
/// it is and is unloaded by the next UnloadWaiting without any. Objects of classes that do not
/// count themselves must be gone before.
class ZMR_GV_API GDynamicLinkLibrary {
public:
    /// Tries to load the library of that file name; a null name loads nothing yet. `flags` is kept
    /// for callers that pass one; 0.
    GDynamicLinkLibrary(const char* name, int flags);
    ~GDynamicLinkLibrary();
    GDynamicLinkLibrary(const GDynamicLinkLibrary&) = delete;
    GDynamicLinkLibrary& operator=(const GDynamicLinkLibrary&) = delete;
    /// Unloads what is loaded and loads `name`. False, with a null `module`, on failure.
    bool load(const char* name, int flags);
    /// The address of an exported symbol, or null.
    [[nodiscard]] void* find_symbol(const char* name) const;
    /// Why the last load on this thread failed, for a message.
    [[nodiscard]] static GString LastError();
    /// Unloads the libraries that waited for the end of their objects and have none any more.
    /// Returns how many still wait. Loading and unloading do it as well. User-interface thread.
    static long UnloadWaiting();

    HINSTANCE module = nullptr;  ///< Null when nothing is loaded.

private:
    void unload();
    static void Free(HINSTANCE module);
};
