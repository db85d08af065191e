#include "responder/KeySource.h"

namespace zmr {

unsigned short system_key_state(int, bool)
{
    return 0;  // no keyboard is known here
}

}  // namespace zmr
