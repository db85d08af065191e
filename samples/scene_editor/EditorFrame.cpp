// The main window: its life, its panes and its keys.
#include "scene_editor/EditorFrame.h"

#include "platform/HandlesGdi.h"
#include "scene_editor/SceneEditor.h"
#include "scene_editor/TextHeight.h"
#include "scene_editor/WindowMessages.h"
#include "scene_editor/core/LibraryRow.h"
#include "scene_editor/resource.h"
#include "settings/MsgBox.h"
#include "settings/RegistryManager.h"

#include <algorithm>
#include <array>

BEGIN_MESSAGE_MAP(EditorFrame, CFrameWnd)
    ON_WM_CREATE()
    ON_WM_DESTROY()
    ON_WM_CLOSE()
    ON_WM_QUERYENDSESSION()
    ON_WM_ENDSESSION()
    ON_WM_GETMINMAXINFO()
    ON_WM_ENTERMENULOOP()
    ON_WM_EXITMENULOOP()
    ON_WM_CONTEXTMENU()
    ON_WM_TIMER()
    ON_MESSAGE(WM_ENTERSIZEMOVE, &EditorFrame::OnEnterSizeMove)
    ON_MESSAGE(WM_EXITSIZEMOVE, &EditorFrame::OnExitSizeMove)
    ON_MESSAGE(WM_SPLITTER_DRAGGED, &EditorFrame::OnSplitterDragged)
    ON_MESSAGE(WM_FILTER_LEFT, &EditorFrame::OnFilterLeft)
    ON_MESSAGE(WM_RESULTS_WAIT, &EditorFrame::OnResultsWait)
    ON_MESSAGE(WM_IDLEUPDATECMDUI, &EditorFrame::OnIdle)
    ON_MESSAGE(MsgBox::kUpdateMessage, &EditorFrame::OnStatusText)
    ON_WM_HELPINFO()
    ON_MESSAGE(WM_HELPHITTEST, &EditorFrame::OnHelpHitTest)
    ON_MESSAGE(WM_COMMANDHELP, &EditorFrame::OnCommandHelp)
    ON_COMMAND(ID_HELP, &EditorFrame::OnHelp)
    ON_COMMAND(ID_CONTEXT_HELP, &EditorFrame::OnContextHelp)
    ON_COMMAND(ID_HELP_FINDER, &EditorFrame::OnHelpFinder)
    ON_COMMAND(ID_DEFAULT_HELP, &EditorFrame::OnHelpFinder)
    ON_COMMAND(ID_FILE_OPEN, &EditorFrame::OnFileOpen)
    ON_COMMAND(ID_FILE_RELOAD, &EditorFrame::OnFileReload)
    ON_COMMAND(ID_ENTRY_RENAME, &EditorFrame::OnEntryRename)
    ON_COMMAND(ID_ENTRY_DELETE, &EditorFrame::OnEntryDelete)
    ON_COMMAND(ID_ENTRY_SELECT_ALL, &EditorFrame::OnSelectAll)
    ON_COMMAND(ID_ENTRY_UNDO, &EditorFrame::OnEntryUndo)
    ON_COMMAND(ID_ENTRY_DESCRIBE, &EditorFrame::OnEntryDescribe)
    ON_COMMAND(ID_ENTRY_COPY_TO, &EditorFrame::OnEntryCopyTo)
    ON_COMMAND_RANGE(ID_ENTRY_NEXT_PICTURE, ID_ENTRY_PREVIOUS_PICTURE, &EditorFrame::OnEntryPicture)
    ON_COMMAND(ID_ENTRY_MOVIE, &EditorFrame::OnEntryMovie)
    ON_COMMAND(ID_LIBRARY_ADD, &EditorFrame::OnLibraryAdd)
    ON_COMMAND(ID_LIBRARY_PACK, &EditorFrame::OnLibraryPack)
    ON_COMMAND(ID_LIBRARY_STOP, &EditorFrame::OnLibraryStop)
    ON_COMMAND(ID_FILTER_SAVE, &EditorFrame::OnFilterSave)
    ON_COMMAND(ID_FILTER_REMOVE, &EditorFrame::OnFilterRemove)
    ON_CBN_SELCHANGE(IDC_FILTER_CHOICE, &EditorFrame::OnFilterChosen)
    ON_COMMAND(ID_VIEW_FILTER, &EditorFrame::OnViewFilter)
    ON_COMMAND(ID_VIEW_PARENT, &EditorFrame::OnViewParent)
    ON_COMMAND_RANGE(ID_VIEW_DRAW_CENTERED, ID_VIEW_DRAW_STRETCH, &EditorFrame::OnViewDraw)
    ON_COMMAND_RANGE(ID_VIEW_SCENE, ID_VIEW_LIBRARY, &EditorFrame::OnViewPart)
    ON_COMMAND(ID_SCENE_NEW, &EditorFrame::OnSceneNew)
    ON_COMMAND(ID_SCENE_OPEN, &EditorFrame::OnSceneOpen)
    ON_COMMAND(ID_SCENE_SAVE, &EditorFrame::OnSceneSave)
    ON_COMMAND(ID_SCENE_SAVE_AS, &EditorFrame::OnSceneSaveAs)
    ON_COMMAND(ID_SCENE_ADD, &EditorFrame::OnSceneAdd)
    ON_COMMAND_RANGE(ID_SCENE_DELETE, ID_SCENE_LAST, &EditorFrame::OnSceneCommand)
    ON_COMMAND(ID_DIAGNOSTICS_TIMES, &EditorFrame::OnDiagnosticsTimes)
    ON_COMMAND(ID_DIAGNOSTICS_RESET, &EditorFrame::OnDiagnosticsReset)
    ON_UPDATE_COMMAND_UI(ID_FILE_RELOAD, &EditorFrame::OnUpdateWithLibrary)
    ON_UPDATE_COMMAND_UI(ID_VIEW_FILTER, &EditorFrame::OnUpdateWithLibrary)
    ON_UPDATE_COMMAND_UI(ID_ENTRY_RENAME, &EditorFrame::OnUpdateRename)
    ON_UPDATE_COMMAND_UI(ID_ENTRY_DELETE, &EditorFrame::OnUpdateDelete)
    ON_UPDATE_COMMAND_UI(ID_ENTRY_SELECT_ALL, &EditorFrame::OnUpdateSelectAll)
    ON_UPDATE_COMMAND_UI(ID_ENTRY_UNDO, &EditorFrame::OnUpdateUndo)
    ON_UPDATE_COMMAND_UI(ID_ENTRY_DESCRIBE, &EditorFrame::OnUpdateDescribe)
    ON_UPDATE_COMMAND_UI(ID_ENTRY_COPY_TO, &EditorFrame::OnUpdateCopy)
    ON_UPDATE_COMMAND_UI_RANGE(ID_ENTRY_NEXT_PICTURE, ID_ENTRY_PREVIOUS_PICTURE,
                               &EditorFrame::OnUpdatePicture)
    ON_UPDATE_COMMAND_UI(ID_ENTRY_MOVIE, &EditorFrame::OnUpdateMovie)
    ON_UPDATE_COMMAND_UI(ID_LIBRARY_ADD, &EditorFrame::OnUpdateWritable)
    ON_UPDATE_COMMAND_UI(ID_LIBRARY_PACK, &EditorFrame::OnUpdateWritable)
    ON_UPDATE_COMMAND_UI(ID_LIBRARY_STOP, &EditorFrame::OnUpdateStop)
    ON_UPDATE_COMMAND_UI(ID_FILTER_SAVE, &EditorFrame::OnUpdateFilterSave)
    ON_UPDATE_COMMAND_UI(ID_FILTER_REMOVE, &EditorFrame::OnUpdateFilterRemove)
    ON_UPDATE_COMMAND_UI(ID_VIEW_PARENT, &EditorFrame::OnUpdateParent)
    ON_UPDATE_COMMAND_UI_RANGE(ID_VIEW_DRAW_CENTERED, ID_VIEW_DRAW_STRETCH,
                               &EditorFrame::OnUpdateDraw)
    ON_UPDATE_COMMAND_UI_RANGE(ID_VIEW_SCENE, ID_VIEW_LIBRARY, &EditorFrame::OnUpdatePart)
    ON_UPDATE_COMMAND_UI_RANGE(ID_SCENE_FIRST, ID_SCENE_LAST, &EditorFrame::OnUpdateScene)
    ON_UPDATE_COMMAND_UI(ID_PANE_COUNTS, &EditorFrame::OnUpdateCounts)
    ON_EN_CHANGE(IDC_FILTER, &EditorFrame::OnFilterChanged)
    ON_NOTIFY(TVN_SELCHANGEDA, IDC_DIRECTORIES, &EditorFrame::OnTreeSelected)
    ON_NOTIFY(TVN_ITEMEXPANDINGA, IDC_DIRECTORIES, &EditorFrame::OnTreeExpanding)
    ON_NOTIFY(TVN_KEYDOWN, IDC_DIRECTORIES, &EditorFrame::OnTreeKey)
    ON_NOTIFY(LVN_ITEMACTIVATE, IDC_ENTRIES, &EditorFrame::OnListActivated)
    ON_NOTIFY(LVN_KEYDOWN, IDC_ENTRIES, &EditorFrame::OnListKey)
    ON_NOTIFY(LVN_ODCACHEHINT, IDC_ENTRIES, &EditorFrame::OnListCached)
    ON_NOTIFY(LVN_BEGINLABELEDITA, IDC_ENTRIES, &EditorFrame::OnListBeginEdit)
    ON_NOTIFY(LVN_ENDLABELEDITA, IDC_ENTRIES, &EditorFrame::OnListEndEdit)
END_MESSAGE_MAP()

namespace {

constexpr int kWidthAt96 = 1060;
constexpr int kHeightAt96 = 820;
constexpr int kLeastWidthAt96 = 640;
constexpr int kLeastHeightAt96 = 400;
constexpr int kOpenChoiceAt96 = 240;

int screen_dpi()
{
    const zmr::WindowDC screen(nullptr);
    return screen ? ::GetDeviceCaps(screen.get(), LOGPIXELSY) : 96;
}

RECT rect_of(const editor::PaneRect& pane)
{
    return {pane.left, pane.top, pane.right, pane.bottom};
}

}  // namespace

EditorFrame::EditorFrame() : dpi_(screen_dpi()), document_([this] { show_scene_change(); }) {}

EditorFrame::~EditorFrame() = default;

bool EditorFrame::create()
{
    settings_ = editor::read_settings(*RegistryManager::get(), dpi_);
    widths_ = settings_.widths;
    sizes_ = settings_.sizes;
    shown_ = settings_.shown;
    if (!LoadFrame(IDR_SCENE_EDITOR, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN))
        return false;
    use_settings();
    return true;
}

BOOL EditorFrame::PreCreateWindow(CREATESTRUCT& creation)
{
    if (!CFrameWnd::PreCreateWindow(creation))
        return FALSE;
    RECT work{};
    ::SystemParametersInfo(SPI_GETWORKAREA, 0, &work, 0);
    creation.cx = std::min<int>(editor::scaled(kWidthAt96, dpi_), work.right - work.left);
    creation.cy = std::min<int>(editor::scaled(kHeightAt96, dpi_), work.bottom - work.top);
    creation.dwExStyle &= ~static_cast<DWORD>(WS_EX_CLIENTEDGE);
    creation.lpszClass = AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursor(nullptr, IDC_ARROW),
                                             reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1),
                                             AfxGetApp()->LoadIcon(IDR_SCENE_EDITOR));
    return TRUE;
}

int EditorFrame::OnCreate(LPCREATESTRUCT creation)
{
    if (CFrameWnd::OnCreate(creation) == -1 || !create_panes())
        return -1;
    status_bar_.join_lines();
    MsgBox::SetStatusBarOwner(this);  // before the worker begins, which puts texts
    const HWND window = m_hWnd;
    worker_ = std::make_unique<editor::LibraryWorker>(
        [window] { ::PostMessage(window, WM_RESULTS_WAIT, 0, 0); },
        [](const std::string& text) { MsgBox::PutInfo("%s", text.c_str()); });
    SetMessageText(AFX_IDS_IDLEMESSAGE);
    begin_scene();
    return 0;
}

bool EditorFrame::create_panes()
{
    NONCLIENTMETRICS metrics{};
    metrics.cbSize = sizeof metrics;
    ::SystemParametersInfo(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    if (!font_.CreateFontIndirect(&metrics.lfMessageFont))
        return false;
    // In the order of the keyboard: a window made later comes later.
    if (!create_scene_panes() || !tree_.create(*this, IDC_DIRECTORIES, dpi_) ||
        !tree_splitter_.create(*this, IDC_TREE_SPLITTER) || !filter_.create(*this, IDC_FILTER) ||
        !create_library_row() || !list_.create(*this, IDC_ENTRIES, dpi_) ||
        !preview_splitter_.create(*this, IDC_PREVIEW_SPLITTER) ||
        !preview_.create(*this, IDC_PREVIEW, font_, dpi_) || !status_bar_.create(*this, dpi_))
        return false;
    for (CWnd* const pane : std::initializer_list<CWnd*>{&tree_, &filter_, &filter_choice_, &list_,
                                                         &work_text_, &work_stop_})
        pane->SetFont(&font_);

    filter_height_px_ =
        text_height(*this, font_) + editor::scaled(4, dpi_) + 2 * ::GetSystemMetrics(SM_CYEDGE);
    return true;
}

void EditorFrame::OnDestroy()
{
    movie_.close();
    worker_.reset();  // it posts to this window
    MsgBox::SetStatusBarOwner(nullptr);
    status_bar_.leave_lines();
    properties_.watch(nullptr);
    CFrameWnd::OnDestroy();
}

editor::PaneRect EditorFrame::pane_area()
{
    CRect client;
    GetClientRect(&client);
    CRect rest;
    RepositionBars(0, 0xFFFF, 0, reposQuery, &rest);
    return {static_cast<int>(rest.left), static_cast<int>(rest.top), static_cast<int>(rest.right),
            static_cast<int>(rest.bottom)};
}

void EditorFrame::RecalcLayout(BOOL notify)
{
    CFrameWnd::RecalcLayout(notify);
    if (IsIconic() || preview_.GetSafeHwnd() == nullptr)
        return;
    const editor::PaneRect area = pane_area();
    if (area.width() <= 0 || area.height() <= 0)
        return;
    if (!widths_)
        widths_ = editor::first_widths(area, dpi_);
    if (!sizes_)
        sizes_ = editor::first_sizes(area, dpi_);
    const editor::WindowLayout parts = editor::lay_out_window(area, *sizes_, shown_, dpi_);
    const editor::PaneLayout panes =
        editor::lay_out(parts.library, *widths_, filter_height_px_, dpi_);
    const editor::FilterRow filters = editor::split_filter_row(panes.filter, dpi_);
    const editor::WorkRow work =
        editor::split_work_row(panes.list, is_work_shown_, filter_height_px_, dpi_);
    // The height of a choice is that of its list when it is open.
    RECT choice = rect_of(filters.choice);
    choice.bottom += choice.bottom > choice.top ? editor::scaled(kOpenChoiceAt96, dpi_) : 0;
    const std::array<std::pair<HWND, RECT>, 14> places{{
        {scene_window_, rect_of(parts.scene)},
        {properties_splitter_, rect_of(parts.properties_splitter)},
        {properties_, rect_of(parts.properties)},
        {library_splitter_, rect_of(parts.library_splitter)},
        {tree_, rect_of(panes.tree)},
        {tree_splitter_, rect_of(panes.tree_splitter)},
        {filter_, rect_of(filters.line)},
        {filter_choice_, choice},
        {list_, rect_of(work.list)},
        {work_text_, rect_of(work.text)},
        {work_bar_, rect_of(work.bar)},
        {work_stop_, rect_of(work.button)},
        {preview_splitter_, rect_of(panes.preview_splitter)},
        {preview_, rect_of(panes.preview)},
    }};
    HDWP moves = ::BeginDeferWindowPos(static_cast<int>(places.size()));
    for (const auto& [window, rect] : places) {
        if (moves == nullptr)
            return;
        moves = ::DeferWindowPos(moves, window, nullptr, rect.left, rect.top,
                                 rect.right - rect.left, rect.bottom - rect.top,
                                 SWP_NOZORDER | SWP_NOACTIVATE |
                                     (::IsRectEmpty(&rect) ? SWP_HIDEWINDOW : SWP_SHOWWINDOW));
    }
    if (moves != nullptr)
        ::EndDeferWindowPos(moves);
    list_.fit_columns();
}

LRESULT EditorFrame::OnSplitterDragged(WPARAM splitter, LPARAM edge)
{
    if (!widths_ || !sizes_)
        return 0;
    const editor::PaneRect area = pane_area();
    const auto at = static_cast<int>(edge);
    const auto drag_in_library = [&](editor::Splitter which) {
        const editor::WindowLayout parts = editor::lay_out_window(area, *sizes_, shown_, dpi_);
        widths_ = editor::drag_splitter(parts.library, *widths_, which, at, dpi_);
    };
    switch (splitter) {
        case IDC_TREE_SPLITTER:
            drag_in_library(editor::Splitter::Tree);
            break;
        case IDC_PREVIEW_SPLITTER:
            drag_in_library(editor::Splitter::Preview);
            break;
        case IDC_PROPERTIES_SPLITTER:
            sizes_ = editor::drag_properties_splitter(area, *sizes_, at, dpi_);
            break;
        default:
            sizes_ = editor::drag_library_splitter(area, *sizes_, at, dpi_);
            break;
    }
    RecalcLayout();
    UpdateWindow();
    return 0;
}

void EditorFrame::OnGetMinMaxInfo(MINMAXINFO* limits)
{
    CFrameWnd::OnGetMinMaxInfo(limits);
    limits->ptMinTrackSize = {editor::scaled(kLeastWidthAt96, dpi_),
                              editor::scaled(kLeastHeightAt96, dpi_)};
}

void EditorFrame::OnEnterMenuLoop(BOOL is_popup)
{
    the_editor().holds.pause(Clock::now());
    CFrameWnd::OnEnterMenuLoop(is_popup);
}

void EditorFrame::OnExitMenuLoop(BOOL is_popup)
{
    the_editor().holds.resume(Clock::now());
    CFrameWnd::OnExitMenuLoop(is_popup);
}

LRESULT EditorFrame::OnEnterSizeMove(WPARAM, LPARAM)
{
    the_editor().holds.pause(Clock::now());
    return Default();
}

LRESULT EditorFrame::OnExitSizeMove(WPARAM, LPARAM)
{
    the_editor().holds.resume(Clock::now());
    return Default();
}

BOOL EditorFrame::PreTranslateMessage(MSG* message)
{
    if (is_answered_help_key(*message))
        return TRUE;
    if (message->message == WM_KEYDOWN && ::GetKeyState(VK_CONTROL) >= 0) {
        if (message->wParam == VK_TAB) {
            go_to_next_pane(::GetKeyState(VK_SHIFT) < 0);
            return TRUE;
        }
        if (message->wParam == VK_ESCAPE && message->hwnd == preview_.m_hWnd) {
            list_.SetFocus();
            return TRUE;
        }
    }
    return CFrameWnd::PreTranslateMessage(message);
}

std::vector<HWND> EditorFrame::panes_in_order() const
{
    std::vector<HWND> panes;
    if (shown_.scene) {
        panes.push_back(scene_window_.m_hWnd);
        for (const HWND field : properties_.fields())
            panes.push_back(field);
    }
    if (shown_.library)
        panes.insert(panes.end(), {tree_.m_hWnd, filter_.m_hWnd, filter_choice_.m_hWnd,
                                   list_.m_hWnd, preview_.m_hWnd});
    return panes;
}

void EditorFrame::go_to_next_pane(bool backwards)
{
    const std::vector<HWND> panes = panes_in_order();
    const HWND focus = ::GetFocus();
    // A label that is edited belongs to its list.
    const auto here = std::find_if(panes.begin(), panes.end(), [focus](HWND pane) {
        return pane == focus || ::IsChild(pane, focus);
    });
    const std::size_t count = panes.size();
    const auto at = static_cast<std::size_t>(here - panes.begin());
    const std::size_t next = here == panes.end() ? 0 : (at + (backwards ? count - 1 : 1)) % count;
    ::SetFocus(panes[next]);
    if (panes[next] == list_.m_hWnd)
        list_.focus_some_row();
    if (panes[next] == filter_.m_hWnd)
        filter_.SetSel(0, -1);
}

LRESULT EditorFrame::OnFilterLeft(WPARAM, LPARAM)
{
    list_.SetFocus();
    list_.focus_some_row();
    return 0;
}
