#include "graphics/PixelMapLocation.h"

#include "graphics/NumberedName.h"

GFile PixelMapLocation::file(long number) const
{
    GString name = prefix;
    if (digits > 0) {
        name += zmr::number_text(number, digits).c_str();
        name += suffix;
    }
    GFile result = directory;
    result.add_name(name);
    return result;
}

GString PixelMapLocation::pattern() const
{
    GString result = prefix;
    if (digits > 0) {
        result += GString('#', static_cast<unsigned>(digits));
        result += suffix;
    }
    return result;
}
