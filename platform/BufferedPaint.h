#pragma once

#include "platform/CBitmap.h"
#include "platform/CDC.h"
#include "platform/CRect.h"
#include "platform/HandlesGdi.h"
#include "platform/Windows.h"

#include <optional>

namespace zmr {

/// Painting without flicker: what is drawn goes to a bitmap as large as the clip box of the target,
/// which is copied to it in one step at the end of scope.
///     CPaintDC paint(this);
///     zmr::BufferedPaint buffer(paint);
///     buffer.dc().FillSolidRect(...);
/// The whole clip box must be drawn: the bitmap starts black. Only for targets with the mapping
/// mode MM_TEXT. The coordinates are the target's, which must outlive this object. Fonts, colours
/// and modes start as in a new context.
class ZMR_GV_API BufferedPaint {
public:
    explicit BufferedPaint(CDC& target);
    ~BufferedPaint();
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;

    /// Where to draw; the target itself when there is no memory for a bitmap, or nothing to paint.
    [[nodiscard]] CDC& dc() { return buffered() ? memory_ : target_; }
    [[nodiscard]] const CRect& clip_box() const { return clip_box_; }
    [[nodiscard]] bool buffered() const { return selected_.has_value(); }

private:
    CDC& target_;
    CRect clip_box_;
    CBitmap bitmap_;
    CDC memory_;
    std::optional<Selection> selected_;  // ends before the bitmap and the context do
};

}  // namespace zmr
