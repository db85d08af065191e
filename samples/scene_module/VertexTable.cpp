#include "scene_module/VertexTable.h"

#include <random>

namespace scene {

namespace {

std::uint64_t seed()
{
    static const std::uint64_t value = [] {
        std::random_device source;
        return std::uint64_t{source()} << 32 | source();
    }();
    return value;
}

// The finaliser of splitmix64.
std::uint64_t mix(std::uint64_t value)
{
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9u;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebu;
    return value ^ (value >> 31);
}

}  // namespace

VertexTable::VertexTable() : slots_(64, kFree) {}

std::uint32_t VertexTable::find_or_add(const Key& key)
{
    std::size_t slot = slot_of(key);
    if (slots_[slot] != kFree)
        return slots_[slot];
    if ((keys_.size() + 1) * 2 > slots_.size()) {
        grow();
        slot = slot_of(key);
    }
    slots_[slot] = static_cast<std::uint32_t>(keys_.size());
    keys_.push_back(key);
    return slots_[slot];
}

std::size_t VertexTable::slot_of(const Key& key) const
{
    const std::uint64_t hash = mix(mix(seed() ^ (std::uint64_t{key[0]} << 32 | key[1])) + key[2]);
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = static_cast<std::size_t>(hash) & mask;
    while (slots_[slot] != kFree && keys_[slots_[slot]] != key)
        slot = (slot + 1) & mask;
    return slot;
}

void VertexTable::grow()
{
    slots_.assign(slots_.size() * 2, kFree);
    for (std::size_t i = 0; i < keys_.size(); ++i)
        slots_[slot_of(keys_[i])] = static_cast<std::uint32_t>(i);
}

}  // namespace scene
