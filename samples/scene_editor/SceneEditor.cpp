#include "scene_editor/SceneEditor.h"

#include "foundation/GDynamicLinkLibrary.h"
#include "platform/PlatformIds.h"
#include "scene_editor/EditorFrame.h"
#include "scene_editor/core/CommandLine.h"

BEGIN_MESSAGE_MAP(SceneEditor, CWinApp)
    ON_COMMAND(ID_APP_ABOUT, &SceneEditor::OnAppAbout)
    ON_COMMAND(ID_APP_EXIT, &SceneEditor::OnAppExit)
END_MESSAGE_MAP()

namespace {

SceneEditor g_editor;

constexpr const char* kSceneModule = "scene_module.dll";  // beside the program

}  // namespace

SceneEditor& the_editor()
{
    return g_editor;
}

SceneEditor::SceneEditor() : CWinApp("Scene Editor") {}

SceneEditor::~SceneEditor() = default;

BOOL SceneEditor::InitInstance()
{
    // Without the module libraries open all the same; its objects then show their icons only.
    scene_module_ = std::make_unique<GDynamicLinkLibrary>(kSceneModule, 0);

    auto* const frame = new EditorFrame;  // deletes itself with its window
    if (!frame->create())
        return FALSE;
    m_pMainWnd = frame;
    frame->ShowWindow(m_nCmdShow);
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
    const BOOL goes_on = CWinApp::PumpMessage();
    holds.end(Clock::now());
    return goes_on;
}

BOOL SceneEditor::OnIdle(LONG count)
{
    using Clock = editor::HoldTimes::Clock;
    holds.begin(Clock::now(), WM_NULL);
    const BOOL goes_on = CWinApp::OnIdle(count);
    holds.end(Clock::now());
    return goes_on;
}

int SceneEditor::DoMessageBox(LPCTSTR text, UINT type, UINT help)
{
    const editor::SystemLoop loop;
    return CWinApp::DoMessageBox(text, type, help);
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
