#pragma once

#include "foundation/OwnedObject.h"

#include <string>

class GResourceFullName;
class ODB_Mediator;
class ObjectDatabase;

namespace zmr {

/// What was read out of a file of another program.
struct ImportedObject {
    OwnedObject<> object;
    std::string reason;  ///< Without an object: why, to stand behind the file's name and a colon.
};

/// The side of the icons that a library keeps, in pixels: what lists show, at up to twice the usual
/// density of a screen.
inline constexpr int kKeptIconSize_px = 96;

/// Reads the object of a file by the first registered format that recognises it. A file that is
/// missing, empty, of no known format, damaged, or too large for the memory gives no object, with
/// the reason. Any thread.
[[nodiscard]] ZMR_GV_API ImportedObject import_object(const std::string& file);

/// Stores an object, which stays the caller's, under `name`, whose type does not matter, together
/// with the icon that the registered makers give it, of at most `icon_size_px` a side: both in one
/// commit. An object that has no icon is stored without one, and does not show that of an object
/// that it replaces. `mediator`, which is taken over, says where the object lies; null means in the
/// library itself. The icon is not kept in memory.
///
/// False when the library can't be written, or can't have an entry of that name. Throws
/// std::bad_alloc as ObjectDatabase::append_object does. User-interface thread.
[[nodiscard]] ZMR_GV_API bool append_with_icon(ObjectDatabase& database, const GStreamable& object,
                                               const GResourceFullName& name,
                                               ODB_Mediator* mediator = nullptr,
                                               int icon_size_px = kKeptIconSize_px);

}  // namespace zmr
