#pragma once

#include "foundation/GPointer.h"
#include "platform/CStatic.h"
#include "scene_editor/PropertyEdit.h"
#include "scene_editor/core/PropertyTexts.h"
#include "scene_editor/core/SceneDocument.h"

#include <array>
#include <vector>

class CFont;

/// The properties of the selected object. It is told of changes by the object itself.
class PropertyPane : public CWnd {
public:
    BOOL create(CWnd& parent, UINT id, CFont& font, int dpi);

    /// Shows that object, or none for null, from now on.
    void watch(GResponder* object);
    /// The fields that can be typed into now, in their order.
    [[nodiscard]] std::vector<HWND> fields() const;

protected:
    DECLARE_MESSAGE_MAP()
    void OnSize(UINT kind, int width, int height);
    LRESULT OnPropertyLeft(WPARAM field, LPARAM how);

private:
    static constexpr std::size_t kTold = 4;  ///< Properties that can't be typed.

    void show_texts();
    void take_typed(std::size_t field, bool tells_refusal);

    std::array<CStatic, editor::kProperties + kTold> captions_;
    std::array<PropertyEdit, editor::kProperties> edits_;
    std::array<CStatic, kTold> told_;
    editor::PropertyTexts shown_;
    TGPointer<GResponder> object_;
    editor::ChangeListener listener_{[this] { show_texts(); }};
    int line_px_ = 0;
    int margin_px_ = 0;
    int caption_px_ = 0;
};
