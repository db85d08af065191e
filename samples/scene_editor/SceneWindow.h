#pragma once

#include "app/GAccelerators.h"
#include "platform/CWnd.h"
#include "scene_editor/core/HoldTimes.h"
#include "scene_editor/core/SceneDocument.h"
#include "scene_editor/core/SceneInput.h"

#include <cstdint>
#include <string>
#include <vector>

/// The view of the scene: it makes events of the mouse, its wheel and keys, sends them to the
/// scene's root, and shows what the scene draws. It draws when the system asks, in memory, and
/// shows each picture in one step.
class SceneWindow : public CWnd {
public:
    BOOL create(CWnd& parent, UINT id, int dpi, editor::SceneDocument& document);
    /// The scene has changed, or another one took its place.
    void show_change();
    /// Tells another scene the size of the window, and whether it has the focus.
    void show_scene();

    /// The name of the object that is drawn below the mouse; empty where there is none.
    [[nodiscard]] std::string name_under_mouse() const;

    /// Its keys are commands, and those are the frame's.
    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) override;

    /// How long drawing took.
    struct DrawTimes {
        unsigned long pictures = 0;
        editor::HoldTimes::Clock::duration all{};
        editor::HoldTimes::Clock::duration longest{};
    };
    [[nodiscard]] const DrawTimes& draw_times() const { return draw_times_; }
    void reset_draw_times() { draw_times_ = {}; }

protected:
    DECLARE_MESSAGE_MAP()
    void OnSize(UINT kind, int width, int height);
    void OnSetFocus(CWnd* former);
    void OnKillFocus(CWnd* next);
    BOOL OnEraseBkgnd(CDC* dc);
    void OnPaint();
    void OnLButtonDown(UINT keys, CPoint point);
    void OnLButtonUp(UINT keys, CPoint point);
    void OnMouseMove(UINT keys, CPoint point);
    void OnMouseLeave();
    BOOL OnMouseWheel(UINT keys, short delta, CPoint point);
    void OnCaptureChanged(CWnd* other);
    void OnKeyDown(UINT key, UINT repeats, UINT flags);

private:
    void send(const GEvent& event);
    void draw();
    void draw_frame();
    void tell_place(POINT point);

    editor::SceneDocument* document_ = nullptr;
    GAccelerators keys_;
    int dpi_ = 96;
    int width_px_ = 0;
    int height_px_ = 0;
    bool is_held_ = false;        ///< The left button went down here.
    bool hears_leaving_ = false;  ///< The system tells when the mouse goes.
    std::vector<std::uint32_t> pixels_;
    DrawTimes draw_times_;
};
