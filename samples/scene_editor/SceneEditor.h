#pragma once

#include "app/GWinApp.h"
#include "scene_editor/core/HoldTimes.h"

/// The program: it loads the module with the classes of scenes, opens the main window on the file
/// named on the command line, and measures how long each turn of its loop holds that window.
class SceneEditor : public GWinApp {
public:
    SceneEditor();

    BOOL InitInstance() override;
    BOOL PumpMessage() override;
    BOOL OnIdle(LONG count) override;
    /// Of a library or a scene among the recent files.
    BOOL OpenDocumentFile(LPCTSTR path) override;
    int DoMessageBox(LPCTSTR text, UINT type, UINT help) override;

    editor::HoldTimes holds;

protected:
    DECLARE_MESSAGE_MAP()
    void OnAppAbout();
    /// Does what a faulty handler does, to show that the program outlives it.
    void OnProvoke(UINT id);
};

/// The program's object.
[[nodiscard]] SceneEditor& the_editor();

namespace editor {

/// While it lives, a loop of the system's own takes messages: the time is not the turn's.
class SystemLoop {
public:
    SystemLoop() { the_editor().holds.pause(HoldTimes::Clock::now()); }
    ~SystemLoop() { the_editor().holds.resume(HoldTimes::Clock::now()); }
    SystemLoop(const SystemLoop&) = delete;
    SystemLoop& operator=(const SystemLoop&) = delete;
};

}  // namespace editor
