#pragma once

#include "tools/odb/Commands.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

namespace odb {

/// What was chosen on the command line. `run` is set by the command; the arguments are filled by
/// the parser.
struct Request {
    std::vector<std::string> modules;
    bool json = false;
    std::function<ExitCode(Style)> run;

    CreateArguments create;
    AddArguments add;
    ListArguments list;
    ShowArguments show;
    ExtractArguments extract;
    RenameArguments rename;
    RemoveArguments remove;
    CopyArguments copy;
    FileArguments file;
    AttributeArguments attribute;
    DescribeArguments describe;
    PictureArguments picture;
    MovieArguments movie;
    LinkArguments link;
    CheckArguments check;
};

/// The tool's command line: parsing it fills a request.
class CommandLine {
public:
    explicit CommandLine(Request& request);
    [[nodiscard]] CLI::App& app() { return app_; }
    /// What is wrong with the words, the program's name first, that gave that error.
    [[nodiscard]] std::string why_refused(const std::vector<std::string>& words,
                                          const CLI::ParseError& error) const;

private:
    template <class Arguments>
    CLI::App* command(const char* name, const char* description, Arguments& arguments,
                      ExitCode (*function)(const Arguments&, Style))
    {
        return command_of(app_, name, description, arguments, function);
    }
    /// A command of a group, as "add" of "picture".
    template <class Arguments>
    CLI::App* command_of(CLI::App& group, const char* name, const char* description,
                         Arguments& arguments, ExitCode (*function)(const Arguments&, Style))
    {
        CLI::App* command = group.add_subcommand(name, description);
        command->add_option("FILE", arguments.file, "The library")->required();
        add_common(*command);
        command->callback([this, &arguments, function] {
            request_.run = [&arguments, function](Style style) {
                return function(arguments, style);
            };
        });
        return command;
    }
    void add_common(CLI::App& command);
    CLI::App& group(const char* name, const char* description);

    void add_making();
    void add_looking();
    void add_extracting();
    void add_changing();
    void add_attributes();
    void add_pictures();
    void add_movies();
    void add_caring();

    Request& request_;
    CLI::App app_;
};

}  // namespace odb
