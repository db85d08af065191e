#pragma once

#include "tests/support/KillLoop.h"

#include <cstdint>
#include <string>

namespace zmr {

/// Starts a process that writes the library `name` again and again, kills it after a random time,
/// and checks what is left against what it had acknowledged. The library stays for the next kill
/// and is left for a look when something failed.
[[nodiscard]] KillFigures run_kills(const std::string& name, int kills, std::uint32_t seed);

}  // namespace zmr
