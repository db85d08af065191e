#include "PluginExport.h"

#include "foundation/ModuleObjects.h"
#include "platform/CWnd.h"

// A plug-in with a window: its messages come to the plug-in's code.

namespace {

class PluginWindow : public CWnd {
public:
    static constexpr UINT kAsk = WM_APP + 1;
    static constexpr LRESULT kAnswer = 4711;

protected:
    DECLARE_MESSAGE_MAP()

    LRESULT OnAsk(WPARAM, LPARAM) { return kAnswer; }
    void PostNcDestroy() override { delete this; }

private:
    [[no_unique_address]] zmr::CountedObject<PluginWindow> counted_;
};

BEGIN_MESSAGE_MAP(PluginWindow, CWnd)
    ON_MESSAGE(PluginWindow::kAsk, &PluginWindow::OnAsk)
END_MESSAGE_MAP()

}  // namespace

PLUGIN_EXPORT HWND plugin_open_window();

HWND plugin_open_window()
{
    auto* const window = new PluginWindow;  // deletes itself behind its window
    if (!window->CreateEx(0, AfxRegisterWndClass(0), "Plug-in", WS_OVERLAPPEDWINDOW,
                          CRect(0, 0, 100, 100), nullptr, 0))
        return nullptr;
    return window->GetSafeHwnd();
}
