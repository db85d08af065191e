#pragma once

#include <string>
#include <vector>

/// The paths of all entries of a library, as the command-line tool lists them.
[[nodiscard]] std::vector<std::string> names_in(const std::string& library);
