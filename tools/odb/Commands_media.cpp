// odb picture and movie: what an object shows besides its icon.
#include "foundation/GException.h"
#include "foundation/GStringCollection.h"
#include "graphics/PixelMap.h"
#include "graphics/PixelMapTools.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_MovieAttribute.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ObjectDatabase.h"
#include "tools/odb/Commands.h"
#include "tools/odb/OpenEntry.h"
#include "tools/odb/OwnedObject.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <memory>

namespace odb {

namespace {

/// Attaches the attribute to the entry; a library that is open to be written then has it.
void attach(const OpenedEntry& entry, ODB_ObjectAttribute& attribute)
{
    entry.mediator->set_attribute(&attribute, false);
}

[[nodiscard]] bool has_picture(const ODB_PixelMapAttribute& pictures, const std::string& name)
{
    GStringCollection names;
    pictures.get_names(names);
    long index = 0;
    return names.search(name.c_str(), index);
}

std::string no_picture(const PictureArguments& arguments)
{
    return fmt::format("it has no picture \"{}\"", arguments.picture);
}

/// The picture of a file; null with the reason.
std::unique_ptr<PixelMap> load_picture(const std::string& file, std::string& reason)
{
    try {
        auto map = std::make_unique<PixelMap>(0, 0, AbstractImage::Format24, nullptr);
        map->load(file.c_str());
        return map;
    } catch (const GException& failure) {
        reason = failure.what();
    }
    return nullptr;
}

/// Ends a command that stored something: `stored` tells whether it is there, `reason` why not, and
/// `fields` what to print for a program.
ExitCode finish_storing(const OpenedEntry& entry, bool stored, const std::string& reason,
                        const nlohmann::json& fields, Style style)
{
    if (!stored && !writing_failed(entry.database()))
        return refuse_entry(entry, reason);
    const ExitCode code = finish_writing(entry.database(), entry.file, ExitCode::Done);
    if (code == ExitCode::Done && style == Style::Json)
        print(json_text(fields) + "\n");
    return code;
}

}  // namespace

ExitCode picture_list(const PictureArguments& arguments, Style style)
{
    const OpenedEntry entry = open_entry_to_read(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    ODB_PixelMapAttribute pictures;
    attach(entry, pictures);
    GStringCollection names;
    pictures.get_names(names);
    JsonArrayPrinter list;
    for (long i = 0; i < names.count; ++i) {
        const std::unique_ptr<PixelMap> map(pictures.get_map(names.at(i)));
        const int width = map == nullptr ? 0 : map->get_width();
        const int height = map == nullptr ? 0 : map->get_height();
        if (style == Style::Json)
            list.add({{"name", names.at(i)}, {"size", {width, height}}});
        else
            print(fmt::format("{} x {}  {}\n", width, height, printable(names.at(i))));
    }
    if (style == Style::Json)
        list.close();
    return ExitCode::Done;
}

ExitCode picture_add(const PictureArguments& arguments, Style style)
{
    std::string reason;
    const std::unique_ptr<PixelMap> map = load_picture(arguments.other_file, reason);
    if (map == nullptr) {
        complain(fmt::format("{}: {}", arguments.other_file, reason));
        return ExitCode::Refused;
    }
    const OpenedEntry entry = open_entry_to_write(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    ODB_PixelMapAttribute pictures;
    {
        const ResourceFile::CommitScope scope(entry.database());
        attach(entry, pictures);
        pictures.add_map(arguments.picture.c_str(), map.get());
    }
    return finish_storing(
        entry, has_picture(pictures, arguments.picture),
        "the library can't have a picture of that name",
        {{"name", arguments.picture}, {"size", {map->get_width(), map->get_height()}}}, style);
}

ExitCode picture_extract(const PictureArguments& arguments, Style style)
{
    const OpenedEntry entry = open_entry_to_read(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    ODB_PixelMapAttribute pictures;
    attach(entry, pictures);
    const std::unique_ptr<PixelMap> map(pictures.get_map(arguments.picture.c_str()));
    if (map == nullptr)
        return refuse_unreadable(entry, no_picture(arguments));
    if (must_keep_file(arguments.other_file, arguments.overwrite))
        return ExitCode::Refused;
    if (!PixelMapTools::SaveToFile(map.get(), arguments.other_file.c_str(), arguments.overwrite)) {
        complain(
            fmt::format("{}: it can't be written; pictures are written as png, jpg, bmp and "
                        "tga",
                        arguments.other_file));
        return ExitCode::Refused;
    }
    if (style == Style::Json)
        print(json_text({{"name", arguments.picture}, {"file", arguments.other_file}}) + "\n");
    return ExitCode::Done;
}

ExitCode picture_remove(const PictureArguments& arguments, Style)
{
    const OpenedEntry entry = open_entry_to_write(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    const OwnedObject stored(entry.mediator->get_attribute(&ODB_PixelMapAttribute::metaclass_));
    auto* const pictures = zmr::class_cast<ODB_PixelMapAttribute>(stored.get());
    if (pictures == nullptr || !has_picture(*pictures, arguments.picture))
        return refuse_entry(entry, no_picture(arguments));
    pictures->remove_map(arguments.picture.c_str());
    return finish_writing(entry.database(), arguments.file, ExitCode::Done);
}

ExitCode movie_set(const MovieArguments& arguments, Style style)
{
    const std::uint64_t bytes = bytes_of_file(arguments.other_file);
    if (bytes == 0) {
        complain(fmt::format("{}: it is missing, empty or can't be read", arguments.other_file));
        return ExitCode::Refused;
    }
    const OpenedEntry entry = open_entry_to_write(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    ODB_MovieAttribute movie;
    {
        const ResourceFile::CommitScope scope(entry.database());
        attach(entry, movie);
        movie.set_movie(arguments.other_file.c_str());
    }
    return finish_storing(entry, entry.database().exist(movie.get_movie_resource_name()),
                          fmt::format("{} can't be stored as its movie", arguments.other_file),
                          {{"path", entry.name.text()}, {"bytes", bytes}}, style);
}

ExitCode movie_extract(const MovieArguments& arguments, Style style)
{
    const OpenedEntry entry = open_entry_to_read(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    ODB_MovieAttribute movie;
    attach(entry, movie);
    if (!entry.database().exist(movie.get_movie_resource_name()))
        return refuse_entry(entry, "it has no movie");
    if (must_keep_file(arguments.other_file, arguments.overwrite))
        return ExitCode::Refused;
    if (!movie.extract_movie(arguments.other_file.c_str()))
        return refuse_unreadable(entry, fmt::format("{} can't be written", arguments.other_file));
    if (style == Style::Json)
        print(json_text({{"file", arguments.other_file},
                         {"bytes", bytes_of_file(arguments.other_file)}}) +
              "\n");
    return ExitCode::Done;
}

ExitCode movie_remove(const MovieArguments& arguments, Style)
{
    const OpenedEntry entry = open_entry_to_write(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    const OwnedObject stored(entry.mediator->get_attribute(&ODB_MovieAttribute::metaclass_));
    auto* const movie = zmr::class_cast<ODB_MovieAttribute>(stored.get());
    if (movie == nullptr || !entry.database().exist(movie->get_movie_resource_name()))
        return refuse_entry(entry, "it has no movie");
    movie->set_movie(nullptr);
    return finish_writing(entry.database(), arguments.file, ExitCode::Done);
}

}  // namespace odb
