// odb link: entries that stand for the object of another one.
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ObjectDatabase.h"
#include "tools/odb/Browse.h"
#include "tools/odb/Commands.h"
#include "tools/odb/OpenEntry.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace odb {

namespace {

/// "OBJECT#FILE2" in its parts; the file is empty without a "#".
struct Target {
    explicit Target(const std::string& text)
        : object(text.substr(0, text.find('#'))),
          file(text.find('#') == std::string::npos ? "" : text.substr(text.find('#') + 1))
    {
    }
    std::string object;
    std::string file;
};

}  // namespace

ExitCode link(const LinkArguments& arguments, Style style)
{
    const Target target(arguments.target);
    const OpenedLibrary library = open_to_write_or_complain(arguments.file, WhenMissing::Refuse);
    if (!library)
        return library.code;
    OpenedLibrary other;
    if (!target.file.empty()) {
        other = open_to_read_or_complain(target.file);
        if (!other)
            return other.code;
    }
    ObjectDatabase& database = *library.database;
    ObjectDatabase& target_database = other ? *other.database : database;
    const EntryName entry = parse_entry(arguments.name);
    const EntryName object = parse_entry(target.object);
    if (!target_database.object_exists(object.path, object.name))
        return refuse_entry(other ? target.file : arguments.file, target.object,
                            "there is no such object to stand for");
    if (entry.name.is_empty() || database.object_exists(entry.path, entry.name) ||
        directory_exists(database, entry.as_directory()))
        return refuse_entry(arguments.file, arguments.name, "it exists already");

    const GResourceFullName target_name = object.of_type(ObjectDatabase::MediatorResourceType);
    database.append_object(nullptr, entry.path, entry.name,
                           new ODB_ReferenceToObject(target_database, target_name));
    if (!writing_failed(database) && !database.object_exists(entry.path, entry.name))
        return refuse_entry(arguments.file, arguments.name,
                            "the library can't have an entry of that name");
    const ExitCode code = finish_writing(database, arguments.file, ExitCode::Done);
    if (code == ExitCode::Done && style == Style::Json) {
        const ODB_Mediator* const made = database.get_mediator(entry.path, entry.name);
        print(json_text({{"path", entry.text()}, {"class", class_of(*made)}}) + "\n");
    }
    return code;
}

}  // namespace odb
