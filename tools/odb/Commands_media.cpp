// odb picture and movie: what an object shows besides its icon.
#include "foundation/GException.h"
#include "foundation/GStringCollection.h"
#include "foundation/OwnedObject.h"
#include "graphics/PixelMap.h"
#include "graphics/PixelMapTools.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_MovieAttribute.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ObjectDatabase.h"
#include "tools/odb/Commands.h"
#include "tools/odb/OpenEntry.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <memory>

namespace odb {

namespace {

constexpr const char* kNoMovie = "it has no movie";

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

/// Looks at the object's attribute, whether or not it is stored: `look` ends the command.
template <class Attribute, class Arguments, class Look>
ExitCode by_reading(const Arguments& arguments, const Look& look)
{
    const OpenedEntry entry = open_entry_to_read(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    Attribute attribute;
    attach(entry, attribute);
    return look(entry, attribute);
}

/// Stores the attribute and what `store` adds to it in one commit; `finish` ends the command.
template <class Attribute, class Arguments, class Store, class Finish>
ExitCode by_storing(const Arguments& arguments, const Store& store, const Finish& finish)
{
    const OpenedEntry entry = open_entry_to_write(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    Attribute attribute;
    {
        const ResourceFile::CommitScope scope(entry.database());
        attach(entry, attribute);
        store(attribute);
    }
    return finish(entry, attribute);
}

/// Removes something of the stored attribute: `remove` gives false when there is nothing to remove.
template <class Attribute, class Arguments, class Remove>
ExitCode by_removing(const Arguments& arguments, const std::string& nothing, const Remove& remove)
{
    const OpenedEntry entry = open_entry_to_write(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    const zmr::OwnedObject<> stored(entry.mediator->get_attribute(&Attribute::metaclass_));
    auto* const attribute = zmr::class_cast<Attribute>(stored.get());
    if (attribute == nullptr || !remove(entry, *attribute))
        return refuse_entry(entry, nothing);
    return finish_writing(entry.database(), entry.file, ExitCode::Done);
}

[[nodiscard]] bool has_movie(const OpenedEntry& entry, const ODB_MovieAttribute& movie)
{
    return entry.database().exist(movie.get_movie_resource_name());
}

ExitCode list_pictures(const ODB_PixelMapAttribute& pictures, Style style)
{
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

ExitCode write_picture(const PictureArguments& arguments, const PixelMap& map, Style style)
{
    if (must_keep_file(arguments.other_file, arguments.overwrite))
        return ExitCode::Refused;
    if (!PixelMapTools::SaveToFile(&map, arguments.other_file.c_str(), arguments.overwrite)) {
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

ExitCode write_movie(const MovieArguments& arguments, const OpenedEntry& entry,
                     const ODB_MovieAttribute& movie, Style style)
{
    if (must_keep_file(arguments.other_file, arguments.overwrite))
        return ExitCode::Refused;
    if (!movie.extract_movie(arguments.other_file.c_str()))
        return refuse_unreadable(entry, fmt::format("{} can't be written", arguments.other_file));
    const std::uint64_t bytes = bytes_of_file(arguments.other_file);
    if (style == Style::Json)
        print(json_text({{"file", arguments.other_file}, {"bytes", bytes}}) + "\n");
    return ExitCode::Done;
}

}  // namespace

ExitCode picture_list(const PictureArguments& arguments, Style style)
{
    return by_reading<ODB_PixelMapAttribute>(
        arguments,
        [&](const OpenedEntry&, const auto& pictures) { return list_pictures(pictures, style); });
}

ExitCode picture_add(const PictureArguments& arguments, Style style)
{
    std::string reason;
    const std::unique_ptr<PixelMap> map = load_picture(arguments.other_file, reason);
    if (map == nullptr) {
        complain(fmt::format("{}: {}", arguments.other_file, reason));
        return ExitCode::Refused;
    }
    return by_storing<ODB_PixelMapAttribute>(
        arguments, [&](auto& pictures) { pictures.add_map(arguments.picture.c_str(), map.get()); },
        [&](const OpenedEntry& entry, const auto& pictures) {
            return finish_storing(
                entry, has_picture(pictures, arguments.picture),
                "the library can't have a picture of that name",
                {{"name", arguments.picture}, {"size", {map->get_width(), map->get_height()}}},
                style);
        });
}

ExitCode picture_extract(const PictureArguments& arguments, Style style)
{
    return by_reading<ODB_PixelMapAttribute>(
        arguments, [&](const OpenedEntry& entry, const auto& pictures) {
            const std::unique_ptr<PixelMap> map(pictures.get_map(arguments.picture.c_str()));
            return map == nullptr ? refuse_unreadable(entry, no_picture(arguments))
                                  : write_picture(arguments, *map, style);
        });
}

ExitCode picture_remove(const PictureArguments& arguments, Style)
{
    return by_removing<ODB_PixelMapAttribute>(
        arguments, no_picture(arguments), [&](const OpenedEntry&, auto& pictures) {
            const bool has = has_picture(pictures, arguments.picture);
            pictures.remove_map(arguments.picture.c_str());
            return has;
        });
}

ExitCode movie_set(const MovieArguments& arguments, Style style)
{
    const std::uint64_t bytes = bytes_of_file(arguments.other_file);
    if (bytes == 0) {
        complain(fmt::format("{}: it is missing, empty or can't be read", arguments.other_file));
        return ExitCode::Refused;
    }
    return by_storing<ODB_MovieAttribute>(
        arguments, [&](auto& movie) { movie.set_movie(arguments.other_file.c_str()); },
        [&](const OpenedEntry& entry, const auto& movie) {
            return finish_storing(
                entry, has_movie(entry, movie),
                fmt::format("{} can't be stored as its movie", arguments.other_file),
                {{"path", entry.name.text()}, {"bytes", bytes}}, style);
        });
}

ExitCode movie_extract(const MovieArguments& arguments, Style style)
{
    return by_reading<ODB_MovieAttribute>(
        arguments, [&](const OpenedEntry& entry, const auto& movie) {
            return has_movie(entry, movie) ? write_movie(arguments, entry, movie, style)
                                           : refuse_entry(entry, kNoMovie);
        });
}

ExitCode movie_remove(const MovieArguments& arguments, Style)
{
    return by_removing<ODB_MovieAttribute>(arguments, kNoMovie,
                                           [&](const OpenedEntry& entry, auto& movie) {
                                               const bool has = has_movie(entry, movie);
                                               movie.set_movie(nullptr);
                                               return has;
                                           });
}

}  // namespace odb
