#include "platform/BufferedPaint.h"

namespace zmr {

BufferedPaint::BufferedPaint(CDC& target) : target_(target)
{
    const int kind = target.GetClipBox(&clip_box_);
    if (kind == ERROR || kind == NULLREGION || clip_box_.IsRectEmpty())
        return;
    if (!bitmap_.CreateCompatibleBitmap(&target, clip_box_.Width(), clip_box_.Height()) ||
        !memory_.CreateCompatibleDC(&target))
        return;
    selected_.emplace(memory_.m_hDC, bitmap_.m_hObject);
    if (!*selected_) {
        selected_.reset();
        return;
    }
    memory_.PatBlt(0, 0, clip_box_.Width(), clip_box_.Height(), BLACKNESS);
    memory_.SetViewportOrg(-clip_box_.left, -clip_box_.top);
    // Patterns run on as if the bitmap lay in the window.
    memory_.SetBrushOrg(-clip_box_.left, -clip_box_.top);
}

BufferedPaint::~BufferedPaint()
{
    if (!buffered())
        return;
    // Whatever the painter left behind, the copy is of the whole bitmap.
    memory_.SelectClipRgn(nullptr);
    memory_.SetMapMode(MM_TEXT);
    memory_.SetWindowOrg(0, 0);
    memory_.SetViewportOrg(0, 0);
    target_.BitBlt(clip_box_.left, clip_box_.top, clip_box_.Width(), clip_box_.Height(), &memory_,
                   0, 0, SRCCOPY);
}

}  // namespace zmr
