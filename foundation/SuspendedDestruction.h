#pragma once

#include "platform/Export.h"

#include <atomic>

class GObject;

/// Deferred freeing of destroyed objects, so that code that is still on the stack of an object can
/// return through it. Off at the start of the process. Any thread may destroy; DestroyAll belongs
/// to the user-interface thread.
class ZMR_GV_API SuspendedDestruction {
public:
    /// Switches deferring on or off. Off frees what waits.
    static void Enable(unsigned char enable);
    [[nodiscard]] static bool IsEnabled() { return enabled_; }
    /// Frees everything that waits, also what that adds. One test when nothing waits.
    static void DestroyAll();

private:
    friend class GObject;
    /// Takes the object in; false when deferring is off and the caller frees it itself.
    [[nodiscard]] static bool Add(GObject* object);
    /// Takes a waiting object out, which is being deleted directly.
    static void Forget(GObject* object);

    static std::atomic<bool> enabled_;
};
