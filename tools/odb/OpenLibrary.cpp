#include "tools/odb/OpenLibrary.h"

#include "odb/ObjectDatabase.h"
#include "platform/FileDevice.h"
#include "store/ResourceFileServer.h"
#include "tools/odb/FilePaths.h"
#include "tools/odb/Output.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <system_error>

namespace odb {

namespace {

// The reason with the file's name in it, which open_error has already where it can.
std::string name_file(const std::string& file, std::string_view reason)
{
    if (reason.find(file) != std::string_view::npos)
        return std::string(reason);
    return fmt::format("{}: {}", file, reason);
}

void refuse(OpenedLibrary& opened, const std::string& file, const ResourceFile& resource_file)
{
    opened.database.reset();
    opened.code = resource_file.open_failure() == ResourceFile::OpenFailure::Damaged
                      ? ExitCode::Damaged
                      : ExitCode::Refused;
    std::string_view reason = resource_file.open_error().view();
    opened.reason = name_file(file, reason.empty() ? "it can't be opened" : reason);
}

// A resource file of another kind must not be made a library by opening it as one.
bool is_of_another_kind(const ResourceFile& probe)
{
    const GString kind = probe.get_type();
    return !kind.is_empty() && !ObjectDatabase::IsMediatorType(kind);
}

// Why no library can be there or be made; empty where one can. The system's own words for it would
// be others.
std::string why_no_place(const std::string& file)
{
    const std::optional<std::filesystem::path> path = to_path(file);
    std::error_code error;
    if (!path || path->empty())
        return {};
    if (std::filesystem::is_directory(*path, error))
        return "it is a directory";
    const std::filesystem::path folder = path->parent_path();
    if (!folder.empty() && !std::filesystem::is_directory(folder, error))
        return fmt::format("there is no directory {}", to_name(folder));
    return {};
}

OpenedLibrary open(const std::string& file, GIO::IOOpenMode mode, WhenMissing when_missing)
{
    OpenedLibrary opened;
    if (const std::string reason = why_no_place(file); !reason.empty()) {
        opened.code = ExitCode::Refused;
        opened.reason = fmt::format("{}: {}", file, reason);
        return opened;
    }
    {
        const ResourceFile probe(file.c_str(), GIO::OpenRead);
        if (probe.server == nullptr) {
            const bool can_be_made = when_missing == WhenMissing::Make &&
                                     probe.open_failure() == ResourceFile::OpenFailure::Missing;
            if (!can_be_made) {
                refuse(opened, file, probe);
                return opened;
            }
        } else if (is_of_another_kind(probe)) {
            opened.code = ExitCode::Refused;
            opened.reason = name_file(file, "it is a resource file of another kind");
            return opened;
        }
    }
    opened.database = std::make_unique<ObjectDatabase>(file.c_str(), mode);
    if (opened.database->server == nullptr) {
        const std::unique_ptr<ObjectDatabase> failed = std::move(opened.database);
        refuse(opened, file, *failed);
    }
    return opened;
}

OpenedLibrary or_complain(OpenedLibrary opened)
{
    if (!opened)
        complain(opened.reason);
    return opened;
}

}  // namespace

OpenedLibrary open_to_read(const std::string& file)
{
    return open(file, GIO::OpenRead, WhenMissing::Refuse);
}

OpenedLibrary open_to_write(const std::string& file, WhenMissing when_missing)
{
    return open(file, GIO::OpenReadWrite, when_missing);
}

OpenedLibrary open_to_read_or_complain(const std::string& file)
{
    return or_complain(open_to_read(file));
}

OpenedLibrary open_to_write_or_complain(const std::string& file, WhenMissing when_missing)
{
    return or_complain(open_to_write(file, when_missing));
}

std::uint64_t bytes_of_file(const std::string& file)
{
    zmr::FileError error;
    const auto device = zmr::FileSystemDevice::Real().open(file, zmr::FileAccess::Read,
                                                           zmr::FileCreate::OpenExisting,
                                                           zmr::FileShare::ReadWrite, error);
    std::uint64_t bytes = 0;
    if (device == nullptr || device->length(bytes))
        return 0;
    return bytes;
}

bool writing_failed(const ObjectDatabase& database)
{
    return database.server == nullptr || database.server->error() != 0;
}

ExitCode finish_writing(ObjectDatabase& database, const std::string& file, ExitCode code)
{
    database.flush();
    if (!writing_failed(database))
        return code;
    const GString text =
        database.server == nullptr ? GString("it is not open") : database.server->error_text();
    complain(name_file(file, text.view()));
    if (bytes_of_file(file) > 0)
        complain(fmt::format("{}: what was committed before is whole", file));
    return graver(code, ExitCode::Refused);
}

}  // namespace odb
