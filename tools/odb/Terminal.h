#pragma once

#include <string>
#include <vector>

/// What the tool asks of the system that it is started in.
namespace terminal {

/// The words of the command line as UTF-8, the program's name first.
[[nodiscard]] std::vector<std::string> arguments(int count, char** words);
/// Whether a person looks at the standard error.
[[nodiscard]] bool error_is_terminal();
/// From here on a wish to end the process (Ctrl-C, a request to terminate) only sets a mark; a
/// second one ends it at once.
void catch_interrupts();
[[nodiscard]] bool interrupted();

}  // namespace terminal
