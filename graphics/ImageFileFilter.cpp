#include "graphics/ImageFileFilter.h"

ImageFileFilter::ImageFileFilter(const char* name, const char* patterns)
    : name_(name), patterns_(patterns)
{
}

ImageFileFilter::~ImageFileFilter() = default;

GString ImageFileFilter::get_display_string() const
{
    return name_ + " (" + patterns_ + ")";
}

GString ImageFileFilter::get_dialog_string() const
{
    return get_display_string() + "|" + patterns_ + "|";
}

GString ImageFileFilter::get_default_extension() const
{
    GString extension = patterns_.segmentExcluding(';', 0);
    extension.extract(2);  // "*."
    return extension;
}
