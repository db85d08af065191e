#pragma once

#include "platform/CGdiObject.h"
#include "platform/Windows.h"

class CDC;

/// A font.
class ZMR_GV_API CFont : public CGdiObject {
    DECLARE_DYNCREATE(CFont)

public:
    CFont() = default;

    BOOL CreateFontIndirect(const LOGFONT* description)
    {
        return take(::CreateFontIndirect(description));
    }
    /// The arguments are CreateFont's, in its order.
    BOOL CreateFont(int height, int width, int escapement, int orientation, int weight, BYTE italic,
                    BYTE underline, BYTE strike_out, BYTE character_set, BYTE output_precision,
                    BYTE clip_precision, BYTE quality, BYTE pitch_and_family, LPCTSTR face);
    /// A font `tenths` tenths of a point high on the device of `dc`; null means the screen.
    BOOL CreatePointFont(int tenths, LPCTSTR face, CDC* dc = nullptr);
    /// As above; the description's height is in tenths of a point.
    BOOL CreatePointFontIndirect(const LOGFONT* description, CDC* dc = nullptr);
    /// Its number of bytes, 0 on failure.
    int GetLogFont(LOGFONT* description) const
    {
        return GetObject(sizeof *description, description);
    }

    /// Null for null and for what is no font.
    [[nodiscard]] static CFont* FromHandle(HFONT font) { return from_handle_of<CFont>(font); }
    [[nodiscard]] operator HFONT() const { return static_cast<HFONT>(m_hObject); }
};
