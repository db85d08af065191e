#pragma once

#include <cstdint>
#include <string>

namespace zmr {

/// What the system says of this process, in UTF-8; "?" for what it does not say.
struct ProcessFacts {
    std::string user;
    std::string host;
    std::uint64_t process = 0;
};
[[nodiscard]] ProcessFacts process_facts();

}  // namespace zmr
