#include "store/ProcessIdentity.h"

#include "store/ProcessFacts.h"

#include <array>
#include <ctime>

namespace zmr {

std::string process_identity()
{
    const ProcessFacts facts = process_facts();
    std::array<char, 32> since{};
    const std::time_t now = std::time(nullptr);
    if (const std::tm* utc = std::gmtime(&now))
        std::strftime(since.data(), since.size(), "%Y-%m-%d %H:%M:%S UTC", utc);
    return facts.user.substr(0, 100) + "@" + facts.host.substr(0, 200) + ", process " +
           std::to_string(facts.process) + ", since " + since.data();
}

}  // namespace zmr
