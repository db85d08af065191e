#include "responder/GCommandSet.h"

void GCommandSet::set(unsigned long id, GCommandState state)
{
    const std::uint64_t low = std::uint64_t{static_cast<std::uint32_t>(id)} * 2;
    const std::uint64_t need = low + 2;
    if (size < need) {
        const std::uint64_t old_size = size;
        resize(need);
        set_range(old_size, low, true);  // the ids in between are enabled, as they were beyond
    }
    set_range(low, low + 1, (state & 1U) != 0);
    set_range(low + 1, low + 2, (state & 2U) != 0);
}
