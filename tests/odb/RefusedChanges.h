#pragma once

#include "odb/ObjectDatabase.h"

#include <functional>
#include <map>
#include <span>
#include <string>

/// What a user tries on a library that can't be written: each must leave every file as it was.
struct RefusedChange {
    const char* name;
    std::function<void(ObjectDatabase& library, const std::string& folder)> act;
};
[[nodiscard]] std::span<const RefusedChange> refused_changes();

/// Makes "library.odb" in the folder, with an entry of each kind, and "other.odb", which copies are
/// taken from.
void make_library_to_refuse(const std::string& folder);

/// The names and bytes of all that lies in a folder and below.
[[nodiscard]] std::map<std::string, std::string> files_of(const std::string& folder);

/// Opens the library for reading, tries each change and says after which one the files differ, or
/// an entry is not what it was once all clients have closed. Empty when all is as it was.
[[nodiscard]] std::string what_changes(const std::string& folder);
