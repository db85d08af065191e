// The main window: its commands, their states, and what its controls tell.
#include "controls/GMfcCommandEnabled.h"
#include "platform/CCmdUI.h"
#include "scene_editor/EditorFrame.h"
#include "scene_editor/FileChoice.h"
#include "scene_editor/SceneEditor.h"
#include "scene_editor/core/CommandLine.h"
#include "scene_editor/core/CountsText.h"
#include "scene_editor/resource.h"

namespace {

std::string text_of(const CWnd& window)
{
    CString text;
    window.GetWindowText(text);
    return std::string(static_cast<LPCTSTR>(text));
}

std::string milliseconds(std::chrono::steady_clock::duration time)
{
    return editor::span_text(std::chrono::duration_cast<editor::HoldTimes::Span>(time));
}

}  // namespace

void EditorFrame::OnFileOpen()
{
    FileChoice choice;
    choice.filter = "Libraries (*.odb)\0*.odb\0All Files (*.*)\0*.*\0";
    if (const std::optional<std::string> file = choice.ask(m_hWnd, {}))
        open_library(*file);
}

void EditorFrame::OnFileReload()
{
    const editor::DirectoryPath path = path_;
    open_library(file_);
    wanted_directory_ = path;
}

void EditorFrame::OnEntryRename()
{
    const int position = list_.GetNextItem(-1, LVNI_FOCUSED | LVNI_SELECTED);
    if (position < 0)
        return;
    list_.SetFocus();
    list_.EnsureVisible(position, FALSE);
    list_.EditLabel(position);
}

void EditorFrame::OnEntryDelete()
{
    const std::vector<EntryList::Id> rows = list_.selected_entries();
    if (rows.empty())
        return;
    const std::string what = rows.size() == 1
                                 ? "\"" + std::string(list_.rows().name(rows[0])) + "\""
                                 : editor::with_thousands(rows.size()) + " entries";
    const std::string question =
        "Delete " + what + " from the library?\n\nUndo brings it back until the library is packed.";
    const editor::ListingId listing = listing_;
    if (AfxMessageBox(question.c_str(), MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2 | MB_HELP,
                      IDP_DELETE_ENTRIES) != IDYES ||
        listing != listing_)
        return;
    worker_->remove(listing_, path_, selected_entries());
}

void EditorFrame::OnSelectAll()
{
    list_.SetFocus();
    list_.select_all();
}

void EditorFrame::OnViewFilter()
{
    filter_.SetFocus();
    filter_.SetSel(0, -1);
}

void EditorFrame::OnViewParent()
{
    editor::DirectoryPath parent = path_;
    if (parent.empty())
        return;
    const std::string below = parent.back();
    parent.pop_back();
    go_to(parent);
    wanted_row_ = below;
}

void EditorFrame::OnViewDraw(UINT id)
{
    preview_.set_draw_type(static_cast<GPixelMapView::DrawType>(id - ID_VIEW_DRAW_BASE));
}

void EditorFrame::OnDiagnosticsTimes()
{
    const editor::HoldTimes& holds = the_editor().holds;
    std::string report = "Longest hold of the window: " + editor::span_text(holds.longest()) +
                         "\nHolds above 100 ms: " + editor::with_thousands(holds.over_limit()) +
                         "\nTurns measured: " + editor::with_thousands(holds.turns()) +
                         "\nMessage of the longest hold: " + std::to_string(holds.longest_what());
    if (first_rows_after_)
        report += "\n\nFirst rows of the library after " + milliseconds(*first_rows_after_);
    if (all_rows_after_)
        report += "\nAll " + editor::with_thousands(list_.rows().entries()) +
                  " entries of its directory after " + milliseconds(*all_rows_after_);
    const SceneWindow::DrawTimes& drawn = scene_window_.draw_times();
    if (drawn.pictures > 0) {
        report += "\n\nPictures of the scene: " + editor::with_thousands(drawn.pictures) +
                  "\nMean: " + milliseconds(drawn.all / static_cast<long>(drawn.pictures)) +
                  "\nLongest: " + milliseconds(drawn.longest);
    }
    AfxMessageBox(report.c_str(), MB_OK | MB_ICONINFORMATION);
}

void EditorFrame::OnDiagnosticsReset()
{
    scene_window_.reset_draw_times();
    the_editor().holds.reset();
}

void EditorFrame::OnUpdateWithLibrary(CCmdUI* state)
{
    state->Enable(!file_.empty());
}

void EditorFrame::OnUpdateRename(CCmdUI* state)
{
    const std::optional<EntryList::Id> row = list_.single_row();
    state->Enable(is_writable_ && row && list_.rows().kind(*row) == editor::RowKind::Entry);
}

void EditorFrame::OnUpdateDelete(CCmdUI* state)
{
    // Asked for each key that may be a command, so without a walk over the rows where it can be.
    const std::size_t selected = list_.GetSelectedCount();
    const std::optional<EntryList::Id> single = list_.single_row();
    bool has_entry = selected > list_.rows().directories();
    if (single)
        has_entry = list_.rows().kind(*single) == editor::RowKind::Entry;
    else if (selected > 0 && !has_entry)
        has_entry = !list_.selected_entries().empty();
    state->Enable(is_writable_ && has_entry);
}

void EditorFrame::OnUpdateSelectAll(CCmdUI* state)
{
    state->Enable(!list_.rows().shown().empty());
}

void EditorFrame::OnUpdateParent(CCmdUI* state)
{
    state->Enable(!path_.empty());
}

void EditorFrame::OnUpdateDraw(CCmdUI* state)
{
    state->Enable();
    state->SetRadio(static_cast<int>(state->m_nID) - ID_VIEW_DRAW_BASE == preview_.draw_type());
}

void EditorFrame::OnUpdateCounts(CCmdUI* state)
{
    state->Enable();
    if (file_.empty()) {
        state->SetText("");
        return;
    }
    editor::RowCounts counts;
    counts.directories = list_.rows().directories();
    counts.entries = list_.rows().entries();
    counts.shown = list_.rows().shown().size();
    counts.is_filtered = list_.rows().is_filtered();
    counts.is_complete = is_complete_;
    if (const UINT selected = list_.GetSelectedCount(); selected > 1)
        counts.selected = selected;
    state->SetText(editor::counts_text(counts).c_str());
}

BOOL EditorFrame::OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    // One for each row when all are selected. Nobody asks: idle turns see what is selected.
    const UINT code = reinterpret_cast<NMHDR*>(lparam)->code;
    if (wparam == IDC_ENTRIES && (code == LVN_ITEMCHANGING || code == LVN_ITEMCHANGED)) {
        *result = 0;
        return TRUE;
    }
    return CFrameWnd::OnNotify(wparam, lparam, result);
}

void EditorFrame::OnFilterChanged()
{
    filter_line_ = editor::parse_filter_line(text_of(filter_));
    list_.set_filter(filter_line_.text);
    use_filter();
}

void EditorFrame::OnTreeSelected(NMHDR* header, LRESULT*)
{
    const auto& change = *reinterpret_cast<NMTREEVIEWA*>(header);
    if (const editor::DirectoryPath* const path = tree_.path_of(change.itemNew.hItem))
        show_directory(*path);
}

void EditorFrame::OnTreeExpanding(NMHDR* header, LRESULT*)
{
    const auto& change = *reinterpret_cast<NMTREEVIEWA*>(header);
    const editor::DirectoryPath* const path = tree_.path_of(change.itemNew.hItem);
    if (path != nullptr && change.action == TVE_EXPAND && !tree_.has_subdirectories_of(*path))
        worker_->list_directories(*path);
}

void EditorFrame::OnTreeKey(NMHDR* header, LRESULT* result)
{
    if (reinterpret_cast<NMTVKEYDOWN*>(header)->wVKey != VK_RETURN)
        return;
    list_.SetFocus();
    list_.focus_some_row();
    *result = 1;  // the letter is none to search for
}

void EditorFrame::OnListActivated(NMHDR*, LRESULT*)
{
    const std::optional<EntryList::Id> row = list_.single_row();
    if (!row)
        return;
    if (list_.rows().kind(*row) == editor::RowKind::Entry) {
        preview_.SetFocus();
        return;
    }
    editor::DirectoryPath path = path_;
    path.emplace_back(list_.rows().name(*row));
    go_to(path);
}

void EditorFrame::OnListKey(NMHDR* header, LRESULT*)
{
    switch (reinterpret_cast<NMLVKEYDOWN*>(header)->wVKey) {
        case VK_DELETE:
            PostMessage(WM_COMMAND, ID_ENTRY_DELETE);
            break;
        case VK_INSERT:
            // No command of the menu that would be refused there.
            if (GMfcCommandEnabled(*this, ID_SCENE_ADD))
                OnSceneAdd();
            break;
        case VK_BACK:
            OnViewParent();
            break;
        case 'A':
            if (::GetKeyState(VK_CONTROL) < 0 && ::GetKeyState(VK_SHIFT) >= 0)
                list_.select_all();
            break;
        case 'Z':
            if (::GetKeyState(VK_CONTROL) < 0)
                PostMessage(WM_COMMAND, ID_ENTRY_UNDO);
            break;
        default:
            break;
    }
}

void EditorFrame::OnListCached(NMHDR*, LRESULT*)
{
    ask_for_icons();  // also while a scroll bar is held, when there are no idle turns
}

void EditorFrame::OnListBeginEdit(NMHDR* header, LRESULT* result)
{
    const int position = reinterpret_cast<NMLVDISPINFOA*>(header)->item.iItem;
    edited_row_.reset();
    if (is_writable_ && list_.has_position(position) &&
        list_.rows().kind(list_.row_at(position)) == editor::RowKind::Entry)
        edited_row_ = list_.row_at(position);
    *result = edited_row_ ? FALSE : TRUE;
}

void EditorFrame::OnListEndEdit(NMHDR* header, LRESULT* result)
{
    *result = FALSE;  // the row changes when the library has
    const char* const text = reinterpret_cast<NMLVDISPINFOA*>(header)->item.pszText;
    const std::optional<EntryList::Id> row = std::exchange(edited_row_, std::nullopt);
    if (text == nullptr || !row || text == list_.rows().name(*row))
        return;
    worker_->rename(listing_, path_, {*row, std::string(list_.rows().name(*row))}, text);
}
