#pragma once

#include "platform/CommonControls.h"

/// A bar that fills as work goes on. User-interface thread.
class ZMR_GV_API CProgressCtrl : public CWnd {
    DECLARE_DYNAMIC(CProgressCtrl)

public:
    CProgressCtrl() = default;
    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    void SetRange32(int first, int last)
    {
        zmr::ask(*this, PBM_SETRANGE32, zmr::wparam_of(first), last);
    }
    void SetRange(short first, short last) { SetRange32(first, last); }
    void GetRange(int& first, int& last) const
    {
        PBRANGE range{};
        zmr::ask(*this, PBM_GETRANGE, TRUE, zmr::lparam_of(&range));
        first = range.iLow;
        last = range.iHigh;
    }
    [[nodiscard]] int GetPos() const { return zmr::ask(*this, PBM_GETPOS); }
    // These give the former position or step.
    int SetPos(int position) { return zmr::ask(*this, PBM_SETPOS, zmr::wparam_of(position)); }
    int OffsetPos(int by) { return zmr::ask(*this, PBM_DELTAPOS, zmr::wparam_of(by)); }
    int SetStep(int step) { return zmr::ask(*this, PBM_SETSTEP, zmr::wparam_of(step)); }
    int StepIt() { return zmr::ask(*this, PBM_STEPIT); }
};
