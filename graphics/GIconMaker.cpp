#include "graphics/GIconMaker.h"

#include "foundation/Immortal.h"
#include "graphics/PixelMap.h"
#include "graphics/PixelMapTools.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

constinit zmr::Immortal<std::vector<GIconMaker*>> g_makers;

// A side of a picture whose other side, `longest`, becomes `size`: rounded, at least 1.
long scaled_side(int side, int longest, int size)
{
    const std::int64_t scaled = (std::int64_t{side} * size + longest / 2) / longest;
    return static_cast<long>(std::max<std::int64_t>(scaled, 1));
}

// The picture itself, fitted into the square; a small one keeps its size.
PixelMap* make_picture_icon(const GStreamable& object, int size_px)
{
    const auto* picture = zmr::class_cast<PixelMap>(&object);
    if (picture == nullptr || picture->get_width() < 1 || picture->get_height() < 1)
        return nullptr;
    const int longest = std::max(picture->get_width(), picture->get_height());
    if (longest <= size_px)
        return new PixelMap(*picture);
    return PixelMapTools::Resize(*picture, scaled_side(picture->get_width(), longest, size_px),
                                 scaled_side(picture->get_height(), longest, size_px), true);
}

}  // namespace

GIconMaker::~GIconMaker()
{
    Unregister(*this);
}

void GIconMaker::Register(GIconMaker& maker)
{
    if (std::find(g_makers->begin(), g_makers->end(), &maker) == g_makers->end())
        g_makers->push_back(&maker);
}

void GIconMaker::Unregister(GIconMaker& maker)
{
    std::erase(*g_makers, &maker);
    if (g_makers->empty())
        g_makers->shrink_to_fit();  // nothing stays behind when the library itself leaves
}

PixelMap* GIconMaker::Make(const GStreamable& object, int size_px)
{
    if (size_px < 1 || size_px > kMaxSize_px)
        return nullptr;
    for (const GIconMaker* maker : *g_makers) {
        if (PixelMap* icon = maker->make_icon(object, size_px))
            return icon;
    }
    return make_picture_icon(object, size_px);
}
