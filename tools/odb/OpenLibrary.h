#pragma once

#include "tools/odb/ExitCode.h"

#include <cstdint>
#include <memory>
#include <string>

class ObjectDatabase;

namespace odb {

/// A library that a command works on, or why there is none.
struct OpenedLibrary {
    std::unique_ptr<ObjectDatabase> database;  ///< Null when it could not be opened.
    ExitCode code = ExitCode::Done;            ///< What the command ends with then.
    std::string reason;                        ///< A sentence that names the file, then.

    explicit operator bool() const { return database != nullptr; }
};

/// A missing file, when it is to be written.
enum class WhenMissing { Refuse, Make };

[[nodiscard]] OpenedLibrary open_to_read(const std::string& file);
[[nodiscard]] OpenedLibrary open_to_write(const std::string& file, WhenMissing when_missing);

/// The same, with the refusal told to the user.
[[nodiscard]] OpenedLibrary open_to_read_or_complain(const std::string& file);
[[nodiscard]] OpenedLibrary open_to_write_or_complain(const std::string& file,
                                                      WhenMissing when_missing);

/// The length of a file; 0 when it can't be told.
[[nodiscard]] std::uint64_t bytes_of_file(const std::string& file);

/// Commits what was written. Tells the user and gives Refused when it is not all on the
/// disk; otherwise `code`.
[[nodiscard]] ExitCode finish_writing(ObjectDatabase& database, const std::string& file,
                                      ExitCode code);
/// True when writing failed; tells it only through finish_writing.
[[nodiscard]] bool writing_failed(const ObjectDatabase& database);

}  // namespace odb
