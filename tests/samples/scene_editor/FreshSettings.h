#pragma once

#include "settings/RegistryManager.h"

#include <string>

/// The settings of the program are those of its first run at the start of each test: they lie in a
/// file of the test's own.
[[nodiscard]] std::string settings_file();
/// Reads and writes them, while the program does not run.
[[nodiscard]] RegistryManager settings_of_the_program();
