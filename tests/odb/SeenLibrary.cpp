#include "SeenLibrary.h"

#include "TestObjects.h"
#include "foundation/GStringCollection.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_AttributesArray.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ODB_TextDescriptionAttribute.h"

#include <algorithm>
#include <vector>

std::unique_ptr<PixelMap> test_picture(int width)
{
    auto map = std::make_unique<PixelMap>(width, 4, AbstractImage::MapFormat(6), nullptr);
    for (int x = 0; x < width; ++x)
        map->set_pixel(x, x % 4, RGB_Color(static_cast<unsigned char>(x * 7), 80, 160));
    return map;
}

std::string test_noise(std::size_t bytes)
{
    std::string result;
    std::uint32_t state = 12345;
    while (result.size() < bytes) {
        state = state * 1664525U + 1013904223U;
        result += static_cast<char>('!' + (state >> 24) % 90);
    }
    return result;
}

std::string describe_entry(ODB_Mediator& mediator)
{
    std::string seen =
        std::string(mediator.getClassName()) + " " + mediator.get_object_class_name().text + " ";
    {
        const std::unique_ptr<GStreamable> object(mediator.get_object());
        const auto* const note = zmr::class_cast<TestNote>(object.get());
        seen += note == nullptr ? "(none)" : note->note().text;
    }
    if (const PixelMap* const icon = mediator.get_icon())
        seen += " icon " + std::to_string(icon->get_width());
    ODB_AttributesArray attributes;
    mediator.get_attributes(attributes);
    std::vector<std::string> lines;
    for (long i = 0; i < attributes.count; ++i) {
        ODB_ObjectAttribute& attribute = attributes.at(i);
        std::string line = std::string(" ") + attribute.getClassName();
        if (const auto* const rating = zmr::class_cast<TestRating>(&attribute))
            line += " " + std::to_string(rating->stars);
        if (const auto* const words = zmr::class_cast<ODB_TextDescriptionAttribute>(&attribute))
            line += std::string(" ") + words->get_text().text;
        if (const auto* const pictures = zmr::class_cast<ODB_PixelMapAttribute>(&attribute)) {
            GStringCollection names;
            pictures->get_names(names);
            for (long n = 0; n < names.count; ++n)
                line += std::string(" ") + names.at(n);
        }
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    for (const std::string& line : lines)
        seen += line;
    return seen;
}

SeenLibrary see_library(const std::string& file)
{
    SeenLibrary seen;
    ObjectDatabase database(file.c_str(), GIO::OpenRead);
    if (database.server == nullptr) {
        if (database.open_failure() != ResourceFile::OpenFailure::Missing)
            seen["unreadable"] = database.open_error().text;
        return seen;
    }
    if (!database.verify([&seen](const ResourceFile::Damage& damage) {
            seen["damaged"] += damage.reason + "; ";
        }))
        seen["damaged"] += "verify";
    ODB_MediatorsArray contents;
    database.get_contents(GResourcePath(), contents, true);
    for (long i = 0; i < contents.count; ++i) {
        const GResourceFullName& entry = contents.at(i).get_DB_resname();
        seen[std::string(entry.get_readable_form().text) + entry.name.text] =
            describe_entry(contents.at(i));
    }
    return seen;
}
