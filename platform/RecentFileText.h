#pragma once

#include "platform/Export.h"

#include <string>
#include <string_view>

// How recent files are shown in a menu, decided over plain texts. Both slashes separate names.
namespace zmr {

/// What stands for a name that has no room in a shortened path.
inline constexpr std::string_view kLeftOut = "...";

/// Whether a path that is too long even with nothing but its last name is shown by that name.
enum class LastName : bool { MayBeLeftOut, Always };

/// The path, or, when it has more than `most_letters` characters (not bytes), its root, "..." and
/// as many of its last names as have room: "C:\...\parts\wheel.obj". When there is only room for
/// the last name, or not even for that, the last name alone or the empty text, as `last_name` says.
[[nodiscard]] ZMR_GV_API std::string shortened_path(std::string_view path, int most_letters,
                                                    LastName last_name);
/// The path as a menu shows it: the last name alone when it lies in `current_folder`, which may end
/// with a separator or not, letters compared without regard to their ASCII case; else shortened.
/// `most_letters` -1 shows all of it.
[[nodiscard]] ZMR_GV_API std::string recent_file_text(std::string_view path,
                                                      std::string_view current_folder,
                                                      int most_letters, LastName last_name);
/// The menu item number `number`, counted from 1: "&1 NAME", the tenth "1&0 NAME", further ones
/// without a key of their own. Ampersands of the text are doubled, so that they are shown.
[[nodiscard]] ZMR_GV_API std::string recent_file_item(int number, std::string_view text);

}  // namespace zmr
