#include "platform/StringTable.h"

namespace zmr {

bool find_system_string(UINT, std::string&)
{
    return false;  // programs have no string tables here
}

}  // namespace zmr
