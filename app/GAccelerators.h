#pragma once

#include "platform/Export.h"
#include "platform/Windows.h"

/// A table of accelerators for one window, whichever it is: the application offers each message to
/// all live objects before anything else sees it. Two objects may serve the same window. Window and
/// table are borrowed. User-interface thread.
class ZMR_GV_API GAccelerators {
public:
    /// Serves no window yet, but stands in the list.
    GAccelerators();
    virtual ~GAccelerators();
    GAccelerators(const GAccelerators&) = delete;
    GAccelerators& operator=(const GAccelerators&) = delete;

    /// The window whose messages are translated; null for none. Messages for its children are not.
    void assign_to(HWND window) { window_ = window; }
    /// Takes a table from the resources: of the first module of the chain that has it, or of the
    /// given one. False, and no table, when there is none of that name.
    [[nodiscard]] bool load(unsigned int id);
    [[nodiscard]] bool load(const char* name);
    [[nodiscard]] bool load(HINSTANCE module, unsigned int id);
    [[nodiscard]] bool load(HINSTANCE module, const char* name);

    /// Sends the window the command that the key stands for. Not 0 when there is one; 0 without a
    /// table, for another window's message, and when the window has gone.
    int translate(MSG* message) const;
    /// Offers the message to all live objects until one takes it.
    static bool Translate(MSG* message);

private:
    HACCEL table_ = nullptr;  ///< The module's, which ends it.
    HWND window_ = nullptr;
};
