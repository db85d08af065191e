#include "platform/StringTable.h"

#include <utility>

namespace zmr {
namespace {

StringLookup installed = nullptr;

}  // namespace

StringLookup set_string_lookup(StringLookup lookup)
{
    return std::exchange(installed, lookup);
}

bool find_string(UINT id, std::string& text)
{
    return (installed != nullptr && installed(id, text)) || find_system_string(id, text);
}

}  // namespace zmr
