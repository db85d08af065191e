#include "responder/KeySource.h"

#include <utility>

namespace zmr {

namespace {

constinit KeySource g_source = nullptr;

}  // namespace

KeySource set_key_source(KeySource source)
{
    return std::exchange(g_source, source);
}

unsigned short key_state(int virtual_key, bool asynchronous)
{
    return g_source != nullptr ? g_source(virtual_key, asynchronous)
                               : system_key_state(virtual_key, asynchronous);
}

}  // namespace zmr
