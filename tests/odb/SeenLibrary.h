#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>

class ODB_Mediator;
class PixelMap;

/// What a user sees of a library: for each entry its mediator's class, the class that it tells, its
/// object, its icon, its attributes and its pictures.
using SeenLibrary = std::map<std::string, std::string>;

/// What the library file of that name holds, opened anew: nothing when there is no file, an entry
/// "unreadable" when it can't be opened, and an entry "damaged" when verify finds something.
[[nodiscard]] SeenLibrary see_library(const std::string& file);
/// Reads all that there is of an entry.
[[nodiscard]] std::string describe_entry(ODB_Mediator& mediator);

/// A picture of that width, 4 high.
[[nodiscard]] std::unique_ptr<PixelMap> test_picture(int width);
/// A text that can't be compressed much, the same at each call.
[[nodiscard]] std::string test_noise(std::size_t bytes);
