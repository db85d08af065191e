#include "controls/PixelMapPlacing.h"

#include <algorithm>

namespace zmr {
namespace {

bool is_empty(PictureSize size)
{
    return size.width < 1 || size.height < 1;
}

GRect fit(PictureSize picture, PictureSize area)
{
    const double vertical = static_cast<double>(area.height) / picture.height;
    const double horizontal = static_cast<double>(area.width) / picture.width;
    if (vertical > horizontal) {  // the width limits
        const auto height =
            static_cast<std::int32_t>(std::int64_t{area.width} * picture.height / picture.width);
        const std::int32_t top = (area.height - height) / 2;
        return {0, top, area.width, top + height};
    }
    const auto width =
        static_cast<std::int32_t>(std::int64_t{area.height} * picture.width / picture.height);
    const std::int32_t left = (area.width - width) / 2;
    return {left, 0, left + width, area.height};
}

}  // namespace

GRect place_picture(PicturePlacing placing, PictureSize picture, PictureSize area)
{
    if (is_empty(picture))
        return {};
    area = {std::max(area.width, 0), std::max(area.height, 0)};
    switch (placing) {
        case PicturePlacing::kCentered: {
            const std::int32_t left = (area.width - picture.width) / 2;
            const std::int32_t top = (area.height - picture.height) / 2;
            return {left, top, left + picture.width, top + picture.height};
        }
        case PicturePlacing::kTopLeft:
            return {0, 0, picture.width, picture.height};
        case PicturePlacing::kFit:
            return fit(picture, area);
        case PicturePlacing::kStretch:
            return {0, 0, area.width, area.height};
    }
    return {};
}

bool wants_smaller_picture(PicturePlacing placing, PictureSize picture, const GRect& placed)
{
    if (placing != PicturePlacing::kFit && placing != PicturePlacing::kStretch)
        return false;
    return !placed.is_empty() &&
           (picture.width > placed.width() || picture.height > placed.height());
}

std::array<GRect, 4> free_strips(const GRect& placed, PictureSize area)
{
    std::array<GRect, 4> strips{};
    if (is_empty(area))
        return strips;
    const GRect covered(std::max(placed.x0, 0), std::max(placed.y0, 0),
                        std::min(placed.x1, area.width), std::min(placed.y1, area.height));
    if (placed.is_empty() || covered.is_empty()) {
        strips[0] = {0, 0, area.width, area.height};
        return strips;
    }
    const std::array<GRect, 4> around = {
        GRect{0, 0, area.width, covered.y0},
        GRect{0, covered.y1, area.width, area.height},
        GRect{0, covered.y0, covered.x0, covered.y1},
        GRect{covered.x1, covered.y0, area.width, covered.y1},
    };
    for (std::size_t i = 0; i < strips.size(); ++i)
        if (!around[i].is_empty())
            strips[i] = around[i];
    return strips;
}

}  // namespace zmr
