#pragma once

#include "foundation/GString.h"
#include "graphics/AbstractImage.h"

/// What a picture file's head tells.
struct FileImageInfo {
    int width = 0;   ///< As the picture is seen, after it was turned upright.
    int height = 0;  ///< As the picture is seen.
    AbstractImage::MapFormat format = AbstractImage::Format24;  ///< What a map of it will have.
    GString format_name;                                        ///< "PNG".
};
