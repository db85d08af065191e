#pragma once

#include <cstdint>
#include <string>

namespace zmr {

/// What a run of kills has seen.
struct SettingsKillFigures {
    int kills = 0;
    std::uint64_t updates = 0;  ///< That were acknowledged before a kill.
    std::string failure;        ///< Empty when nothing was lost and all was readable.
};

/// Starts a process that updates the settings file `name` again and again, kills it after a random
/// time, and checks that the file holds the last update that was acknowledged or the one after it,
/// whole, beside what was in the file from the start. The file stays for the next kill, and for a
/// look when something failed.
[[nodiscard]] SettingsKillFigures run_settings_kills(const std::string& name, int kills,
                                                     std::uint32_t seed);

}  // namespace zmr
