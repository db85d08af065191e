#include "scene_editor/TextHeight.h"

#include "platform/CClientDC.h"
#include "platform/CFont.h"

int text_height(CWnd& window, CFont& font)
{
    CClientDC dc(&window);
    CFont* const former = dc.SelectObject(&font);
    TEXTMETRIC metrics{};
    dc.GetTextMetrics(&metrics);
    dc.SelectObject(former);
    return static_cast<int>(metrics.tmHeight);
}
