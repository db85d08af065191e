#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What the tool asks of the system that it is started in.
namespace terminal {

/// The words of the command line as UTF-8, the program's name first.
[[nodiscard]] std::vector<std::string> arguments(int count, char** words);
/// Whether a person looks at the standard error.
[[nodiscard]] bool error_is_terminal();
/// Writes UTF-8 to the standard error, at once and as a whole. Nobody can be told when that fails.
void write_error(std::string_view text);
/// Empties the line that the standard error's cursor is in, and goes to its start. Only when
/// error_is_terminal().
void wipe_error_line();
/// From here on a wish to end the process (Ctrl-C, a request to terminate) only sets a mark; a
/// second one ends it at once.
void catch_interrupts();
[[nodiscard]] bool interrupted();

}  // namespace terminal
