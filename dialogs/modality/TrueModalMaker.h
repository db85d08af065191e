#pragma once

#include "dialogs/modality/ModalList.h"
#include "platform/Export.h"
#include "platform/Windows.h"

/// Makes a modal run modal for the whole thread: from its begin to its end, no window at the top
/// level of the calling thread takes input, whoever owns the modal one. It lives on the stack
/// around the call that runs the modal window and is made before that window, which therefore takes
/// input. An exception on the way gives the windows back, too.
///
/// Windows of other threads and those that were disabled before are left alone, so makers nest. A
/// thread without an object of its own or without a main window disables nothing.
class ZMR_GV_API TrueModalMaker {
public:
    TrueModalMaker();
    /// Enables what the begin disabled, the last one first; windows that have gone are left out.
    /// The window that had the keyboard gets it back: when the modal one goes, its frame is still
    /// disabled and cannot take it.
    ~TrueModalMaker();
    /// A copy gives the same windows back at its own end.
    TrueModalMaker(const TrueModalMaker&) = default;
    TrueModalMaker& operator=(const TrueModalMaker&) = delete;

private:
    HWND focus_;  ///< Had the keyboard at the begin; null for none.
    zmr::ModalList<HWND> windows_;
};
