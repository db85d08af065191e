#include "store/ProcessFacts.h"

#include <pwd.h>
#include <unistd.h>

#include <array>

namespace zmr {

ProcessFacts process_facts()
{
    ProcessFacts facts{"?", "?", static_cast<std::uint64_t>(::getpid())};
    passwd entry{};
    passwd* found = nullptr;
    std::array<char, 4096> text{};
    if (::getpwuid_r(::geteuid(), &entry, text.data(), text.size(), &found) == 0 &&
        found != nullptr)
        facts.user = found->pw_name;
    std::array<char, 256> host{};
    if (::gethostname(host.data(), host.size() - 1) == 0)
        facts.host = host.data();
    return facts;
}

}  // namespace zmr
