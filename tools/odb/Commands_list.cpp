// odb list, show and info: what is in a library.
#include "graphics/PixelMap.h"
#include "odb/ODB_InternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ObjectDatabase.h"
#include "store/RegularExpression.h"
#include "tools/odb/Browse.h"
#include "tools/odb/Commands.h"
#include "tools/odb/OpenLibrary.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <map>
#include <optional>

namespace odb {

namespace {

constexpr const char* kRow = "{:<20} {:<4} {}\n";

EntryName entry_of(const ODB_Mediator& mediator)
{
    return {mediator.get_DB_resname().path(), mediator.get_DB_key()};
}

nlohmann::json to_json(const ODB_Mediator& mediator)
{
    const EntryName entry = entry_of(mediator);
    return {{"path", entry.text()},
            {"name", std::string(entry.name.view())},
            {"class", std::string(mediator.get_object_class_name().view())},
            {"mediator", mediator.getClassName()},
            {"icon", mediator.has_icon()}};
}

class Listing {
public:
    Listing(const ListArguments& arguments, Style style) : style_(style)
    {
        if (arguments.by_class)
            class_name_ = arguments.class_name;
        if (arguments.by_pattern)
            pattern_.emplace(arguments.pattern.c_str());
    }
    [[nodiscard]] bool pattern_refused() const { return pattern_ && !pattern_->valid(); }

    // The objects of one directory, each behind the other.
    void add_directory(ObjectDatabase& database, const GResourcePath& path)
    {
        ODB_MediatorsArray mediators;
        database.get_contents(path, mediators, false);
        for (long i = 0; i < mediators.count; ++i) {
            if (accepts(mediators.at(i)))
                add(mediators.at(i));
        }
    }
    // The directories that a listing of one directory shows in front of its objects.
    void add_names_of_directories(const ObjectDatabase& database, const GResourcePath& path)
    {
        if (style_ == Style::Json || class_name_ || pattern_)
            return;
        for (const GString& name : subdirectories(database, path))
            add_row("directory", "", EntryName{path, name}.text() + "/");
    }
    void finish()
    {
        if (style_ == Style::Json)
            list_.close();
    }

private:
    [[nodiscard]] bool accepts(const ODB_Mediator& mediator) const
    {
        if (class_name_ && mediator.get_object_class_name().view() != *class_name_)
            return false;
        return !pattern_ || *pattern_ == mediator.get_DB_key().text;
    }
    void add(const ODB_Mediator& mediator)
    {
        if (style_ == Style::Json)
            list_.add(to_json(mediator));
        else
            add_row(class_of(mediator), mediator.has_icon() ? "yes" : "no",
                    entry_of(mediator).text());
    }
    void add_row(const std::string& class_name, const char* icon, const std::string& name)
    {
        if (!header_done_)
            print(fmt::format(kRow, "CLASS", "ICON", "NAME"));
        header_done_ = true;
        print(fmt::format(kRow, printable(class_name), icon, printable(name)));
    }

    Style style_;
    std::optional<std::string> class_name_;
    std::optional<RegularExpression> pattern_;
    JsonArrayPrinter list_;
    bool header_done_ = false;
};

// Why an object that has a mediator can't be had.
std::string reason_of_missing(ObjectDatabase& database, const ODB_Mediator& mediator,
                              ExitCode& code)
{
    if (mediator.get_object_class_identifier() == nullptr) {
        code = ExitCode::Refused;
        return fmt::format("its class {} is not known here; --module names the module that has it",
                           class_of(mediator));
    }
    code = ExitCode::Damaged;
    const ResourceFile::Damage* const damage = database.last_damage();
    return damage == nullptr ? "its content is missing"
                             : "its content is damaged: " + damage->reason;
}

}  // namespace

ExitCode list(const ListArguments& arguments, Style style)
{
    Listing listing(arguments, style);
    if (listing.pattern_refused()) {
        complain(fmt::format("--match: \"{}\" is no regular expression that can be used",
                             arguments.pattern));
        return ExitCode::WrongUsage;
    }
    const OpenedLibrary library = open_to_read_or_complain(arguments.file);
    if (!library)
        return library.code;
    ObjectDatabase& database = *library.database;
    const GResourcePath path = parse_directory(arguments.directory);
    if (!directory_exists(database, path)) {
        complain(
            fmt::format("{}: there is no directory \"{}\"", arguments.file, arguments.directory));
        return ExitCode::Refused;
    }

    const Depth depth = arguments.recursive ? Depth::All : Depth::This;
    if (depth == Depth::This)
        listing.add_names_of_directories(database, path);
    walk_directories(database, path, depth, [&](const GResourcePath& current) {
        listing.add_directory(database, current);
        return true;
    });
    listing.finish();
    if (const ResourceFile::Damage* const damage = database.last_damage()) {
        complain(fmt::format("{}: damaged: {}", arguments.file, damage->reason));
        return ExitCode::Damaged;
    }
    return ExitCode::Done;
}

ExitCode show(const ShowArguments& arguments, Style style)
{
    const OpenedLibrary library = open_to_read_or_complain(arguments.file);
    if (!library)
        return library.code;
    ObjectDatabase& database = *library.database;
    const EntryName entry = parse_entry(arguments.name);
    ODB_Mediator* const mediator = database.get_mediator(entry.path, entry.name);
    if (mediator == nullptr) {
        complain(fmt::format("{}: there is no object \"{}\"", arguments.file, arguments.name));
        return ExitCode::Refused;
    }

    nlohmann::json fields = to_json(*mediator);
    if (const PixelMap* const icon = mediator->get_icon())
        fields["icon_size"] = {icon->get_width(), icon->get_height()};
    if (auto* const internal = zmr::class_cast<ODB_InternalObject>(mediator)) {
        const ResourceFileBlock block = database.get_resource_block(internal->get_resource_name());
        if (block.presence != 0)
            fields["bytes"] = block.length;
    }
    ExitCode code = ExitCode::Done;
    std::string reason;
    GStreamable* const object = mediator->get_object();
    if (object == nullptr)
        reason = reason_of_missing(database, *mediator, code);
    GStreamable::Destroy(object);
    fields["readable"] = object != nullptr;

    if (style == Style::Json) {
        print(json_text(fields) + "\n");
    } else {
        print(fmt::format("path:      {}\n", printable(entry.text())));
        print(fmt::format("class:     {}\n", printable(class_of(*mediator))));
        print(fmt::format("mediator:  {}\n", mediator->getClassName()));
        if (fields.contains("bytes"))
            print(fmt::format("bytes:     {}\n", fields["bytes"].get<std::uint32_t>()));
        if (fields.contains("icon_size"))
            print(fmt::format("icon:      {} x {}\n", fields["icon_size"][0].get<int>(),
                              fields["icon_size"][1].get<int>()));
        else
            print("icon:      none\n");
        print(fmt::format("readable:  {}\n", object != nullptr ? "yes" : "no"));
    }
    if (code != ExitCode::Done)
        complain(fmt::format("{}: \"{}\": {}", arguments.file, arguments.name, reason));
    return code;
}

ExitCode info(const FileArguments& arguments, Style style)
{
    const OpenedLibrary library = open_to_read_or_complain(arguments.file);
    if (!library)
        return library.code;
    ObjectDatabase& database = *library.database;
    std::uint64_t directories = 0;
    std::uint64_t objects = 0;
    std::uint64_t icons = 0;
    std::map<std::string, std::uint64_t> classes;
    walk_directories(database, {}, Depth::All, [&](const GResourcePath& path) {
        directories += path.count > 0 ? 1 : 0;
        ODB_MediatorsArray mediators;
        database.get_contents(path, mediators, false);
        for (long i = 0; i < mediators.count; ++i) {
            const ODB_Mediator& mediator = mediators.at(i);
            ++objects;
            icons += mediator.has_icon() ? 1 : 0;
            ++classes[class_of(mediator)];
        }
        return true;
    });
    const std::uint64_t bytes = bytes_of_file(arguments.file);

    if (style == Style::Json) {
        print(json_text({{"file", arguments.file},
                         {"objects", objects},
                         {"directories", directories},
                         {"bytes", bytes},
                         {"icons", icons},
                         {"classes", classes}}) +
              "\n");
    } else {
        print(fmt::format("file:         {}\n", printable(arguments.file)));
        print(fmt::format("bytes:        {}\n", bytes));
        print(fmt::format("directories:  {}\n", directories));
        print(fmt::format("objects:      {}\n", objects));
        print(fmt::format("icons:        {}\n", icons));
        for (const auto& [name, count] : classes)
            print(fmt::format("  {:<20} {}\n", printable(name), count));
    }
    if (const ResourceFile::Damage* const damage = database.last_damage()) {
        complain(fmt::format("{}: damaged: {}", arguments.file, damage->reason));
        return ExitCode::Damaged;
    }
    return ExitCode::Done;
}

}  // namespace odb
