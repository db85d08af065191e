#pragma once

#include "tests/support/KillLoop.h"

#include <cstdint>
#include <string>

namespace zmr {

/// Starts a process that updates the settings file `name` again and again, kills it after a random
/// time, and checks that the file holds the last update that was acknowledged or the one after it,
/// whole, beside what was in the file from the start. The file stays for the next kill, and for a
/// look when something failed.
[[nodiscard]] KillFigures run_settings_kills(const std::string& name, int kills,
                                             std::uint32_t seed);

}  // namespace zmr
