#include "platform/Windows.h"
#include "responder/KeySource.h"

namespace zmr {

unsigned short system_key_state(int virtual_key, bool asynchronous)
{
    const SHORT state = asynchronous ? ::GetAsyncKeyState(virtual_key) : ::GetKeyState(virtual_key);
    return static_cast<unsigned short>(state);
}

}  // namespace zmr
