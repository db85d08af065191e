#include "tools/odb/CommandLine.h"

#include <fmt/format.h>

namespace odb {

namespace {

constexpr const char* kFooter =
    "Names are paths with \"/\". Exit codes: 0 done; 1 not found, refused, or something skipped or "
    "not written; 2 wrong usage; 3 damaged file.";

}  // namespace

CommandLine::CommandLine(Request& request)
    : request_(request), app_("Makes, fills, lists and cares for object libraries.", "odb")
{
    app_.require_subcommand(1);
    // "/" begins names of entries and of files.
    app_.allow_windows_style_options(false);
    app_.footer(kFooter);
    add_making();
    add_looking();
    add_extracting();
    add_changing();
    add_attributes();
    add_pictures();
    add_movies();
    add_caring();
}

std::string CommandLine::why_refused(const std::vector<std::string>& words,
                                     const CLI::ParseError& error) const
{
    const CLI::App* command = &app_;
    std::string name = "odb";
    for (std::size_t i = 1; i < words.size() && command->get_require_subcommand_min() > 0; ++i) {
        const std::string& word = words[i];
        const auto named = command->get_subcommands(
            [&word](const CLI::App* one) { return one->check_name(word); });
        if (named.empty() && word.starts_with('-'))
            continue;
        if (named.empty()) {
            return fmt::format("there is no command \"{}\"; \"{} --help\" lists them",
                               printable(word), name);
        }
        command = named.front();
        name += " " + word;
    }
    return fmt::format("{}; \"{} --help\" tells more", error.what(), name);
}

void CommandLine::add_common(CLI::App& command)
{
    command
        .add_option("--module", request_.modules,
                    "Loads a module with classes, formats and icons; can be repeated")
        ->type_name("LIB")
        ->allow_extra_args(false);
    command.add_flag("--json", request_.json, "Prints results as JSON");
    command.footer(kFooter);
}

CLI::App& CommandLine::group(const char* name, const char* description)
{
    CLI::App* group = app_.add_subcommand(name, description);
    group->require_subcommand(1);
    group->footer(kFooter);
    return *group;
}

void CommandLine::add_making()
{
    command("create", "Makes an empty library", request_.create, odb::create);
    auto* add = command("add",
                        "Adds files as objects, each under its file's name; an existing name is "
                        "replaced, a missing library is made",
                        request_.add, odb::add);
    add->alias("import");
    add->add_option("SOURCE", request_.add.sources, "Files, and directories whose files are added")
        ->required();
    add->add_option("--into", request_.add.into, "The library's directory that they go to")
        ->type_name("DIR");
    add->add_flag("--recursive,-r", request_.add.recursive,
                  "Adds the subdirectories of directories too, as directories");
    add->add_flag("--external", request_.add.external,
                  "Keeps each object in a file of its own beside the library, in LOBJS");
}

void CommandLine::add_looking()
{
    auto* list = command("list", "Lists objects", request_.list, odb::list);
    list->add_option("DIR", request_.list.directory, "A directory of the library");
    list->add_flag("--recursive,-r", request_.list.recursive, "Also what lies below");
    const auto add_filter = [this](ListFilter::Kind kind) {
        return [this, kind](const std::string& value) {
            request_.list.filters.push_back({kind, value});
        };
    };
    list->add_option_function<std::string>("--class", add_filter(ListFilter::Kind::Class),
                                           "Only objects of exactly this class")
        ->type_name("NAME");
    list->add_option_function<std::string>("--match", add_filter(ListFilter::Kind::Name),
                                           "Only objects whose whole name the regular expression "
                                           "matches")
        ->type_name("REGEX");
    list->add_option("--filter", request_.list.filter_texts,
                     "Only objects that the filter wants: class:NAME, related:NAME (of that class "
                     "or one of its bases) or name:REGEX; of several, all must want it")
        ->type_name("FILTER")
        ->allow_extra_args(false);

    auto* show = command("show", "Tells what is known of one object", request_.show, odb::show);
    show->add_option("NAME", request_.show.name, "The object")->required();
    command("info", "Tells the size and the content of a library", request_.file, odb::info);
}

void CommandLine::add_extracting()
{
    auto* extract = command("extract",
                            "Writes objects to files: pictures as PNG, others by a format that can "
                            "write them, else as object files (.lob)",
                            request_.extract, odb::extract);
    extract->add_option("NAME", request_.extract.names, "Objects and directories; / for all")
        ->required();
    extract->add_option("--to", request_.extract.to, "The directory to write to; made when missing")
        ->type_name("DIR")
        ->required();
    extract->add_flag("--overwrite", request_.extract.overwrite,
                      "Replaces files that exist, which are kept otherwise");
}

void CommandLine::add_changing()
{
    auto* rename =
        command("rename", "Renames an object or a directory", request_.rename, odb::rename);
    rename->add_option("FROM", request_.rename.from, "The present name")->required();
    rename->add_option("TO", request_.rename.to, "The new name, which must be free")->required();

    auto* remove = command("remove", "Removes objects, and directories with all below them",
                           request_.remove, odb::remove);
    remove->add_option("NAME", request_.remove.names, "Objects and directories")->required();

    auto* copy = command("copy",
                         "Copies objects, and directories with all below them, to another library; "
                         "an existing name is replaced",
                         request_.copy, odb::copy);
    copy->add_option("NAME", request_.copy.names, "Objects and directories")->required();
    copy->add_option("--to", request_.copy.to, "The library to copy to; made when missing")
        ->type_name("FILE2")
        ->required();
    copy->add_option("--into", request_.copy.into, "The directory of it that they go to")
        ->type_name("DIR");

    auto* link = command("link", "Makes an entry that stands for another one's object",
                         request_.link, odb::link);
    link->add_option("NAME", request_.link.name, "The new entry, whose name must be free")
        ->required();
    link->add_option("TARGET", request_.link.target,
                     "The object that it stands for; OBJECT#FILE2 for one of another library")
        ->required();
}

void CommandLine::add_attributes()
{
    auto* attr =
        command("attr", "Lists the attributes of an object, or reads, writes or removes one",
                request_.attribute, odb::attribute);
    attr->add_option("NAME", request_.attribute.name, "The object")->required();
    attr->add_option("ACTION", request_.attribute.action, "get, set or remove; lists without it")
        ->check(CLI::IsMember({"get", "set", "remove"}));
    attr->add_option("CLASS", request_.attribute.class_name, "The attribute's class");
    attr->add_option("VALUE", request_.attribute.value, "What to set, for a class that is a text");

    auto* describe = command("describe", "Shows or sets the text that describes an object",
                             request_.describe, odb::describe);
    describe->add_option("NAME", request_.describe.name, "The object")->required();
    auto* text = describe->add_option("TEXT", request_.describe.text, "The new text");
    describe->add_flag("--remove", request_.describe.removes, "Takes the text away")
        ->excludes(text);
    describe->preparse_callback([this](std::size_t) { request_.describe.sets = false; });
    text->each([this](const std::string&) { request_.describe.sets = true; });
}

void CommandLine::add_pictures()
{
    CLI::App& pictures = group("picture", "The named pictures that objects have besides icons");
    const auto with_name = [this](CLI::App* command) {
        command->add_option("NAME", request_.picture.name, "The object")->required();
        return command;
    };
    const auto with_picture = [this, &with_name](CLI::App* command) {
        with_name(command)
            ->add_option("PICTURE", request_.picture.picture, "The picture's name")
            ->required();
        return command;
    };
    with_name(command_of(pictures, "list", "Lists the pictures of an object", request_.picture,
                         odb::picture_list));
    with_picture(command_of(pictures, "add",
                            "Adds a picture from a file; one of that name is replaced",
                            request_.picture, odb::picture_add))
        ->add_option("SOURCE", request_.picture.other_file, "The picture file")
        ->required();
    auto* extract = with_picture(command_of(pictures, "extract",
                                            "Writes a picture to a file, as its extension says",
                                            request_.picture, odb::picture_extract));
    extract->add_option("TARGET", request_.picture.other_file, "The file")->required();
    extract->add_flag("--overwrite", request_.picture.overwrite, "Replaces a file that exists");
    with_picture(
        command_of(pictures, "remove", "Removes a picture", request_.picture, odb::picture_remove));
}

void CommandLine::add_movies()
{
    CLI::App& movies = group("movie", "The movie that an object may have");
    const auto with_name = [this](CLI::App* command) {
        command->add_option("NAME", request_.movie.name, "The object")->required();
        return command;
    };
    with_name(command_of(movies, "set", "Stores a movie file; the old movie is replaced",
                         request_.movie, odb::movie_set))
        ->add_option("SOURCE", request_.movie.other_file, "The movie file")
        ->required();
    auto* extract = with_name(command_of(movies, "extract", "Writes the movie to a file",
                                         request_.movie, odb::movie_extract));
    extract->add_option("TARGET", request_.movie.other_file, "The file")->required();
    extract->add_flag("--overwrite", request_.movie.overwrite, "Replaces a file that exists");
    with_name(command_of(movies, "remove", "Removes the movie", request_.movie, odb::movie_remove));
}

void CommandLine::add_caring()
{
    command("pack", "Makes a library as small as its content", request_.file, odb::pack);
    command("verify", "Reads every byte of a library and checks it", request_.file, odb::verify);
    auto* check = command("check",
                          "Looks for references without a target, missing files of objects, and "
                          "what belongs to no object",
                          request_.check, odb::check);
    check->add_flag("--fix", request_.check.fix, "Mends what can be mended without loss");
}

}  // namespace odb
