// settings_crash NAME KILLS [SEED]: kills a process that updates the settings file NAME that many
// times and says what was lost. NAME must be a new file. The unit tests do the same with few kills.
#include "SettingsKillRun.h"

#include <cstdlib>
#include <iostream>

int main(int count, char** arguments)
{
    if (count < 3) {
        std::cerr << "usage: settings_crash NAME KILLS [SEED]\n";
        return 2;
    }
    const auto seed =
        count > 3 ? static_cast<std::uint32_t>(std::strtoul(arguments[3], nullptr, 10)) : 1u;
    const zmr::KillFigures figures =
        zmr::run_settings_kills(arguments[1], std::atoi(arguments[2]), seed);
    std::cout << "{\"kills\": " << figures.kills << ", \"updates\": " << figures.commits
              << ", \"seed\": " << seed << ", \"failure\": \"" << figures.failure << "\"}\n";
    return figures.failure.empty() ? 0 : 1;
}
