#pragma once

#include "graphics/RGB_Color.h"

#include <cstddef>
#include <vector>

/// The colours of a picture of few colours, at most 256. A plain value.
class GPalette {
public:
    static constexpr std::size_t kMaxColors = 256;

    GPalette() = default;
    /// Adds a colour. False, with nothing changed, when the palette is full.
    bool add(const RGB_Color& color)
    {
        if (colors_.size() == kMaxColors)
            return false;
        colors_.push_back(color);
        return true;
    }
    [[nodiscard]] std::size_t size() const { return colors_.size(); }
    /// The colour at `index`; black beyond the end.
    [[nodiscard]] RGB_Color at(std::size_t index) const
    {
        return index < colors_.size() ? colors_[index] : RGB_Color();
    }
    friend bool operator==(const GPalette&, const GPalette&) = default;

private:
    std::vector<RGB_Color> colors_;
};
