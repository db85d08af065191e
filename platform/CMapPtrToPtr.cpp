#include "platform/CMapPtrToPtr.h"

#include <cassert>

bool CMapPtrToPtr::Lookup(void* key, void*& value) const
{
    const auto found = entries_.find(key);
    if (found == entries_.end())
        return false;
    value = found->second;
    return true;
}

// A place is the address of its entry, which is never moved.
POSITION CMapPtrToPtr::position_of(Entries::const_iterator entry) const
{
    if (entry == entries_.end())
        return nullptr;
    return reinterpret_cast<POSITION>(const_cast<Entries::value_type*>(&*entry));
}

POSITION CMapPtrToPtr::GetStartPosition() const
{
    return position_of(entries_.begin());
}

void CMapPtrToPtr::GetNextAssoc(POSITION& at, void*& key, void*& value) const
{
    assert(at != nullptr);
    auto entry = entries_.find(reinterpret_cast<const Entries::value_type*>(at)->first);
    assert(entry != entries_.end());
    key = entry->first;
    value = entry->second;
    at = position_of(++entry);
}
