// The main window: what of it is kept between runs, and the files that were open.
#include "app/WindowPlacement.h"
#include "foundation/GFile.h"
#include "foundation/mpstream.h"
#include "platform/CWinApp.h"
#include "scene_editor/EditorFrame.h"
#include "scene_editor/core/CommandLine.h"
#include "scene_editor/resource.h"
#include "settings/RegistryManager.h"

void EditorFrame::use_settings()
{
    preview_.set_draw_type(static_cast<GPixelMapView::DrawType>(settings_.draw_type));
    filter_.SetWindowText(settings_.filter.c_str());
    if (!settings_.shows_status_bar)
        ShowControlBar(&status_bar_, FALSE, FALSE);
}

void EditorFrame::show(int how)
{
    if (!settings_.placement) {
        ShowWindow(how);
        return;
    }
    ompstream kept;
    kept << editor::placement_at_start(*settings_.placement, static_cast<std::uint32_t>(how));
    impstream in(kept.bytes());
    GMfcLoadWindowPlacement(in, m_hWnd);
}

void EditorFrame::keep_settings()
{
    ompstream out;
    GMfcSaveWindowPlacement(out, m_hWnd);
    impstream in(out.bytes());
    zmr::WindowPlacementRecord placement;
    in >> placement;

    editor::EditorSettings settings;
    settings.placement = placement;
    settings.widths = widths_;
    settings.sizes = sizes_;
    settings.shown = shown_;
    // Without the module there is no scene to show; the user has not hidden it.
    if (document_.root() == nullptr)
        settings.shown = settings_.shown;
    settings.shows_status_bar = (status_bar_.GetStyle() & WS_VISIBLE) != 0;
    settings.draw_type = preview_.draw_type();
    CString filter;
    filter_.GetWindowText(filter);
    settings.filter = std::string(filter.view());
    // A window that forgets is no reason to keep anybody from closing it.
    static_cast<void>(editor::write_settings(*RegistryManager::get(), settings, dpi_));
}

bool EditorFrame::open_recent(const std::string& file)
{
    if (!GFile(file.c_str()).exists()) {
        const std::string message =
            "\"" + file + "\" is not there any more.\n\nIt is taken off the list of recent files.";
        AfxMessageBox(message.c_str(), MB_OK | MB_ICONEXCLAMATION | MB_HELP, IDP_RECENT_FILE_GONE);
        return false;
    }
    if (!editor::is_scene_file(file))
        open_library(file);
    else if (may_leave_scene())
        open_scene(file);
    return true;
}
