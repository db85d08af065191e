#pragma once

#include "platform/Export.h"

/// A part of a class whose objects are called when the application has nothing else to do. A plain
/// mix-in without fields. Registration may happen on any thread; the passes run on the
/// user-interface thread.
class ZMR_GV_API GIdler {
public:
    /// Registers the object when `allow` is true: then a pass on another thread may call `idle`
    /// before the derived constructor has run. Classes made on worker threads pass false and
    /// register when they are whole.
    explicit GIdler(bool allow = true)
    {
        if (allow)
            allow_idle(true);
    }
    /// A copy is not registered.
    GIdler(const GIdler&) {}
    /// Leaves the registrations as they are.
    GIdler& operator=(const GIdler&) { return *this; }
    /// Unregisters.
    virtual ~GIdler();

    /// A short piece of work. It may register and unregister idlers, itself too: others may then be
    /// passed over, or called twice, in this pass. An exception ends the pass.
    virtual void idle() = 0;

    /// Registers or unregisters the object; repeating either is harmless. Waits for a pass that
    /// runs on another thread.
    void allow_idle(bool on);
    /// Whether the object is registered.
    [[nodiscard]] bool allow_idle() const;

    /// Calls all registered idlers once, in no particular order, under the lock of the
    /// registrations. One test of a pointer when there is none.
    static void CallAllIdleFunctions();
};
