#pragma once

#include "platform/CButton.h"
#include "platform/CComboBox.h"
#include "platform/CFont.h"
#include "platform/CFrameWnd.h"
#include "platform/CProgressCtrl.h"
#include "scene_editor/DirectoryTree.h"
#include "scene_editor/EditorStatusBar.h"
#include "scene_editor/EntryList.h"
#include "scene_editor/FilterEdit.h"
#include "scene_editor/MovieWindow.h"
#include "scene_editor/PaneSplitter.h"
#include "scene_editor/PreviewPane.h"
#include "scene_editor/PropertyPane.h"
#include "scene_editor/SceneWindow.h"
#include "scene_editor/core/EditorSettings.h"
#include "scene_editor/core/HoldTimes.h"
#include "scene_editor/core/LibraryWorker.h"
#include "scene_editor/core/PaneLayout.h"
#include "scene_editor/core/SceneCommands.h"
#include "scene_editor/core/SceneDocument.h"
#include "scene_editor/core/WindowLayout.h"

#include <memory>
#include <optional>
#include <string>

/// The main window: a scene with the properties of the object that is selected in it, and below
/// them the directories of a library, the entries of one of them with a line that
/// filters them, and a picture of the entry that is selected. All work on the library is asked of
/// the worker; the window never waits for it.
class EditorFrame : public CFrameWnd {
public:
    EditorFrame();
    ~EditorFrame() override;

    /// Makes the window, hidden, with the parts that it had when it was closed last. False when the
    /// system refuses.
    [[nodiscard]] bool create();
    /// Shows it where it stood then; at the first time, and as an icon, as `how` says.
    void show(int how);
    /// Asks for the library; the window shows it when it is open.
    void open_library(const std::string& file);
    /// Takes the scene of that file in the place of this one; tells the user where that fails.
    void open_scene(const std::string& file);
    /// Opens a library or a scene that was open before. False, after a message, when it is gone.
    [[nodiscard]] bool open_recent(const std::string& file);

    void RecalcLayout(BOOL notify = TRUE) override;
    BOOL PreTranslateMessage(MSG* message) override;

protected:
    DECLARE_MESSAGE_MAP()
    BOOL PreCreateWindow(CREATESTRUCT& creation) override;
    BOOL OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result) override;

    int OnCreate(LPCREATESTRUCT creation);
    void OnDestroy();
    void OnClose();
    BOOL OnQueryEndSession();
    void OnEndSession(BOOL ends);
    void OnGetMinMaxInfo(MINMAXINFO* limits);
    void OnEnterMenuLoop(BOOL is_popup);
    void OnExitMenuLoop(BOOL is_popup);
    LRESULT OnEnterSizeMove(WPARAM, LPARAM);
    LRESULT OnExitSizeMove(WPARAM, LPARAM);
    LRESULT OnSplitterDragged(WPARAM splitter, LPARAM edge);
    LRESULT OnFilterLeft(WPARAM, LPARAM);
    LRESULT OnResultsWait(WPARAM, LPARAM);
    LRESULT OnIdle(WPARAM disable, LPARAM);
    LRESULT OnStatusText(WPARAM line, LPARAM);
    /// One press of the key asks once.
    BOOL OnHelpInfo(HELPINFO* help);
    LRESULT OnHelpHitTest(WPARAM unused, LPARAM point);
    LRESULT OnCommandHelp(WPARAM unused, LPARAM topic);

    void OnFileOpen();
    void OnFileReload();
    void OnEntryRename();
    void OnEntryDelete();
    void OnEntryUndo();
    void OnEntryDescribe();
    void OnEntryCopyTo();
    void OnEntryPicture(UINT id);
    void OnEntryMovie();
    void OnLibraryAdd();
    void OnLibraryPack();
    void OnLibraryStop();
    void OnFilterSave();
    void OnFilterRemove();
    void OnFilterChosen();
    void OnContextMenu(CWnd* window, CPoint point);
    void OnTimer(UINT_PTR timer);
    void OnSelectAll();
    void OnViewFilter();
    void OnViewParent();
    void OnViewDraw(UINT id);
    void OnViewPart(UINT id);
    void OnSceneNew();
    void OnSceneOpen();
    void OnSceneSave();
    void OnSceneSaveAs();
    void OnSceneAdd();
    void OnSceneCommand(UINT id);
    void OnDiagnosticsTimes();
    void OnDiagnosticsReset();
    void OnUpdateWithLibrary(CCmdUI* state);
    void OnUpdateRename(CCmdUI* state);
    void OnUpdateDelete(CCmdUI* state);
    void OnUpdateSelectAll(CCmdUI* state);
    void OnUpdateUndo(CCmdUI* state);
    void OnUpdateDescribe(CCmdUI* state);
    void OnUpdateCopy(CCmdUI* state);
    void OnUpdatePicture(CCmdUI* state);
    void OnUpdateMovie(CCmdUI* state);
    void OnUpdateWritable(CCmdUI* state);
    void OnUpdateStop(CCmdUI* state);
    void OnUpdateFilterSave(CCmdUI* state);
    void OnUpdateFilterRemove(CCmdUI* state);
    void OnUpdateParent(CCmdUI* state);
    void OnUpdateDraw(CCmdUI* state);
    void OnUpdateScene(CCmdUI* state);
    void OnUpdatePart(CCmdUI* state);
    void OnUpdateCounts(CCmdUI* state);

    void OnFilterChanged();
    void OnTreeSelected(NMHDR* header, LRESULT* result);
    void OnTreeExpanding(NMHDR* header, LRESULT* result);
    void OnTreeKey(NMHDR* header, LRESULT* result);
    void OnListActivated(NMHDR* header, LRESULT* result);
    void OnListKey(NMHDR* header, LRESULT* result);
    void OnListCached(NMHDR* header, LRESULT* result);
    void OnListBeginEdit(NMHDR* header, LRESULT* result);
    void OnListEndEdit(NMHDR* header, LRESULT* result);

private:
    using Clock = editor::HoldTimes::Clock;

    [[nodiscard]] bool create_panes();
    [[nodiscard]] bool create_scene_panes();
    [[nodiscard]] editor::PaneRect pane_area();
    [[nodiscard]] std::vector<HWND> panes_in_order() const;
    void go_to_next_pane(bool backwards);

    void use_settings();
    void keep_settings();

    /// The message of a press that a menu has asked for help by; one of another key ends that.
    [[nodiscard]] bool is_answered_help_key(const MSG& message);
    void show_name_under_mouse();
    void show_grid();
    /// Of the pane that the window is or lies in, which is noted as the one that asks; 0 outside.
    [[nodiscard]] LPARAM help_topic_of(HWND window) const;

    void begin_scene();
    void show_scene_change();
    [[nodiscard]] bool has_model_row() const;
    [[nodiscard]] bool save_scene(const std::string& file);
    [[nodiscard]] bool save_scene_as();
    /// False when the user would rather keep the changes that would be lost.
    [[nodiscard]] bool may_leave_scene();

    void show_title();
    void show_directory(const editor::DirectoryPath& path);
    void go_to(const editor::DirectoryPath& path);
    void go_on_to_wanted_directory();
    void ask_for_icons();
    void ask_for_preview();
    void complain(const std::string& reason);

    void take(editor::LibraryOpened& opened);
    void take(editor::LibraryRefused& refused);
    void take(editor::DirectoriesListed& listed);
    void take(editor::RowsListed& listed);
    void take(editor::IconLoaded& loaded);
    void take(editor::PreviewLoaded& loaded);
    void take(editor::ObjectLoaded& loaded);
    void take(editor::EntryRenamed& renamed);
    void take(editor::EntriesRemoved& removed);
    void take(editor::EntryChanged& changed);
    void take(editor::NamesChanged& changed);
    void take(editor::DirectoryMoved& moved);
    void take(editor::DeletionsKept& kept);
    void take(editor::EntriesRestored& restored);
    void take(editor::FiltersListed& listed);
    void take(editor::WorkProgress& progress);
    void take(editor::WorkDone& done);
    void take(editor::ChangeRefused& refused);

    [[nodiscard]] bool create_library_row();
    /// The tree once more from the library, and that directory.
    void show_directories_again(const editor::DirectoryPath& shown);
    /// What the list shows, once more from the library.
    void list_again();
    [[nodiscard]] std::vector<editor::ListedEntry> selected_entries() const;
    [[nodiscard]] bool has_single_entry() const;
    /// Whether what is known of the selected entry beside its row is here.
    [[nodiscard]] bool is_selected_shown() const;
    /// Of the filter that is set: that of the choice, and the line's expression.
    [[nodiscard]] editor::EntryFilter wanted_filter() const;
    void use_filter();
    void show_filter_choices();
    void show_work(bool is_shown);

    int dpi_ = 96;
    editor::SceneDocument document_;
    CFont font_;
    int filter_height_px_ = 0;
    SceneWindow scene_window_;
    PaneSplitter properties_splitter_;
    PropertyPane properties_;
    PaneSplitter library_splitter_;
    DirectoryTree tree_;
    PaneSplitter tree_splitter_;
    FilterEdit filter_;
    CComboBox filter_choice_;
    EntryList list_;
    CStatic work_text_;
    CProgressCtrl work_bar_;
    CButton work_stop_;
    PaneSplitter preview_splitter_;
    PreviewPane preview_;
    MovieWindow movie_;
    EditorStatusBar status_bar_;
    std::optional<editor::PaneWidths> widths_;  ///< None until the window has a size.
    std::optional<editor::PartSizes> sizes_;    ///< The same.
    editor::ShownParts shown_;
    editor::EditorSettings settings_;  ///< As they were at the start.
    std::string title_;
    std::string name_under_mouse_;  ///< As it was told last.
    double told_grid_ = 0;          ///< 0 for none.
    bool is_help_key_answered_ = false;
    LONG help_asked_at_ = 0;  ///< The time of the message that asked for help last.

    std::unique_ptr<editor::LibraryWorker> worker_;
    std::string file_;  ///< Empty when no library is open.
    bool is_writable_ = false;
    editor::DirectoryPath path_;     ///< What the list shows.
    editor::ListingId listing_ = 0;  ///< Its number.
    bool is_complete_ = true;        ///< All its rows are here.
    bool is_list_outdated_ = false;  ///< To be listed again once no name is typed.
    std::optional<editor::DirectoryPath> wanted_directory_;  ///< To be shown once it is known.
    std::string wanted_row_;  ///< The name of the row that is to be selected when it comes.
    std::optional<EntryList::Id> previewed_row_;  ///< Of this listing.
    UINT wanted_command_ = 0;  ///< To be given again when it is known what the row has.
    std::vector<EntryList::Id> icons_asked_for_;  ///< The rows around the view then.
    std::optional<EntryList::Id> edited_row_;
    std::size_t deletions_ = 0;          ///< That can be taken back.
    editor::EntryFilter listed_filter_;  ///< Of the listing.
    editor::FilterLine filter_line_;
    std::vector<std::string> classes_;  ///< That were met since the library was opened.
    std::vector<editor::SavedFilter> saved_filters_;
    std::vector<editor::FilterChoice> filter_choices_;
    std::string work_;  ///< What is done that takes long; empty for nothing.
    bool is_work_shown_ = false;
    std::string complaint_;  ///< To be shown when the results were taken.

    Clock::time_point opening_began_{};
    std::optional<Clock::duration> first_rows_after_;
    std::optional<Clock::duration> all_rows_after_;
};
