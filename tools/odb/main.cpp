// odb: makes, fills, lists and cares for object libraries. CommandLine parses what is asked for;
// the functions of Commands.h do it.
#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GException.h"
#include "tools/odb/CommandLine.h"
#include "tools/odb/Terminal.h"

#include <fmt/format.h>

#include <memory>
#include <new>

namespace {

ExitCode run(const odb::Request& request)
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
    ExitCode code = request.run(request.json ? odb::Style::Json : odb::Style::Text);
    if (!odb::flush_output()) {
        odb::complain("the output can't be written");
        code = graver(code, ExitCode::Refused);
    }
    return code;
}

ExitCode run_words(const std::vector<std::string>& words)
{
    odb::Request request;
    odb::CommandLine command_line(request);
    try {
        // CLI11 takes the words without the program's name, the last one first.
        std::vector<std::string> reversed(words.rbegin(),
                                          words.empty() ? words.rend() : words.rend() - 1);
        command_line.app().parse(reversed);
    } catch (const CLI::Success& help) {
        static_cast<void>(command_line.app().exit(help));
        return ExitCode::Done;
    } catch (const CLI::ParseError& error) {
        odb::complain(command_line.why_refused(words, error));
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
