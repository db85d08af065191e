#pragma once

#include "tools/odb/EntryName.h"

#include <functional>
#include <string>
#include <vector>

class ObjectDatabase;
class ODB_Mediator;

namespace odb {

/// Whether what lies below a directory counts too.
enum class Depth { This, All };

/// The names of the directories directly in `path`, in byte order.
[[nodiscard]] std::vector<GString> subdirectories(const ObjectDatabase& database,
                                                  const GResourcePath& path);
/// True when something lies in or below `path`, and for the root.
[[nodiscard]] bool directory_exists(const ObjectDatabase& database, const GResourcePath& path);
/// The names of the objects in `path`, in byte order. Reads no mediator.
[[nodiscard]] std::vector<GString> object_names(const ObjectDatabase& database,
                                                const GResourcePath& path);

/// Calls `visit` with `path` and, with Depth::All, the directories below it, each before those in
/// it, until it gives false. False when it did.
bool walk_directories(const ObjectDatabase& database, const GResourcePath& path, Depth depth,
                      const std::function<bool(const GResourcePath&)>& visit);

/// Frees what is in memory of one object.
void unload_entry(ObjectDatabase& database, const EntryName& entry);
/// The class of the mediator's object; "?" when it is not known.
[[nodiscard]] std::string class_of(const ODB_Mediator& mediator);

}  // namespace odb
