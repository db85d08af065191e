#include "platform/MessageMap.h"

namespace zmr {
namespace {

constexpr UINT kRegisteredMessage = 0xC000;  // and up: numbers that the system gives out by name

bool serves(const AFX_MSGMAP_ENTRY& row, const MessageKey& key)
{
    if (row.registered != nullptr)
        return *row.registered == key.message && key.message >= kRegisteredMessage;
    return row.nMessage == key.message && row.nCode == key.code && row.nID <= key.id &&
           key.id <= row.nLastID;
}

}  // namespace

const AFX_MSGMAP_ENTRY* find_entry(const AFX_MSGMAP* map, const MessageKey& key)
{
    for (; map != nullptr; map = map->base != nullptr ? map->base() : nullptr)
        for (const AFX_MSGMAP_ENTRY* row = map->entries; row->nMessage != 0; ++row)
            if (serves(*row, key))
                return row;
    return nullptr;
}

}  // namespace zmr
