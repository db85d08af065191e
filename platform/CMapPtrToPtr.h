#pragma once

#include "platform/Export.h"
#include "platform/PlatformPosition.h"

#include <cstddef>
#include <unordered_map>

/// A map from pointers to pointers; neither are owned. Look-ups take constant time.
class ZMR_GV_API CMapPtrToPtr {
public:
    [[nodiscard]] int GetCount() const { return static_cast<int>(entries_.size()); }
    [[nodiscard]] int GetSize() const { return GetCount(); }
    [[nodiscard]] bool IsEmpty() const { return entries_.empty(); }

    /// False, with `value` unchanged, when there is no such key.
    [[nodiscard]] bool Lookup(void* key, void*& value) const;
    void SetAt(void* key, void* value) { entries_[key] = value; }
    /// The value of the key, which is added with null where it is missing.
    [[nodiscard]] void*& operator[](void* key) { return entries_[key]; }
    /// False when there is no such key.
    bool RemoveKey(void* key) { return entries_.erase(key) != 0; }
    void RemoveAll() { entries_.clear(); }

    /// A walk over all entries in no order. The entry given out last may be removed on the way; one
    /// that is added ends the walk's right to go on.
    [[nodiscard]] POSITION GetStartPosition() const;
    void GetNextAssoc(POSITION& at, void*& key, void*& value) const;

private:
    using Entries = std::unordered_map<void*, void*>;

    [[nodiscard]] POSITION position_of(Entries::const_iterator entry) const;

    Entries entries_;
};
