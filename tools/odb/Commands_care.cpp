// odb create, pack and verify: the library as a file.
#include "foundation/GFile.h"
#include "odb/ObjectDatabase.h"
#include "tools/odb/Browse.h"
#include "tools/odb/Commands.h"
#include "tools/odb/OpenLibrary.h"
#include "tools/odb/Terminal.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace odb {

namespace {

// What a damage hit: an entry, or all or part of a directory.
nlohmann::json to_json(const ResourceFile::Damage& damage)
{
    const EntryName entry{damage.name.path(), damage.name.name};
    return {{"path", entry.text()},
            {"type", std::string(damage.name.type.view())},
            {"reason", damage.reason}};
}

}  // namespace

ExitCode create(const CreateArguments& arguments, Style style)
{
    if (GFile(arguments.file.c_str()).exists()) {
        complain(fmt::format("{}: it exists already", arguments.file));
        return ExitCode::Refused;
    }
    const OpenedLibrary library = open_to_write_or_complain(arguments.file, WhenMissing::Make);
    if (!library)
        return library.code;
    // A library is made with its first change: here the record of its settings.
    static_cast<void>(library.database->get_default_mediator());
    const ExitCode code = finish_writing(*library.database, arguments.file, ExitCode::Done);
    if (code == ExitCode::Done && style == Style::Json)
        print(json_text({{"file", arguments.file}}) + "\n");
    return code;
}

ExitCode pack(const FileArguments& arguments, Style style)
{
    const OpenedLibrary library = open_to_write_or_complain(arguments.file, WhenMissing::Refuse);
    if (!library)
        return library.code;
    const std::uint64_t before = bytes_of_file(arguments.file);
    bool is_packed = false;
    {
        Progress progress("packing");
        progress.show(arguments.file);
        const auto goes_on = [&progress](std::uint64_t done, std::uint64_t all) {
            progress.show(fmt::format("{} of {} bytes", done, all));
            return !terminal::interrupted();
        };
        is_packed = library.database->pack(goes_on);
    }
    const ExitCode code = finish_writing(*library.database, arguments.file, ExitCode::Done);
    if (code != ExitCode::Done)
        return code;
    if (!is_packed) {
        complain(fmt::format("{}: interrupted; the library is whole", arguments.file));
        return ExitCode::Refused;
    }
    library.database->close();
    const std::uint64_t after = bytes_of_file(arguments.file);
    if (style == Style::Json)
        print(json_text({{"before", before}, {"after", after}}) + "\n");
    else
        print(fmt::format("{} bytes before, {} now\n", before, after));
    return ExitCode::Done;
}

ExitCode verify(const FileArguments& arguments, Style style)
{
    const OpenedLibrary library = open_to_read(arguments.file);
    if (!library) {
        if (library.code == ExitCode::Damaged && style == Style::Json)
            print(json_text(
                      {{"ok", false},
                       {"damaged", {{{"path", ""}, {"type", ""}, {"reason", library.reason}}}}}) +
                  "\n");
        complain(library.reason);
        return library.code;
    }

    std::uint64_t damages = 0;
    JsonArrayPrinter list;
    if (style == Style::Json)
        print("{\"damaged\":");
    Progress progress("verifying");
    const bool whole = library.database->verify(
        [&](const ResourceFile::Damage& damage) {
            ++damages;
            const nlohmann::json fields = to_json(damage);
            if (style == Style::Json)
                list.add(fields);
            else
                print(fmt::format("damaged: {}: {}\n",
                                  printable(fields["path"].get_ref<const std::string&>()),
                                  printable(damage.reason)));
        },
        [&](std::uint64_t done, std::uint64_t all) {
            progress.show(fmt::format("{} of {} bytes", done, all));
            return !terminal::interrupted();
        });
    if (style == Style::Json)
        list.close(fmt::format(",\"ok\":{}}}", whole));
    if (damages > 0) {
        complain(fmt::format("{}: {} damaged; the rest can be read", arguments.file, damages));
        return ExitCode::Damaged;
    }
    if (!whole) {
        complain(fmt::format("{}: not all was checked", arguments.file));
        return ExitCode::Refused;
    }
    if (style == Style::Text)
        print(fmt::format("{}: whole\n", printable(arguments.file)));
    return ExitCode::Done;
}

}  // namespace odb
