#pragma once

#include "platform/CImageList.h"

class PixelMap;

/// An image list of square pictures with alpha, all of one size, with room to their sides.
class IconImages {
public:
    /// `count` empty pictures, each with `margin_px` free to its left and right. False when the
    /// system refuses.
    [[nodiscard]] bool create(int size_px, int margin_px, int count);
    /// Puts `picture` in the middle of image `index`, made smaller where it is larger.
    void set(int index, const PixelMap& picture);

    [[nodiscard]] CImageList& list() { return list_; }
    [[nodiscard]] int size_px() const { return size_px_; }

private:
    CImageList list_;
    int size_px_ = 0;
    int margin_px_ = 0;
};
