#include "foundation/GObjectFileFormat.h"

#include "foundation/Immortal.h"

#include <algorithm>
#include <vector>

namespace {

constinit zmr::Immortal<std::vector<GObjectFileFormat*>> g_formats;

}  // namespace

GObjectFileFormat::~GObjectFileFormat()
{
    Unregister(*this);
}

void GObjectFileFormat::Register(GObjectFileFormat& format)
{
    if (std::find(g_formats->begin(), g_formats->end(), &format) == g_formats->end())
        g_formats->push_back(&format);
}

void GObjectFileFormat::Unregister(GObjectFileFormat& format)
{
    std::erase(*g_formats, &format);
    if (g_formats->empty())
        g_formats->shrink_to_fit();  // nothing stays behind when the library itself leaves
}

GObjectFileFormat* GObjectFileFormat::Find(const char* file)
{
    for (GObjectFileFormat* format : *g_formats) {
        if (!format->read_object_class_name(file).is_empty())
            return format;
    }
    return nullptr;
}

std::span<GObjectFileFormat* const> GObjectFileFormat::All()
{
    return *g_formats;
}
