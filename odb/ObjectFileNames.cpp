#include "odb/ObjectFileNames.h"

#include "foundation/FileSystem.h"
#include "store/GObjectFilePlacement.h"
#include "store/GObjectPlace.h"

namespace zmr {
namespace {

constexpr char kMadeUpName[] = "????????";

}  // namespace

GFile filename_of_place(const GObjectPlace& place)
{
    const auto* const file = zmr::class_cast<GObjectFilePlacement>(place.placement);
    return file == nullptr ? GFile() : file->get_filename();
}

GFile resolve_filename(const GFile& base, const GFile& file)
{
    if (!file.isRelativePath())
        return file;
    GFile full = base;
    if (base.isDirectory())
        full.add_name(file.text);
    else
        full.replace_name(file.text);
    return full;
}

bool is_usable_file(const GFile& file)
{
    return !file.is_empty() && !file.isMask() && file.valid() && !file.isDirectory();
}

GFile unique_file(const char* mask, const char* extension)
{
    GFile file(mask);
    if (!is_usable_file(file) || file.exists()) {
        if (file.isMask()) {
            file.replace("*", kMadeUpName, false);
        } else if (file.isDirectory()) {
            file.add_name(kMadeUpName);
        } else {
            file.replace_name(kMadeUpName);
            if (extension != nullptr)
                file.replace_extension(extension);
        }
        FileSystem::UniqueName(file, '?');
    }
    file.expand();
    return file;
}

}  // namespace zmr
