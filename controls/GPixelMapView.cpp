#include "controls/GPixelMapView.h"

#include "controls/PixelMapPlacing.h"
#include "graphics/PixelMapTools.h"
#include "platform/BufferedPaint.h"
#include "platform/CPaintDC.h"

IMPLEMENT_DYNCREATE(GPixelMapView, CWnd)

BEGIN_MESSAGE_MAP(GPixelMapView, CWnd)
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
END_MESSAGE_MAP()

namespace {

zmr::PictureSize size_of(const CRect& rect)
{
    return {rect.Width(), rect.Height()};
}

zmr::PictureSize size_of(const PixelMap& map)
{
    return {map.get_width(), map.get_height()};
}

CRect client_rect_of(const CWnd& window)
{
    CRect rect;
    if (window.m_hWnd != nullptr)
        window.GetClientRect(&rect);
    return rect;
}

}  // namespace

GPixelMapView::~GPixelMapView()
{
    if (m_bOwnMap)
        delete m_pMap;
}

void GPixelMapView::set_map(PixelMap* pMap, bool bOwn)
{
    if (m_bOwnMap && m_pMap != pMap)
        delete m_pMap;
    m_pMap = pMap;
    m_bOwnMap = bOwn;
    m_rectImage.SetRectEmpty();
    if (m_pMap != nullptr)
        place_map();
    if (m_hWnd != nullptr)
        Invalidate(TRUE);
}

void GPixelMapView::place_map()
{
    const auto placing = static_cast<zmr::PicturePlacing>(m_drawType);
    const zmr::PictureSize size = size_of(*m_pMap);
    const GRect placed = zmr::place_picture(placing, size, size_of(client_rect_of(*this)));
    m_rectImage = CRect(placed.x0, placed.y0, placed.x1, placed.y1);
    if (!zmr::wants_smaller_picture(placing, size, placed))
        return;
    PixelMap* const smaller =
        PixelMapTools::Resize(*m_pMap, m_rectImage.Width(), m_rectImage.Height(), true);
    if (smaller == nullptr)
        return;
    if (m_bOwnMap)
        delete m_pMap;
    m_pMap = smaller;
    m_bOwnMap = true;
}

void GPixelMapView::OnPaint()
{
    if (m_pMap == nullptr) {
        CWnd::OnPaint();
        return;
    }
    const auto draw_on = [this](CDC& dc) {
        dc.SetStretchBltMode(COLORONCOLOR);
        const GRect target = m_rectImage;
        m_pMap->stretch(dc.m_hDC, 0, 0, m_pMap->get_width(), m_pMap->get_height(), target.x0,
                        target.y0, target.x1, target.y1);
    };
    CPaintDC dc(this);
    if (m_pMap->get_format() != AbstractImage::Format32) {
        draw_on(dc);
        return;
    }
    // What can be seen through is laid on the window's colour, not on the last painting.
    zmr::BufferedPaint buffer(dc);
    buffer.dc().FillSolidRect(buffer.clip_box(), ::GetSysColor(COLOR_BTNFACE));
    draw_on(buffer.dc());
}

BOOL GPixelMapView::OnEraseBkgnd(CDC* pDC)
{
    for (const GRect& strip : zmr::free_strips(m_rectImage, size_of(client_rect_of(*this))))
        if (!strip.is_empty())
            pDC->FillSolidRect(CRect(strip.x0, strip.y0, strip.x1, strip.y1),
                               ::GetSysColor(COLOR_BTNFACE));
    return TRUE;
}
