#pragma once

#include "controls/GPixelMapView.h"
#include "platform/CStatic.h"
#include "scene_editor/core/LibraryResults.h"

/// A picture of the entry that is selected, in one of four ways, above its name, its size, what
/// else is known of it, and its description. Its frame shows whether it has the focus.
class PreviewPane : public CWnd {
public:
    BOOL create(CWnd& parent, UINT id, CFont& font, int dpi);

    /// Takes the preview over.
    void show(editor::PreviewLoaded preview);
    /// No picture; the texts alone.
    void show_text(const std::string& title, const std::string& caption);
    /// What is shown.
    [[nodiscard]] const editor::PreviewLoaded& shown() const { return preview_; }
    void set_draw_type(GPixelMapView::DrawType type);
    [[nodiscard]] GPixelMapView::DrawType draw_type() const { return draw_type_; }

protected:
    DECLARE_MESSAGE_MAP()
    void OnSize(UINT kind, int width, int height);
    void OnSetFocus(CWnd* former);
    void OnKillFocus(CWnd* next);
    void OnPaint();
    void OnLButtonDown(UINT keys, CPoint point);

private:
    void place_parts();
    void place_picture();
    /// The height of the picture with its frame, above the texts.
    [[nodiscard]] int picture_height() const;
    [[nodiscard]] PixelMap* wanted_picture() const;

    GPixelMapView view_;
    CStatic title_;
    CStatic caption_;
    CStatic more_;
    CStatic description_;
    editor::PreviewLoaded preview_;
    GPixelMapView::DrawType draw_type_ = GPixelMapView::DrawFit;
    bool has_more_ = false;
    bool has_description_ = false;
    int line_px_ = 0;
    int margin_px_ = 0;
    int frame_px_ = 0;
};
