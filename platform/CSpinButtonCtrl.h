#pragma once

#include "platform/CommonControls.h"

/// A pair of arrows that steps a number, often that in the window beside it, its buddy. User-
/// interface thread.
class ZMR_GV_API CSpinButtonCtrl : public CWnd {
    DECLARE_DYNAMIC(CSpinButtonCtrl)

public:
    CSpinButtonCtrl() = default;
    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    /// Steps that grow the longer an arrow is held.
    BOOL SetAccel(int count, UDACCEL* steps)
    {
        return zmr::ask(*this, UDM_SETACCEL, zmr::wparam_of(count), zmr::lparam_of(steps));
    }
    [[nodiscard]] UINT GetAccel(int room, UDACCEL* steps) const
    {
        return static_cast<UINT>(
            zmr::ask(*this, UDM_GETACCEL, zmr::wparam_of(room), zmr::lparam_of(steps)));
    }
    /// 10 or 16.
    int SetBase(int base) { return zmr::ask(*this, UDM_SETBASE, zmr::wparam_of(base)); }
    [[nodiscard]] UINT GetBase() const { return static_cast<UINT>(zmr::ask(*this, UDM_GETBASE)); }
    CWnd* SetBuddy(CWnd* buddy)
    {
        return FromHandle(zmr::ask_for<HWND>(*this, UDM_SETBUDDY,
                                             reinterpret_cast<WPARAM>(GetSafeHandle(buddy))));
    }
    [[nodiscard]] CWnd* GetBuddy() const
    {
        return FromHandle(zmr::ask_for<HWND>(*this, UDM_GETBUDDY));
    }
    /// The former position.
    int SetPos(int position)
    {
        return static_cast<short>(LOWORD(zmr::ask(*this, UDM_SETPOS, 0, MAKELPARAM(position, 0))));
    }
    [[nodiscard]] int GetPos() const
    {
        return static_cast<short>(LOWORD(zmr::ask(*this, UDM_GETPOS)));
    }
    int SetPos32(int position) { return zmr::ask(*this, UDM_SETPOS32, 0, position); }
    /// `failed`, where given, tells that the buddy's text is no number.
    [[nodiscard]] int GetPos32(BOOL* failed = nullptr) const
    {
        return zmr::ask(*this, UDM_GETPOS32, 0, zmr::lparam_of(failed));
    }
    void SetRange(short lower, short upper)
    {
        zmr::ask(*this, UDM_SETRANGE, 0, MAKELPARAM(upper, lower));
    }
    void GetRange(int& lower, int& upper) const
    {
        const auto both = static_cast<DWORD>(zmr::ask(*this, UDM_GETRANGE));
        upper = static_cast<short>(LOWORD(both));
        lower = static_cast<short>(HIWORD(both));
    }
    void SetRange32(int lower, int upper)
    {
        zmr::ask(*this, UDM_SETRANGE32, zmr::wparam_of(lower), upper);
    }
    void GetRange32(int& lower, int& upper) const
    {
        zmr::ask(*this, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&lower), zmr::lparam_of(&upper));
    }
};
