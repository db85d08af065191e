#include "platform/CFont.h"

#include "platform/ByteText.h"
#include "platform/CDC.h"
#include "platform/HandlesGdi.h"

#include <cstdlib>

IMPLEMENT_DYNCREATE(CFont, CGdiObject)

BOOL CFont::CreateFont(int height, int width, int escapement, int orientation, int weight,
                       BYTE italic, BYTE underline, BYTE strike_out, BYTE character_set,
                       BYTE output_precision, BYTE clip_precision, BYTE quality,
                       BYTE pitch_and_family, LPCTSTR face)
{
    return take(::CreateFont(height, width, escapement, orientation, weight, italic, underline,
                             strike_out, character_set, output_precision, clip_precision, quality,
                             pitch_and_family, face));
}

BOOL CFont::CreatePointFont(int tenths, LPCTSTR face, CDC* dc)
{
    LOGFONT description{};
    description.lfHeight = tenths;
    description.lfCharSet = DEFAULT_CHARSET;
    zmr::copy_cut(description.lfFaceName, sizeof description.lfFaceName,
                  face != nullptr ? face : "");
    return CreatePointFontIndirect(&description, dc);
}

BOOL CFont::CreatePointFontIndirect(const LOGFONT* description, CDC* dc)
{
    const zmr::WindowDC screen(nullptr);
    const HDC device = dc != nullptr ? dc->m_hDC : screen.get();
    // In pixels first, then through the mapping, whose origin may lie anywhere.
    POINT points[2] = {};
    points[1].y = ::MulDiv(::GetDeviceCaps(device, LOGPIXELSY), description->lfHeight, 720);
    ::DPtoLP(device, points, 2);
    LOGFONT sized = *description;
    sized.lfHeight = -std::abs(points[1].y - points[0].y);
    return CreateFontIndirect(&sized);
}
