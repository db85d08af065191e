#include "scene_editor/SceneEditor.h"

#include "platform/PlatformIds.h"
#include "scene_editor/EditorFrame.h"
#include "scene_editor/core/CommandLine.h"
#include "scene_editor/resource.h"
#include "settings/RegistryManager.h"

#include <cstdlib>

BEGIN_MESSAGE_MAP(SceneEditor, GWinApp)
    ON_COMMAND(ID_APP_ABOUT, &SceneEditor::OnAppAbout)
    ON_COMMAND(ID_APP_EXIT, &SceneEditor::OnAppExit)
    ON_COMMAND_RANGE(ID_PROVOKE_FIRST, ID_PROVOKE_LAST, &SceneEditor::OnProvoke)
END_MESSAGE_MAP()

namespace {

SceneEditor g_editor;

constexpr const char* kSceneModule = "scene_module.dll";  // beside the program
// The user's settings lie in the file that this names, full; else in the registry.
constexpr const char* kSettingsVariable = "SCENE_EDITOR_SETTINGS";
constexpr const char* kRegistryKey = "Zomarra";
constexpr unsigned kRecentFiles = 9;  // each has a key of its own in the menu

void choose_settings(const char* program)
{
    const char* const file = std::getenv(kSettingsVariable);
    if (file != nullptr && *file != '\0')
        RegistryManager::get()->Initialize(nullptr, file);
    else
        RegistryManager::get()->Initialize(kRegistryKey, program);
}

}  // namespace

SceneEditor& the_editor()
{
    return g_editor;
}

SceneEditor::SceneEditor()
{
    m_pszAppName = "Scene Editor";
}

BOOL SceneEditor::InitInstance()
{
    if (!GWinApp::InitInstance())
        return FALSE;
    choose_settings(m_pszAppName);
    LoadStdProfileSettings(kRecentFiles);
    // Without the module libraries open all the same; its objects then show their icons only.
    load_external_modules(kSceneModule, nullptr);

    auto* const frame = new EditorFrame;  // deletes itself with its window
    if (!frame->create())
        return FALSE;
    m_pMainWnd = frame;
    frame->show(m_nCmdShow);
    frame->UpdateWindow();
    const editor::NamedFiles files = editor::named_files(m_lpCmdLine);
    if (!files.library.empty())
        frame->open_library(files.library);
    if (!files.scene.empty())
        frame->open_scene(files.scene);
    return TRUE;
}

BOOL SceneEditor::PumpMessage()
{
    using Clock = editor::HoldTimes::Clock;
    MSG next{};
    while (!::PeekMessage(&next, nullptr, 0, 0, PM_NOREMOVE))
        ::WaitMessage();
    holds.begin(Clock::now(), next.message);
    const BOOL goes_on = GWinApp::PumpMessage();
    holds.end(Clock::now());
    return goes_on;
}

BOOL SceneEditor::OnIdle(LONG count)
{
    using Clock = editor::HoldTimes::Clock;
    // A turn above 0 sleeps; one inside a loop of the system's own is a part of that.
    if (count > 0 || holds.is_paused())
        return GWinApp::OnIdle(count);
    holds.begin(Clock::now(), WM_NULL);
    const BOOL goes_on = GWinApp::OnIdle(count);
    holds.end(Clock::now());
    return goes_on;
}

BOOL SceneEditor::OpenDocumentFile(LPCTSTR path)
{
    if (static_cast<EditorFrame*>(m_pMainWnd)->open_recent(path))
        return TRUE;
    // Off the list for good, also where the program does not come to its end.
    m_pRecentFileList->RemoveName(path);
    SaveStdProfileSettings();
    return FALSE;
}

int SceneEditor::DoMessageBox(LPCTSTR text, UINT type, UINT help)
{
    const editor::SystemLoop loop;
    return GWinApp::DoMessageBox(text, type, help);
}

void SceneEditor::OnAppAbout()
{
    AfxMessageBox(
        "Scene Editor 0.1\n\nPuts models into scenes; shows and keeps libraries of models, "
        "materials "
        "and pictures. A sample host of the library ZMR_GV.",
        MB_OK | MB_ICONINFORMATION);
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR command_line, int show)
{
    return AfxWinMain(instance, previous, command_line, show);
}
