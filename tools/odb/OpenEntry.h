#pragma once

#include "tools/odb/EntryName.h"
#include "tools/odb/OpenLibrary.h"

class ODB_Mediator;

namespace odb {

/// A library, and the object in it that a command works on.
struct OpenedEntry {
    std::string file;  ///< The library's.
    OpenedLibrary library;
    ODB_Mediator* mediator = nullptr;  ///< Null when it could not be had; the user was told why.
    ExitCode code = ExitCode::Done;    ///< What the command ends with then.
    EntryName name;

    explicit operator bool() const { return mediator != nullptr; }
    [[nodiscard]] ObjectDatabase& database() const { return *library.database; }
};

[[nodiscard]] OpenedEntry open_entry_to_read(const std::string& file, const std::string& name);
[[nodiscard]] OpenedEntry open_entry_to_write(const std::string& file, const std::string& name);

/// Tells the user that something of an object can't be done, and why; gives Refused.
ExitCode refuse_entry(const std::string& file, const std::string& name, const std::string& reason);
ExitCode refuse_entry(const OpenedEntry& entry, const std::string& reason);
/// The same where something could not be read: Damaged when the library is, whatever `reason` says.
ExitCode refuse_unreadable(const OpenedEntry& entry, const std::string& reason);

/// True, with the user told, when `file` exists and must not be replaced.
[[nodiscard]] bool must_keep_file(const std::string& file, bool overwrite);

}  // namespace odb
