// odb list, show and info: what is in a library.
#include "graphics/PixelMap.h"
#include "odb/ODB_ClassFilter.h"
#include "odb/ODB_FiltersContainer.h"
#include "odb/ODB_InternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_RegularExpressionFilter.h"
#include "odb/ObjectDatabase.h"
#include "tools/odb/Browse.h"
#include "tools/odb/Commands.h"
#include "tools/odb/OpenLibrary.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

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
    /// Lists what `filter` wants; it must outlive this.
    Listing(const ODB_FiltersContainer& filter, Style style) : style_(style), filter_(filter) {}

    // The objects of one directory, each behind the other.
    void add_directory(ObjectDatabase& database, const GResourcePath& path)
    {
        ODB_MediatorsArray mediators;
        database.get_contents(path, mediators, false);
        mediators.apply_filter(filter_);
        for (long i = 0; i < mediators.count; ++i)
            add(mediators.at(i));
    }
    // The directories that a listing of one directory shows in front of its objects.
    void add_names_of_directories(const ObjectDatabase& database, const GResourcePath& path)
    {
        if (style_ == Style::Json || filter_.count > 0)
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
    const ODB_FiltersContainer& filter_;
    JsonArrayPrinter list_;
    bool header_done_ = false;
};

/// Reads "class:NAME", "related:NAME" or "name:REGEX"; false for anything else.
bool parse_filter(const std::string& text, ListFilter& filter)
{
    static const std::pair<std::string_view, ListFilter::Kind> kinds[] = {
        {"class:", ListFilter::Kind::Class},
        {"related:", ListFilter::Kind::Related},
        {"name:", ListFilter::Kind::Name}};
    for (const auto& [prefix, kind] : kinds) {
        if (!text.starts_with(prefix))
            continue;
        filter = {kind, text.substr(prefix.size())};
        return true;
    }
    return false;
}

/// Adds the filter; false, with the user told, when it can't be used.
bool add_filter(const ListFilter& wanted, ODB_FiltersContainer& filters)
{
    if (wanted.kind != ListFilter::Kind::Name) {
        const bool related = wanted.kind == ListFilter::Kind::Related;
        filters.insert(new ODB_ClassFilter(wanted.value.c_str(), related ? 1 : 0));
        return true;
    }
    auto filter = std::make_unique<ODB_RegularExpressionFilter>(wanted.value.c_str());
    if (!filter->get_expression().valid()) {
        complain(fmt::format(
            "--match and --filter name: \"{}\" is no regular expression that can be used",
            wanted.value));
        return false;
    }
    filters.insert(filter.release());
    return true;
}

/// All filters that were asked for; false, with the user told, when one can't be used.
bool make_filters(const ListArguments& arguments, ODB_FiltersContainer& filters)
{
    std::vector<ListFilter> wanted = arguments.filters;
    for (const std::string& text : arguments.filter_texts) {
        ListFilter filter{};
        if (!parse_filter(text, filter)) {
            complain(fmt::format(
                "--filter: \"{}\" is none of class:NAME, related:NAME and name:REGEX", text));
            return false;
        }
        wanted.push_back(filter);
    }
    return std::ranges::all_of(
        wanted, [&filters](const ListFilter& filter) { return add_filter(filter, filters); });
}

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
    ODB_FiltersContainer filters;
    if (!make_filters(arguments, filters))
        return ExitCode::WrongUsage;
    Listing listing(filters, style);
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
