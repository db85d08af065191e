#include "graphics/ImageFileFormat.h"

#include "graphics/PictureFile.h"
#include "graphics/PixelMap.h"
#include "graphics/PixelMapTools.h"

namespace {

ImageFileFormat the_format;

}  // namespace

ImageFileFormat::ImageFileFormat()
{
    GObjectFileFormat::Register(*this);
}

ImageFileFormat::~ImageFileFormat()
{
    GObjectFileFormat::Unregister(*this);
}

unsigned char ImageFileFormat::write_object(const char* file, GStreamable* object) const
{
    return PixelMapTools::SaveToFile(zmr::class_cast<PixelMap>(object), file, true) ? 1 : 0;
}

GStreamable* ImageFileFormat::read_object(const char* file) const
{
    if (!zmr::recognise_picture_file(file))
        return nullptr;
    return new PixelMap(zmr::load_picture_file(file));
}

GString ImageFileFormat::read_object_class_name(const char* file)
{
    return zmr::recognise_picture_file(file) ? GString(PixelMap::metaclass_.name) : GString();
}
