#include "tools/odb/OpenEntry.h"

#include "foundation/GFile.h"
#include "odb/ODB_Mediator.h"
#include "odb/ObjectDatabase.h"
#include "tools/odb/Output.h"

#include <fmt/format.h>

namespace odb {

namespace {

OpenedEntry find(OpenedLibrary library, const std::string& file, const std::string& name)
{
    OpenedEntry opened;
    opened.file = file;
    opened.library = std::move(library);
    opened.name = parse_entry(name);
    if (!opened.library) {
        opened.code = opened.library.code;
        return opened;
    }
    opened.mediator = opened.database().get_mediator(opened.name.path, opened.name.name);
    if (opened.mediator != nullptr)
        return opened;
    opened.code = refuse_unreadable(opened, "there is no object of that name");
    return opened;
}

}  // namespace

OpenedEntry open_entry_to_read(const std::string& file, const std::string& name)
{
    return find(open_to_read_or_complain(file), file, name);
}

OpenedEntry open_entry_to_write(const std::string& file, const std::string& name)
{
    return find(open_to_write_or_complain(file, WhenMissing::Refuse), file, name);
}

ExitCode refuse_entry(const std::string& file, const std::string& name, const std::string& reason)
{
    complain(fmt::format("{}: \"{}\": {}", file, name, reason));
    return ExitCode::Refused;
}

ExitCode refuse_entry(const OpenedEntry& entry, const std::string& reason)
{
    return refuse_entry(entry.file, entry.name.text(), reason);
}

ExitCode refuse_unreadable(const OpenedEntry& entry, const std::string& reason)
{
    const ResourceFile::Damage* const damage = entry.database().last_damage();
    if (damage == nullptr)
        return refuse_entry(entry, reason);
    refuse_entry(entry, "damaged: " + damage->reason);
    return ExitCode::Damaged;
}

bool must_keep_file(const std::string& file, bool overwrite)
{
    if (overwrite || !GFile(file.c_str()).exists())
        return false;
    complain(fmt::format("{}: it exists already; --overwrite replaces it", file));
    return true;
}

}  // namespace odb
