// odb: makes, fills, lists and cares for object libraries. The command line is parsed here; what it
// asks for is done by the functions of Commands.h.
#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GException.h"
#include "tools/odb/Commands.h"
#include "tools/odb/Terminal.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <functional>
#include <memory>
#include <new>

namespace {

using odb::Style;

constexpr const char* kFooter =
    "Names are paths with \"/\". Exit codes: 0 done; 1 not found, refused, or something skipped or "
    "not written; 2 wrong usage; 3 damaged file.";

// What was chosen on the command line.
struct Request {
    std::vector<std::string> modules;
    bool json = false;
    std::function<ExitCode(Style)> run;

    odb::CreateArguments create;
    odb::AddArguments add;
    odb::ListArguments list;
    odb::ShowArguments show;
    odb::ExtractArguments extract;
    odb::RenameArguments rename;
    odb::RemoveArguments remove;
    odb::CopyArguments copy;
    odb::FileArguments file;
};

class CommandLine {
public:
    explicit CommandLine(Request& request)
        : request_(request), app_("Makes, fills, lists and cares for object libraries.", "odb")
    {
        app_.require_subcommand(1);
        // "/" begins names of entries and of files.
        app_.allow_windows_style_options(false);
        app_.footer(kFooter);
        add_making();
        add_looking();
        add_changing();
        add_caring();
    }
    [[nodiscard]] CLI::App& app() { return app_; }

private:
    template <class Arguments>
    CLI::App* command(const char* name, const char* description, Arguments& arguments,
                      ExitCode (*function)(const Arguments&, Style))
    {
        CLI::App* command = app_.add_subcommand(name, description);
        command->add_option("FILE", arguments.file, "The library")->required();
        command
            ->add_option("--module", request_.modules,
                         "Loads a module with classes, formats and icons; can be repeated")
            ->type_name("LIB")
            ->allow_extra_args(false);
        command->add_flag("--json", request_.json, "Prints results as JSON");
        command->footer(kFooter);
        command->callback([this, &arguments, function] {
            request_.run = [&arguments, function](Style style) {
                return function(arguments, style);
            };
        });
        return command;
    }

    void add_making()
    {
        command("create", "Makes an empty library", request_.create, odb::create);
        auto* add = command("add",
                            "Adds files as objects, each under its file's name; an existing name "
                            "is replaced, a missing library is made",
                            request_.add, odb::add);
        add->add_option("SOURCE", request_.add.sources,
                        "Files, and directories whose files are added")
            ->required();
        add->add_option("--into", request_.add.into, "The library's directory that they go to")
            ->type_name("DIR");
        add->add_flag("--recursive,-r", request_.add.recursive,
                      "Adds the subdirectories of directories too, as directories");
    }

    void add_looking()
    {
        auto* list = command("list", "Lists objects", request_.list, odb::list);
        list->add_option("DIR", request_.list.directory, "A directory of the library");
        list->add_flag("--recursive,-r", request_.list.recursive, "Also what lies below");
        list->add_option_function<std::string>(
                "--class",
                [this](const std::string& name) {
                    request_.list.by_class = true;
                    request_.list.class_name = name;
                },
                "Only objects of exactly this class")
            ->type_name("NAME");
        list->add_option_function<std::string>(
                "--match",
                [this](const std::string& pattern) {
                    request_.list.by_pattern = true;
                    request_.list.pattern = pattern;
                },
                "Only objects whose whole name the regular expression matches")
            ->type_name("REGEX");

        auto* show = command("show", "Tells what is known of one object", request_.show, odb::show);
        show->add_option("NAME", request_.show.name, "The object")->required();
        command("info", "Tells the size and the content of a library", request_.file, odb::info);

        auto* extract = command("extract",
                                "Writes objects to files: pictures as PNG, others by a format that "
                                "can write them, else as object files (.lob)",
                                request_.extract, odb::extract);
        extract->add_option("NAME", request_.extract.names, "Objects and directories; / for all")
            ->required();
        extract
            ->add_option("--to", request_.extract.to,
                         "The directory to write to; made when missing")
            ->type_name("DIR")
            ->required();
        extract->add_flag("--overwrite", request_.extract.overwrite,
                          "Replaces files that exist, which are kept otherwise");
    }

    void add_changing()
    {
        auto* rename =
            command("rename", "Renames an object or a directory", request_.rename, odb::rename);
        rename->add_option("FROM", request_.rename.from, "The present name")->required();
        rename->add_option("TO", request_.rename.to, "The new name, which must be free")
            ->required();

        auto* remove = command("remove", "Removes objects, and directories with all below them",
                               request_.remove, odb::remove);
        remove->add_option("NAME", request_.remove.names, "Objects and directories")->required();

        auto* copy = command("copy",
                             "Copies objects, and directories with all below them, to another "
                             "library; an existing name is replaced",
                             request_.copy, odb::copy);
        copy->add_option("NAME", request_.copy.names, "Objects and directories")->required();
        copy->add_option("--to", request_.copy.to, "The library to copy to; made when missing")
            ->type_name("FILE2")
            ->required();
        copy->add_option("--into", request_.copy.into, "The directory of it that they go to")
            ->type_name("DIR");
    }

    void add_caring()
    {
        command("pack", "Makes a library as small as its content", request_.file, odb::pack);
        command("verify", "Reads every byte of a library and checks it", request_.file,
                odb::verify);
    }

    Request& request_;
    CLI::App app_;
};

ExitCode run(const Request& request)
{
    std::vector<std::unique_ptr<GDynamicLinkLibrary>> modules;
    for (const std::string& name : request.modules) {
        modules.push_back(std::make_unique<GDynamicLinkLibrary>(name.c_str(), 0));
        if (modules.back()->module == nullptr) {
            odb::complain(fmt::format("{}: the module can't be loaded: {}", name,
                                      GDynamicLinkLibrary::LastError().view()));
            return ExitCode::Refused;
        }
    }
    ExitCode code = request.run(request.json ? Style::Json : Style::Text);
    if (!odb::flush_output()) {
        odb::complain("the output can't be written");
        code = graver(code, ExitCode::Refused);
    }
    return code;
}

ExitCode run_words(const std::vector<std::string>& words)
{
    Request request;
    CommandLine command_line(request);
    try {
        // CLI11 takes the words without the program's name, the last one first.
        std::vector<std::string> reversed(words.rbegin(),
                                          words.empty() ? words.rend() : words.rend() - 1);
        command_line.app().parse(reversed);
    } catch (const CLI::Success& help) {
        static_cast<void>(command_line.app().exit(help));
        return ExitCode::Done;
    } catch (const CLI::ParseError& error) {
        static_cast<void>(command_line.app().exit(error));
        return ExitCode::WrongUsage;
    }
    terminal::catch_interrupts();
    return run(request);
}

}  // namespace

int main(int count, char** words)
{
    try {
        return static_cast<int>(run_words(terminal::arguments(count, words)));
    } catch (const GException& error) {
        odb::complain(error.what());
    } catch (const std::bad_alloc&) {
        odb::complain("there is not enough memory");
    }
    return static_cast<int>(ExitCode::Refused);
}
