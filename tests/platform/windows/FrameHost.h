#pragma once

#include "platform/CCmdUI.h"
#include "platform/CFrameWnd.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

// Of frame.rc.
inline constexpr UINT kFrameId = 60128;
inline constexpr UINT kOpen = 60101;
inline constexpr UINT kClose = 60102;
inline constexpr UINT kUnhandled = 60103;
inline constexpr UINT kChecked = 60104;
inline constexpr UINT kRound = 60105;
inline constexpr UINT kRecent = 60106;
inline constexpr UINT kLast = 60107;
inline constexpr UINT kOverwrite = 60111;
inline constexpr UINT kObjects = 60112;

/// A frame that lives on the stack and notes what it is told.
class HostFrame : public CFrameWnd {
public:
    std::vector<std::string> calls;
    bool close_enabled = false;
    int objects = 7;
    bool overwrite = false;
    bool recent_goes = false;
    std::atomic<int> help_calls = 0;  ///< Asked by the thread that plays the keys.

    using CFrameWnd::m_rectBorder;

    void WinHelp(DWORD_PTR data, UINT) override
    {
        calls.push_back("help " + std::to_string(data));
        ++help_calls;
    }

protected:
    DECLARE_MESSAGE_MAP()

    void PostNcDestroy() override {}

    void OnOpen() { calls.push_back("open"); }
    void OnUpdateClose(CCmdUI* state) { state->Enable(close_enabled); }
    void OnUpdateChecked(CCmdUI* state)
    {
        calls.push_back("checked of popup: " + std::to_string(state->m_pSubMenu != nullptr));
        state->SetCheck(1);
        state->SetText("Renamed");
        state->Enable(FALSE);
    }
    void OnUpdateRound(CCmdUI* state) { state->SetRadio(TRUE); }
    void OnUpdateRecent(CCmdUI* state);
    void OnUpdateLast(CCmdUI* state)
    {
        calls.push_back("last at " + std::to_string(state->m_nIndex) + " of " +
                        std::to_string(state->m_nIndexMax));
    }
    void OnUpdateObjects(CCmdUI* state)
    {
        state->SetText(("Objects: " + std::to_string(objects)).c_str());
    }
    void OnUpdateOverwrite(CCmdUI* state) { state->Enable(overwrite); }
};
