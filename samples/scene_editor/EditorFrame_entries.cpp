// The main window: what is done with entries and with the library, and how the list is filtered.
#include "platform/CCmdUI.h"
#include "platform/CMenu.h"
#include "scene_editor/EditorFrame.h"
#include "scene_editor/FileChoice.h"
#include "scene_editor/SceneEditor.h"
#include "scene_editor/TextRequest.h"
#include "scene_editor/WindowMessages.h"
#include "scene_editor/core/CommandLine.h"
#include "scene_editor/core/NamesUpdate.h"
#include "scene_editor/core/PreviewTexts.h"
#include "scene_editor/resource.h"
#include "settings/MsgBox.h"

#include <algorithm>

namespace {

constexpr const char* kLibraryFilter = "Libraries (*.odb)\0*.odb\0All Files (*.*)\0*.*\0";
constexpr UINT_PTR kWorkTimer = 1;
constexpr UINT kQuietWorkMs = 300;  // work that takes less is not shown
constexpr int kPreviewSize_px = 480;

}  // namespace

bool EditorFrame::create_library_row()
{
    const DWORD choice =
        WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_CLIPSIBLINGS | CBS_DROPDOWNLIST;
    const DWORD quiet = WS_CHILD | WS_CLIPSIBLINGS;
    return filter_choice_.Create(choice, RECT{}, this, IDC_FILTER_CHOICE) != FALSE &&
           work_text_.Create("", quiet | SS_LEFT | SS_CENTERIMAGE | SS_NOPREFIX, RECT{}, this,
                             IDC_WORK_TEXT) != FALSE &&
           work_bar_.Create(quiet, RECT{}, this, IDC_WORK_BAR) != FALSE &&
           work_stop_.Create("Stop", quiet | BS_PUSHBUTTON, RECT{}, this, ID_LIBRARY_STOP) != FALSE;
}

void EditorFrame::list_again()
{
    if (const std::optional<EntryList::Id> row = list_.single_row())
        wanted_row_ = list_.rows().name(*row);
    const std::string wanted = wanted_row_;
    show_directory(path_);
    wanted_row_ = wanted;
}

std::vector<editor::ListedEntry> EditorFrame::selected_entries() const
{
    std::vector<editor::ListedEntry> entries;
    for (const EntryList::Id row : list_.selected_entries())
        entries.push_back({row, std::string(list_.rows().name(row))});
    return entries;
}

bool EditorFrame::has_single_entry() const
{
    const std::optional<EntryList::Id> row = list_.single_row();
    return row && list_.rows().kind(*row) == editor::RowKind::Entry;
}

bool EditorFrame::is_selected_shown() const
{
    const std::optional<EntryList::Id> row = list_.single_row();
    const editor::PreviewLoaded& shown = preview_.shown();
    return row && shown.path == path_ && !shown.name.empty() &&
           shown.name == list_.rows().name(*row);
}

void EditorFrame::OnEntryUndo()
{
    if (deletions_ > 0)
        worker_->restore();
}

void EditorFrame::OnEntryDescribe()
{
    if (!is_selected_shown()) {
        wanted_command_ = ID_ENTRY_DESCRIBE;  // what it is now is part of the question
        return;
    }
    const std::string name = preview_.shown().name;
    const editor::DirectoryPath path = preview_.shown().path;
    const std::string prompt = "What \"" + name + "\" is:";
    TextRequest request;
    request.title = "Describe";
    request.prompt = prompt.c_str();
    request.text = preview_.shown().description;
    request.has_lines = true;
    if (const std::optional<std::string> text = request.ask(m_hWnd))
        worker_->describe(path, name, *text);
}

void EditorFrame::OnEntryCopyTo()
{
    const std::vector<editor::ListedEntry> entries = selected_entries();
    const editor::DirectoryPath path = path_;
    if (entries.empty())
        return;
    FileChoice choice;
    choice.what = FileChoice::For::Adding;
    choice.filter = kLibraryFilter;
    choice.extension = "odb";
    if (const std::optional<std::string> file = choice.ask(m_hWnd, {}))
        worker_->copy(path, entries, *file, path);
}

void EditorFrame::OnEntryPicture(UINT id)
{
    if (!is_selected_shown())
        return;
    const editor::PreviewLoaded& shown = preview_.shown();
    const std::string picture = editor::picture_after(shown, id == ID_ENTRY_NEXT_PICTURE ? 1 : -1);
    if (picture.empty())
        worker_->want_preview(shown.path, shown.name, kPreviewSize_px);
    else
        worker_->want_picture(shown.path, shown.name, picture, kPreviewSize_px);
}

void EditorFrame::OnEntryMovie()
{
    if (!is_selected_shown()) {
        wanted_command_ = ID_ENTRY_MOVIE;
        return;
    }
    const editor::PreviewLoaded& shown = preview_.shown();
    if (shown.movie.empty())
        complain("\"" + shown.name + "\" has no movie.");
    else if (!movie_.play(*this, font_, dpi_, shown.name, shown.movie))
        complain("There can be no window for the movie.");
    PostMessage(WM_RESULTS_WAIT);  // a complaint is shown with those of the worker
}

void EditorFrame::OnLibraryAdd()
{
    FileChoice choice;
    choice.filter = "All Files (*.*)\0*.*\0";
    const editor::DirectoryPath path = path_;
    const std::vector<std::string> files = choice.ask_for_several(m_hWnd);
    if (!files.empty())
        worker_->add(path, files);
}

void EditorFrame::OnLibraryPack()
{
    const std::string question =
        deletions_ == 0
            ? "Make the library's file as small as its content?"
            : "Make the library's file as small as its content?\n\nWhat was deleted can't be "
              "brought back then.";
    if (AfxMessageBox(question.c_str(), MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES)
        worker_->pack();
}

void EditorFrame::OnLibraryStop()
{
    worker_->stop_work();
    if (::GetFocus() == work_stop_.m_hWnd)
        list_.SetFocus();
}

void EditorFrame::OnContextMenu(CWnd* window, CPoint point)
{
    if (window == nullptr || window->m_hWnd != list_.m_hWnd) {
        CFrameWnd::OnContextMenu(window, point);
        return;
    }
    if (point.x == -1 && point.y == -1) {  // by the keyboard: at the row
        CRect row;
        const int position = list_.GetNextItem(-1, LVNI_FOCUSED | LVNI_SELECTED);
        if (position < 0 || !list_.GetItemRect(position, &row, LVIR_LABEL))
            list_.GetClientRect(&row);
        point = CPoint(row.left, position < 0 ? row.top : row.bottom);
        list_.ClientToScreen(&point);
    }
    CMenu menu;
    if (!menu.LoadMenu(IDR_ENTRY_MENU))
        return;
    const editor::SystemLoop loop;
    menu.GetSubMenu(0)->TrackPopupMenu(TPM_LEFTALIGN | TPM_RIGHTBUTTON, static_cast<int>(point.x),
                                       static_cast<int>(point.y), this);
}

editor::EntryFilter EditorFrame::wanted_filter() const
{
    editor::EntryFilter filter;
    const int chosen = filter_choice_.GetCurSel();
    if (chosen >= 0 && static_cast<std::size_t>(chosen) < filter_choices_.size())
        filter = filter_choices_[static_cast<std::size_t>(chosen)].filter;
    filter.expression = filter_line_.is_valid ? filter_line_.expression : listed_filter_.expression;
    return filter;
}

void EditorFrame::use_filter()
{
    if (!file_.empty() && wanted_filter() != listed_filter_)
        list_again();
}

void EditorFrame::show_filter_choices()
{
    for (const std::string& name : list_.rows().class_names()) {
        if (std::find(classes_.begin(), classes_.end(), name) == classes_.end())
            classes_.push_back(name);
    }
    std::vector<editor::FilterChoice> choices = editor::filter_choices(classes_, saved_filters_);
    if (choices == filter_choices_)
        return;
    CString chosen;
    filter_choice_.GetLBText(filter_choice_.GetCurSel(), chosen);
    filter_choices_ = std::move(choices);
    filter_choice_.ResetContent();
    for (const editor::FilterChoice& choice : filter_choices_)
        filter_choice_.AddString(choice.label.c_str());
    filter_choice_.SetCurSel(std::max(0, filter_choice_.FindStringExact(-1, chosen)));
}

void EditorFrame::OnFilterChosen()
{
    const auto chosen = static_cast<std::size_t>(filter_choice_.GetCurSel());
    if (chosen >= filter_choices_.size())
        return;
    const editor::FilterChoice choice = filter_choices_[chosen];
    if (choice.is_saved)
        filter_.SetWindowText(editor::filter_line(choice.filter.expression).c_str());
    use_filter();
}

void EditorFrame::OnFilterSave()
{
    editor::SavedFilter saved{{}, wanted_filter()};
    if (!filter_line_.text.empty())
        saved.filter.expression = editor::expression_for(filter_line_.text);
    TextRequest request;
    request.title = "Save Filter";
    request.prompt = "The name of the filter:";
    if (const std::optional<std::string> name = request.ask(m_hWnd)) {
        saved.name = *name;
        worker_->save_filter(saved);
    }
}

void EditorFrame::OnFilterRemove()
{
    const auto chosen = static_cast<std::size_t>(filter_choice_.GetCurSel());
    for (const editor::SavedFilter& saved : saved_filters_) {
        if (chosen < filter_choices_.size() && filter_choices_[chosen].is_saved &&
            filter_choices_[chosen].filter == saved.filter &&
            filter_choices_[chosen].label.ends_with(saved.name)) {
            worker_->remove_filter(saved.name);
            return;
        }
    }
}

void EditorFrame::show_work(bool is_shown)
{
    KillTimer(kWorkTimer);
    if (is_work_shown_ == is_shown)
        return;
    const bool had_focus = ::GetFocus() == work_stop_.m_hWnd;
    is_work_shown_ = is_shown;
    RecalcLayout();
    if (!is_shown && had_focus)
        list_.SetFocus();
}

void EditorFrame::OnTimer(UINT_PTR timer)
{
    if (timer == kWorkTimer)
        show_work(!work_.empty());
    else
        CFrameWnd::OnTimer(timer);
}

void EditorFrame::take(editor::EntryChanged& changed)
{
    if (changed.path != path_)
        return;
    if (!is_complete_) {
        list_again();  // the rows that come now would not stand behind it
        return;
    }
    if (!listed_filter_.is_empty() && !list_.rows().find(changed.name)) {
        list_again();  // the filter may want it or not
        return;
    }
    list_.put(changed);
    show_filter_choices();
    icons_asked_for_.clear();
    previewed_row_.reset();
}

void EditorFrame::take(editor::NamesChanged& changed)
{
    if (changed.listing != listing_)
        return;
    if (changed.has_other_directories) {
        show_directories_again(path_);
        return;
    }
    const editor::NamesUpdate update = editor::update_for(list_.rows(), changed);
    if (edited_row_) {
        // The name that is typed would be lost.
        is_list_outdated_ = is_list_outdated_ || !update.is_empty();
        return;
    }
    if (update.lists_again) {
        list_again();
        return;
    }
    if (!update.gone.empty())
        list_.remove(update.gone);
    for (const std::string& name : update.to_look_at)
        worker_->want_entry(path_, name);
}

void EditorFrame::take(editor::DirectoryMoved& moved)
{
    editor::DirectoryPath shown = path_;
    const bool is_below = shown.size() >= moved.from.size() &&
                          std::equal(moved.from.begin(), moved.from.end(), shown.begin());
    if (is_below) {
        shown.erase(shown.begin(), shown.begin() + static_cast<std::ptrdiff_t>(moved.from.size()));
        shown.insert(shown.begin(), moved.to.begin(), moved.to.end());
    }
    show_directories_again(shown);
}

void EditorFrame::take(editor::DeletionsKept& kept)
{
    deletions_ = kept.count;
}

void EditorFrame::take(editor::EntriesRestored& restored)
{
    if (tree_.item_of(restored.path) == nullptr)
        show_directories_again(restored.path);
    else if (restored.path == path_)
        list_again();
    else
        go_to(restored.path);
    wanted_row_ = restored.name;
    if (!restored.note.empty())
        complain(restored.note);
}

void EditorFrame::take(editor::FiltersListed& listed)
{
    saved_filters_ = std::move(listed.filters);
    show_filter_choices();
    use_filter();
}

void EditorFrame::take(editor::WorkProgress& progress)
{
    const bool is_new = work_ != progress.text;
    work_ = progress.text;
    if (work_.empty()) {
        show_work(false);
        return;
    }
    if (is_new) {
        AfxSetWindowText(work_text_, work_.c_str());
        SetTimer(kWorkTimer, kQuietWorkMs);
    }
    work_bar_.SetRange32(0, static_cast<int>(std::max<std::size_t>(1, progress.total)));
    work_bar_.SetPos(static_cast<int>(progress.done));
}

void EditorFrame::take(editor::WorkDone& done)
{
    if (done.list_again)
        show_directories_again(path_);
    if (done.is_as_asked)
        MsgBox::PutInfo("%s", done.text.c_str());
    else
        complain(done.text);
}

void EditorFrame::show_directories_again(const editor::DirectoryPath& shown)
{
    tree_.reset(std::string(editor::file_part(file_)));
    worker_->list_directories({});
    go_to(shown);
}

void EditorFrame::OnUpdateUndo(CCmdUI* state)
{
    state->Enable(is_writable_ && deletions_ > 0);
}

void EditorFrame::OnUpdateDescribe(CCmdUI* state)
{
    state->Enable(is_writable_ && has_single_entry());
}

void EditorFrame::OnUpdateCopy(CCmdUI* state)
{
    state->Enable(has_single_entry() || list_.GetSelectedCount() > 1);
}

void EditorFrame::OnUpdatePicture(CCmdUI* state)
{
    state->Enable(has_single_entry() &&
                  (!is_selected_shown() || !preview_.shown().pictures.empty()));
}

void EditorFrame::OnUpdateMovie(CCmdUI* state)
{
    state->Enable(has_single_entry() && (!is_selected_shown() || !preview_.shown().movie.empty()));
}

void EditorFrame::OnUpdateWritable(CCmdUI* state)
{
    state->Enable(is_writable_);
}

void EditorFrame::OnUpdateStop(CCmdUI* state)
{
    state->Enable(!work_.empty());
}

void EditorFrame::OnUpdateFilterSave(CCmdUI* state)
{
    state->Enable(is_writable_ && (!wanted_filter().is_empty() || !filter_line_.text.empty()));
}

void EditorFrame::OnUpdateFilterRemove(CCmdUI* state)
{
    const auto chosen = static_cast<std::size_t>(filter_choice_.GetCurSel());
    state->Enable(is_writable_ && chosen < filter_choices_.size() &&
                  filter_choices_[chosen].is_saved);
}
