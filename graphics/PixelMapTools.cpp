#include "graphics/PixelMapTools.h"

#include "foundation/FileFind.h"
#include "foundation/GException.h"
#include "graphics/NumberedName.h"
#include "graphics/PictureFile.h"
#include "graphics/Resampling.h"

#include <memory>
#include <set>
#include <string>

namespace {

/// The texts of the numbers that files of this name have.
std::set<std::string> numbers_beside(const GFile& directory, const zmr::NumberedName& name)
{
    std::set<std::string> numbers;
    GFile mask = directory;
    mask.add_name("*");
    for (FileFind found(mask, FileFind::kFiles, true); !found.name.is_empty(); ++found) {
        const auto other = zmr::split_numbered_name(found.name.view());
        if (other && other->prefix == name.prefix && other->suffix == name.suffix)
            numbers.emplace(other->digits);
    }
    return numbers;
}

struct Run {
    long first;
    long last;
};

Run run_around(long number, int digits, const std::set<std::string>& numbers)
{
    Run run{number, number};
    while (run.first > 0 && numbers.count(zmr::number_text(run.first - 1, digits)) > 0)
        --run.first;
    while (numbers.count(zmr::number_text(run.last + 1, digits)) > 0)
        ++run.last;
    return run;
}

}  // namespace

PixelMap* PixelMapTools::LoadFromFile(const char* file)
{
    try {
        auto map = std::make_unique<PixelMap>(0, 0, AbstractImage::Format24, nullptr);
        map->load(file);
        return map.release();
    } catch (const GLibraryException&) {
        return nullptr;
    }
}

bool PixelMapTools::SaveToFile(const PixelMap* map, const char* file, bool overwrite)
{
    return map != nullptr && zmr::save_picture_file(map->pixels(), file, overwrite);
}

PixelMap* PixelMapTools::Resize(const PixelMap& map, long width, long height, bool smooth)
{
    if (width < 1 || height < 1 || !zmr::PixelBuffer::fits(width, height) ||
        map.pixels().is_empty())
        return nullptr;
    const auto scale = smooth ? &zmr::scaled_smooth : &zmr::scaled_nearest;
    return new PixelMap(scale(map.pixels(), static_cast<int>(width), static_cast<int>(height)));
}

bool PixelMapTools::GetSequence(const char* file, PixelMapLocation& location, bool)
{
    const GFile path(file);
    if (path.is_empty() || !path.exists() || path.isDirectory())
        return false;
    PixelMapLocation result;
    result.directory = path.get_directory();
    const GString name = path.get_name();
    const auto numbered = zmr::split_numbered_name(name.view());
    if (!numbered) {
        result.prefix = name;
        location = result;
        return true;
    }
    result.prefix = GString(numbered->prefix);
    result.suffix = GString(numbered->suffix);
    result.current = numbered->number();
    result.digits = static_cast<int>(numbered->digits.size());
    const std::set<std::string> numbers = numbers_beside(result.directory, *numbered);
    Run run = run_around(result.current, result.digits, numbers);
    if (numbered->digits.front() != '0' && numbered->digits.size() > 1) {
        // "shot10" may follow "shot9" as well as "shot09".
        const Run plain = run_around(result.current, 1, numbers);
        if (plain.last - plain.first > run.last - run.first) {
            run = plain;
            result.digits = 1;
        }
    }
    result.first = run.first;
    result.last = run.last;
    location = result;
    return true;
}
