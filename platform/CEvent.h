#pragma once

#include "platform/CObject.h"
#include "platform/Handles.h"

/// An event of the system, owned. Any thread.
class ZMR_GV_API CEvent : public CObject {
    DECLARE_DYNAMIC(CEvent)

public:
    /// One that resets itself when a waiter was let through, unless `manual_reset`. Throws
    /// CResourceException when the system refuses.
    explicit CEvent(BOOL initially_set = FALSE, BOOL manual_reset = FALSE, LPCTSTR name = nullptr,
                    LPSECURITY_ATTRIBUTES security = nullptr);

    BOOL SetEvent() { return ::SetEvent(m_hObject); }
    BOOL ResetEvent() { return ::ResetEvent(m_hObject); }
    /// Waits until it is set. FALSE when the time is over before.
    BOOL Lock(DWORD milliseconds = INFINITE);
    BOOL Unlock() { return TRUE; }
    operator HANDLE() const { return m_hObject; }

    HANDLE m_hObject;  ///< Closed with the object.

private:
    zmr::OwnedKernelHandle owned_;
};
