#pragma once

#include "platform/CRect.h"
#include "platform/CWnd.h"
#include "platform/Windows.h"

class PixelMap;

/// A child window that shows a picture in one of four ways. Only what the picture leaves free is
/// erased, so nothing flickers. The place is reckoned when a map is set: a change of the window's
/// size or of the draw type takes effect at the next set_map. User-interface thread.
class ZMR_GV_API GPixelMapView : public CWnd {
    DECLARE_DYNCREATE(GPixelMapView)

public:
    enum DrawType {
        DrawCentered = 1,  ///< In its natural size, in the middle of the client area.
        DrawTopLeft = 2,   ///< In its natural size, at the top left.
        DrawFit = 3,       ///< In the largest size that keeps its proportions, in the middle.
        DrawStretch = 4,   ///< All over the client area.
    };

    GPixelMapView() = default;
    ~GPixelMapView() override;

    /// Shows `pMap`, which may be null, and deletes the former map if the view owns that one. With
    /// `bOwn` the view deletes the map when it is done with it, else the caller keeps it alive as
    /// long as it is shown. A map that is to be shown smaller than it is gets replaced by a smaller
    /// copy, which the view owns: get_map then gives the copy, and a map that the caller keeps
    /// stays as it was. Setting the map that is shown places it anew. Cost: that of the scaling.
    void set_map(PixelMap* pMap, bool bOwn);
    /// The map that is shown: what was set or the view's smaller copy of it. Null when there is
    /// none.
    [[nodiscard]] PixelMap* get_map() const { return m_pMap; }
    void set_draw_type(DrawType type) { m_drawType = type; }
    [[nodiscard]] DrawType get_draw_type() const { return m_drawType; }
    /// Where the map is drawn, in client coordinates; it may reach over the client area. Empty
    /// without a map, and where nothing of it would be seen.
    [[nodiscard]] const CRect& get_image_rect() const { return m_rectImage; }

protected:
    DECLARE_MESSAGE_MAP()

    void OnPaint();
    /// Fills what the picture leaves free and says that all is erased.
    BOOL OnEraseBkgnd(CDC* pDC);

    DrawType m_drawType = DrawStretch;
    PixelMap* m_pMap = nullptr;
    bool m_bOwnMap = false;  ///< This view deletes the map.
    CRect m_rectImage;

private:
    void place_map();
};
