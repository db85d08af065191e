#include "scene_editor/core/ShrunkPicture.h"

#include "graphics/PixelMapTools.h"

#include <algorithm>

namespace editor {

std::unique_ptr<PixelMap> shrunk(const PixelMap& picture, int size_px)
{
    const long width = picture.get_width();
    const long height = picture.get_height();
    if (width <= size_px && height <= size_px)
        return nullptr;
    const long longer = std::max(width, height);
    return std::unique_ptr<PixelMap>(
        PixelMapTools::Resize(picture, std::max(1L, width * size_px / longer),
                              std::max(1L, height * size_px / longer), true));
}

std::string size_text(const PixelMap& picture)
{
    return std::to_string(picture.get_width()) + " \xC3\x97 " +
           std::to_string(picture.get_height()) + " pixels";
}

}  // namespace editor
