// The main window: what it asks of the worker, and what it does with the results.
#include "scene_editor/EditorFrame.h"
#include "scene_editor/SceneEditor.h"
#include "scene_editor/WindowMessages.h"
#include "scene_editor/core/CommandLine.h"
#include "scene_editor/resource.h"

#include <chrono>
#include <utility>
#include <variant>

namespace {

constexpr auto kLongestTake = std::chrono::milliseconds(10);
constexpr int kPreviewSize_px = 480;  // pictures made of objects, and large ones to be scaled

}  // namespace

void EditorFrame::open_library(const std::string& file)
{
    opening_began_ = Clock::now();
    first_rows_after_.reset();
    all_rows_after_.reset();
    wanted_directory_.reset();
    movie_.close();  // it would keep the file open
    worker_->open(file);
}

void EditorFrame::show_title()
{
    std::string title = std::string(static_cast<LPCTSTR>(GetTitle()));
    if (!document_.file().empty() || document_.is_changed())
        title = document_.name() + (document_.is_changed() ? "*" : "") + " - " + title;
    if (!file_.empty()) {
        title = std::string(editor::file_part(file_)) + (is_writable_ ? "" : " [read only]") +
                " - " + title;
    }
    if (std::exchange(title_, title) != title)
        AfxSetWindowText(*this, title.c_str());
}

void EditorFrame::show_directory(const editor::DirectoryPath& path)
{
    if (path != path_)
        filter_.SetWindowText("");  // it was typed for the entries that were shown
    path_ = path;
    ++listing_;
    is_complete_ = false;
    is_list_outdated_ = false;
    list_.clear();
    wanted_row_.clear();
    icons_asked_for_.clear();
    previewed_row_.reset();
    preview_.show_text("", "");
    listed_filter_ = wanted_filter();
    worker_->list(listing_, path, listed_filter_);
}

void EditorFrame::go_to(const editor::DirectoryPath& path)
{
    wanted_directory_ = path;
    go_on_to_wanted_directory();
}

void EditorFrame::go_on_to_wanted_directory()
{
    if (!wanted_directory_)
        return;
    editor::DirectoryPath known = *wanted_directory_;
    while (!known.empty() && tree_.item_of(known) == nullptr)
        known.pop_back();
    const bool is_there = known.size() == wanted_directory_->size();
    if (!is_there && !tree_.has_subdirectories_of(known)) {
        worker_->list_directories(known);  // the way goes on when they come
        return;
    }
    wanted_directory_.reset();  // where it is gone, the nearest one above is shown
    if (const HTREEITEM item = tree_.item_of(known)) {
        tree_.SelectItem(item);
        tree_.EnsureVisible(item);
    }
}

void EditorFrame::ask_for_icons()
{
    if (worker_ == nullptr)
        return;
    std::vector<EntryList::Id> around = list_.rows_around_view();
    if (around == icons_asked_for_)
        return;
    std::vector<editor::ListedEntry> entries;
    for (const EntryList::Id row : list_.without_icon(around))
        entries.push_back({row, std::string(list_.rows().name(row))});
    icons_asked_for_ = std::move(around);
    worker_->want_icons(listing_, path_, list_.icon_size_px(), std::move(entries));
}

void EditorFrame::ask_for_preview()
{
    const std::optional<EntryList::Id> row = list_.single_row();
    if (worker_ == nullptr || row == previewed_row_)
        return;
    previewed_row_ = row;
    if (!row)
        wanted_command_ = 0;
    if (!row) {
        preview_.show_text("", "");
        return;
    }
    const std::string name(list_.rows().name(*row));
    if (list_.rows().kind(*row) == editor::RowKind::Directory) {
        preview_.show_text(name, "Directory");
        return;
    }
    worker_->want_preview(path_, name, kPreviewSize_px);
}

LRESULT EditorFrame::OnIdle(WPARAM disable, LPARAM unused)
{
    CFrameWnd::OnIdleUpdateCmdUI(disable, unused);
    if (!edited_row_ && std::exchange(is_list_outdated_, false))
        list_again();
    ask_for_icons();
    ask_for_preview();
    show_name_under_mouse();
    show_title();
    return 0;
}

LRESULT EditorFrame::OnResultsWait(WPARAM, LPARAM)
{
    const Clock::time_point began = Clock::now();
    while (worker_ != nullptr) {
        std::optional<editor::LibraryResult> result = worker_->take_result();
        if (!result)
            break;
        std::visit([this](auto& known) { take(known); }, *result);
        if (!complaint_.empty() || Clock::now() - began > kLongestTake) {
            PostMessage(WM_RESULTS_WAIT);  // the rest after what waits by now
            break;
        }
    }
    if (const std::string complaint = std::exchange(complaint_, {}); !complaint.empty())
        AfxMessageBox(complaint.c_str(), MB_OK | MB_ICONEXCLAMATION | MB_HELP, IDP_LIBRARY);
    return 0;
}

void EditorFrame::complain(const std::string& reason)
{
    complaint_ = reason;
}

void EditorFrame::take(editor::LibraryOpened& opened)
{
    file_ = opened.file;
    is_writable_ = opened.is_writable;
    AfxGetApp()->AddToRecentFileList(file_.c_str());
    show_title();
    classes_.clear();
    saved_filters_.clear();
    filter_choices_.clear();
    show_filter_choices();
    deletions_ = 0;
    const std::optional<editor::DirectoryPath> wanted = wanted_directory_;
    tree_.reset(std::string(editor::file_part(file_)));
    worker_->list_directories({});
    go_to(wanted.value_or(editor::DirectoryPath{}));
    list_.SetFocus();
    if (!opened.note.empty())
        complain("The library can only be read.\n\n" + opened.note);
}

void EditorFrame::take(editor::LibraryRefused& refused)
{
    file_.clear();
    is_writable_ = false;
    path_.clear();
    ++listing_;
    is_complete_ = true;
    tree_.reset({});
    list_.clear();
    previewed_row_.reset();
    preview_.show_text("", "");
    show_title();
    complain("The library can't be opened.\n\n" + refused.reason);
}

void EditorFrame::take(editor::DirectoriesListed& listed)
{
    tree_.set_subdirectories(listed);
    if (const HTREEITEM item = tree_.item_of(listed.path);
        item != nullptr && !listed.directories.empty())
        tree_.Expand(item, TVE_EXPAND);
    go_on_to_wanted_directory();
}

void EditorFrame::take(editor::RowsListed& listed)
{
    if (listed.listing != listing_)
        return;
    const bool are_first = list_.rows().entries() + list_.rows().directories() == 0;
    list_.append(std::move(listed.rows));
    show_filter_choices();
    if (are_first && ::GetFocus() == list_.m_hWnd)
        list_.select_start(std::exchange(wanted_row_, {}));
    is_complete_ = listed.is_last;
    if (!first_rows_after_)
        first_rows_after_ = Clock::now() - opening_began_;
    if (listed.is_last && !all_rows_after_)
        all_rows_after_ = Clock::now() - opening_began_;
    if (!listed.damage.empty())
        complain(listed.damage);
}

void EditorFrame::take(editor::IconLoaded& loaded)
{
    if (loaded.listing == listing_)
        list_.set_details(loaded);
}

void EditorFrame::take(editor::PreviewLoaded& loaded)
{
    const bool is_wanted =
        previewed_row_ && loaded.path == path_ && loaded.name == list_.rows().name(*previewed_row_);
    if (!is_wanted)
        return;
    preview_.show(std::move(loaded));
    if (const UINT command = std::exchange(wanted_command_, 0))
        PostMessage(WM_COMMAND, command);
}

void EditorFrame::take(editor::ObjectLoaded& loaded)
{
    if (loaded.object == nullptr) {
        complain(loaded.reason);
        return;
    }
    if (document_.scene() == nullptr)
        return;
    if (document_.scene()->add_model(loaded.object.get(), loaded.name.c_str()) == nullptr) {
        complain("\"" + loaded.name + "\" can't be put into the scene: it is no model, or empty.");
        return;
    }
    static_cast<void>(loaded.object.release());  // the scene's now
}

void EditorFrame::take(editor::EntryRenamed& renamed)
{
    if (renamed.listing != listing_)
        return;
    list_.rename(renamed.row, renamed.name);
    previewed_row_.reset();  // under its new name
}

void EditorFrame::take(editor::EntriesRemoved& removed)
{
    if (removed.listing == listing_)
        list_.remove(removed.rows);
}

void EditorFrame::take(editor::ChangeRefused& refused)
{
    complain(refused.reason);
}
