#include "foundation/GClassRegistry.h"

#include "foundation/Immortal.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>

namespace {

constinit zmr::Immortal<GClassRegistry> g_registry;

constexpr std::size_t kFirstGroups = 32;
constexpr std::uint64_t kEachByte = 0x0101010101010101u;
constexpr std::uint64_t kHighBits = 0x8080808080808080u;

/// The high bit of each byte of `word` that is 0; now and then also that of the byte above it.
[[nodiscard]] inline std::uint64_t zero_bytes(std::uint64_t word)
{
    return (word - kEachByte) & ~word & kHighBits;
}

[[nodiscard]] inline std::uint64_t tag_of(std::uint64_t key)
{
    return ((key >> 24) & 0x7F) | 0x80;
}

template <class T>
[[nodiscard]] inline std::uint64_t load(const char* bytes)
{
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

__extension__ using Product = unsigned __int128;

/// Both halves of the full product, folded.
[[nodiscard]] inline std::uint64_t mix(std::uint64_t a, std::uint64_t b)
{
    const Product product = static_cast<Product>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

[[nodiscard]] inline std::uint64_t key_of(std::string_view name)
{
    // Three loads that overlap cover up to 24 bytes: a loop whose length differs from name to name
    // would cost more than all the rest.
    constexpr std::uint64_t kOdd1 = 0xA0761D6478BD642Fu;
    constexpr std::uint64_t kOdd2 = 0xE7037ED1A0B428DBu;
    const char* bytes = name.data();
    const std::size_t length = name.size();
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    std::uint64_t hash = length;
    if (length >= 8) {
        first = load<std::uint64_t>(bytes);
        last = load<std::uint64_t>(bytes + length - 8);
        hash = mix(load<std::uint64_t>(bytes + (length - 8) / 2) ^ kOdd1, hash ^ kOdd2);
        for (std::size_t at = 8; length > 24 && at + 8 < length; at += 8)
            hash = mix(load<std::uint64_t>(bytes + at) ^ kOdd1, hash ^ kOdd2);
    } else if (length >= 4) {
        first = load<std::uint32_t>(bytes);
        last = load<std::uint32_t>(bytes + length - 4);
    } else if (length > 0) {
        first = load<unsigned char>(bytes);
        last =
            load<unsigned char>(bytes + length / 2) << 8 | load<unsigned char>(bytes + length - 1);
    }
    hash = mix(first ^ kOdd1, last ^ hash ^ kOdd2);
    return (hash & 0xFFFFFFFFu) | (static_cast<std::uint64_t>(length) + 1) << 32;
}

}  // namespace

GClassRegistry& GClassRegistry::Get()
{
    return *g_registry;
}

std::uint64_t GClassRegistry::Key(std::string_view name)
{
    return key_of(name);
}

inline bool GClassRegistry::Holds(const Slot& slot, std::string_view name)
{
    // The key holds the length, so both texts are as long as `name`.
    const char* text = name.size() <= sizeof slot.text ? slot.text : slot.metaclass->name;
    return std::memcmp(text, name.data(), name.size()) == 0;
}

inline const GClassRegistry::Slot* GClassRegistry::search(std::string_view name) const
{
    const std::uint64_t key = key_of(name);
    const std::uint64_t wanted = tag_of(key) * kEachByte;
    const std::size_t mask = tags_.size() - 1;
    for (std::size_t at = static_cast<std::size_t>(key) & mask;; at = (at + 1) & mask) {
        const std::uint64_t tags = tags_.data()[at];
        const Slot* group = slots_.data() + kGroupSlots * at;
        for (std::uint64_t hits = zero_bytes(tags ^ wanted); hits != 0; hits &= hits - 1) {
            const Slot& slot = group[std::countr_zero(hits) / 8];
            if (slot.key == key && Holds(slot, name))
                return &slot;
        }
        if (zero_bytes(tags) != 0)
            return nullptr;
    }
}

const GMetaClass* GClassRegistry::find(const char* name) const
{
    if (name == nullptr || tags_.empty())
        return nullptr;
    const Slot* slot = search(name);
    return slot == nullptr ? nullptr : slot->metaclass;
}

void GClassRegistry::enroll(const GMetaClass& metaclass)
{
    if (tags_.size() * kGroupSlots < 2 * (used_ + 1))
        rebuild(tags_.empty() ? kFirstGroups : 2 * tags_.size());
    if (free_ordinals_.empty()) {
        metaclass.ordinal_ = static_cast<std::uint32_t>(by_ordinal_.size());
        by_ordinal_.push_back(&metaclass);
        free_ordinals_.reserve(by_ordinal_.capacity());  // so that leaving never allocates
    } else {
        metaclass.ordinal_ = free_ordinals_.back();
        free_ordinals_.pop_back();
        by_ordinal_[metaclass.ordinal_] = &metaclass;
    }

    const std::string_view name(metaclass.name);
    const Slot* slot = search(name);
    metaclass.shadowed_ = slot == nullptr ? nullptr : slot->metaclass;
    if (slot == nullptr)
        insert(Key(name), metaclass);
    else
        slots_[static_cast<std::size_t>(slot - slots_.data())].metaclass = &metaclass;
}

void GClassRegistry::leave(const GMetaClass& metaclass)
{
    by_ordinal_[metaclass.ordinal_] = nullptr;
    free_ordinals_.push_back(metaclass.ordinal_);

    const Slot* slot = search(metaclass.name);
    assert(slot != nullptr);
    if (slot->metaclass != &metaclass) {
        for (const GMetaClass* other = slot->metaclass; other != nullptr;
             other = other->shadowed_) {
            if (other->shadowed_ == &metaclass)
                other->shadowed_ = metaclass.shadowed_;
        }
        return;
    }
    const auto at = static_cast<std::size_t>(slot - slots_.data());
    slots_[at].metaclass = metaclass.shadowed_;
    if (metaclass.shadowed_ == nullptr)
        remove(at);
}

void GClassRegistry::insert(std::uint64_t key, const GMetaClass& metaclass)
{
    const std::size_t mask = tags_.size() - 1;
    std::size_t group = static_cast<std::size_t>(key) & mask;
    while (zero_bytes(tags_[group]) == 0)
        group = (group + 1) & mask;
    const auto index = static_cast<std::size_t>(std::countr_zero(zero_bytes(tags_[group]))) / 8;
    tags_[group] |= tag_of(key) << (8 * index);
    Slot& slot = slots_[kGroupSlots * group + index];
    slot.key = key;
    slot.metaclass = &metaclass;
    const std::string_view name(metaclass.name);
    std::memcpy(slot.text, name.data(), std::min(name.size(), sizeof slot.text));
    ++used_;
}

void GClassRegistry::remove(std::size_t at)
{
    std::uint64_t& tags = tags_[at / kGroupSlots];
    const bool was_full = zero_bytes(tags) == 0;
    tags &= ~(std::uint64_t{0xFF} << (8 * (at % kGroupSlots)));
    slots_[at] = Slot{};
    --used_;
    if (was_full)  // what did not fit the group lies further on, and would not be found any more
        rebuild(tags_.size());
}

void GClassRegistry::rebuild(std::size_t group_count)
{
    std::vector<Slot> former(kGroupSlots * group_count);
    tags_.assign(group_count, 0);
    former.swap(slots_);
    used_ = 0;
    for (const Slot& slot : former) {
        if (slot.metaclass != nullptr)
            insert(slot.key, *slot.metaclass);
    }
}
