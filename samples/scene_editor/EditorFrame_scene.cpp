// The main window: the scene, its file and its commands.
#include "platform/CCmdUI.h"
#include "platform/CWinApp.h"
#include "scene_editor/EditorFrame.h"
#include "scene_editor/FileChoice.h"
#include "scene_editor/resource.h"

namespace {

constexpr const char* kSceneFilter = "Scenes (*.scene)\0*.scene\0All Files (*.*)\0*.*\0";

constexpr editor::SceneCommand command_of(UINT id)
{
    return static_cast<editor::SceneCommand>(id - ID_SCENE_FIRST);
}

static_assert(command_of(ID_SCENE_ADD) == editor::SceneCommand::AddFromLibrary);
static_assert(command_of(ID_SCENE_VIEW_ALL) == editor::SceneCommand::ViewAll);
static_assert(command_of(ID_SCENE_COLOR_OWN) == editor::SceneCommand::FirstColor);
static_assert(command_of(ID_SCENE_LAST) == editor::SceneCommand::LastColor);

}  // namespace

bool EditorFrame::create_scene_panes()
{
    return scene_window_.create(*this, IDC_SCENE, dpi_, document_) &&
           properties_splitter_.create(*this, IDC_PROPERTIES_SPLITTER) &&
           properties_.create(*this, IDC_PROPERTIES, font_, dpi_) &&
           library_splitter_.create(*this, IDC_LIBRARY_SPLITTER,
                                    PaneSplitter::Between::AboveAndBelow);
}

void EditorFrame::begin_scene()
{
    if (document_.begin_new())
        return;
    // Without the module there are no scenes; libraries show all the same.
    shown_.scene = false;
    editor::update_commands(document_, false);
}

void EditorFrame::show_scene_change()
{
    editor::update_commands(document_, has_model_row());
    properties_.watch(document_.current());
    show_grid();
    scene_window_.show_change();
}

bool EditorFrame::has_model_row() const
{
    if (list_.GetSafeHwnd() == nullptr)
        return false;
    const std::optional<EntryList::Id> row = list_.single_row();
    return row && list_.rows().kind(*row) == editor::RowKind::Entry &&
           editor::is_model_class(list_.rows().class_name(*row));
}

void EditorFrame::open_scene(const std::string& file)
{
    if (const std::optional<std::string> refusal = document_.load(file)) {
        AfxMessageBox(("The scene can't be opened.\n\n" + *refusal).c_str(),
                      MB_OK | MB_ICONEXCLAMATION | MB_HELP, IDP_SCENE_NOT_OPENED);
        return;
    }
    scene_window_.show_scene();
    AfxGetApp()->AddToRecentFileList(file.c_str());
}

bool EditorFrame::save_scene(const std::string& file)
{
    const std::optional<std::string> refusal = document_.save(file);
    if (refusal)
        AfxMessageBox(refusal->c_str(), MB_OK | MB_ICONEXCLAMATION | MB_HELP, IDP_SCENE_NOT_SAVED);
    else
        AfxGetApp()->AddToRecentFileList(file.c_str());
    return !refusal;
}

bool EditorFrame::save_scene_as()
{
    FileChoice choice;
    choice.what = FileChoice::For::Saving;
    choice.filter = kSceneFilter;
    choice.extension = "scene";
    const std::optional<std::string> file = choice.ask(m_hWnd, document_.file());
    return file && save_scene(*file);
}

bool EditorFrame::may_leave_scene()
{
    if (!document_.is_changed())
        return true;
    const std::string question = "Save the changes of the scene \"" + document_.name() + "\"?";
    switch (AfxMessageBox(question.c_str(), MB_YESNOCANCEL | MB_ICONQUESTION | MB_HELP,
                          IDP_SAVE_SCENE)) {
        case IDYES:
            return document_.file().empty() ? save_scene_as() : save_scene(document_.file());
        case IDNO:
            return true;
        default:
            return false;
    }
}

void EditorFrame::OnClose()
{
    if (!may_leave_scene())
        return;
    keep_settings();  // while the window stands where it stood
    CFrameWnd::OnClose();
}

BOOL EditorFrame::OnQueryEndSession()
{
    return may_leave_scene() && CFrameWnd::OnQueryEndSession();
}

void EditorFrame::OnEndSession(BOOL ends)
{
    if (ends)
        keep_settings();
    CFrameWnd::OnEndSession(ends);
}

void EditorFrame::OnSceneNew()
{
    if (may_leave_scene() && document_.begin_new())
        scene_window_.show_scene();
}

void EditorFrame::OnSceneOpen()
{
    if (!may_leave_scene())
        return;
    FileChoice choice;
    choice.filter = kSceneFilter;
    choice.extension = "scene";
    if (const std::optional<std::string> file = choice.ask(m_hWnd, {}))
        open_scene(*file);
}

void EditorFrame::OnSceneSave()
{
    static_cast<void>(document_.file().empty() ? save_scene_as() : save_scene(document_.file()));
}

void EditorFrame::OnSceneSaveAs()
{
    static_cast<void>(save_scene_as());
}

void EditorFrame::OnSceneAdd()
{
    if (const std::optional<EntryList::Id> row = list_.single_row())
        worker_->want_object(path_, std::string(list_.rows().name(*row)));
}

void EditorFrame::OnSceneCommand(UINT id)
{
    editor::run_command(document_, command_of(id));
}

void EditorFrame::OnUpdateScene(CCmdUI* state)
{
    const unsigned long command = state->m_nID - ID_SCENE_FIRST;
    // The row of the library changes without a word.
    if (state->m_nID == ID_SCENE_ADD)
        editor::update_commands(document_, has_model_row());
    state->Enable(GResponder::CommandEnabled(command));
    if (state->m_nID >= ID_SCENE_COLOR_OWN)
        state->SetRadio(GResponder::CommandSelected(command));
    else
        state->SetCheck(GResponder::CommandChecked(command));
}

void EditorFrame::OnViewPart(UINT id)
{
    bool& part = id == ID_VIEW_SCENE ? shown_.scene : shown_.library;
    bool& other = id == ID_VIEW_SCENE ? shown_.library : shown_.scene;
    part = !part;
    // One of the two is always seen.
    if (!part && !other)
        other = true;
    RecalcLayout();
    const std::vector<HWND> panes = panes_in_order();
    if (!::IsWindowVisible(::GetFocus()) && !panes.empty())
        ::SetFocus(panes.front());
}

void EditorFrame::OnUpdatePart(CCmdUI* state)
{
    const bool is_scene = state->m_nID == ID_VIEW_SCENE;
    state->Enable(document_.root() != nullptr);
    state->SetCheck(is_scene ? shown_.scene : shown_.library);
}
