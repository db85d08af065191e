#include "foundation/GClassRegistry.h"

#include "foundation/Immortal.h"

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

template <class T>
[[nodiscard]] inline std::uint64_t load(const char* bytes)
{
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

/// The byte that a group keeps of a hash, never 0.
[[nodiscard]] inline std::uint64_t tag_of(std::uint64_t hash)
{
    return hash >> 57 | 0x80;
}

__extension__ using Product = unsigned __int128;

/// Both halves of the full product, folded: multiplicative hashing in which all bits count.
[[nodiscard]] inline std::uint64_t mix(std::uint64_t a, std::uint64_t b)
{
    const Product product = static_cast<Product>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

constexpr std::uint64_t kOdd1 = 0xA0761D6478BD642Fu;
constexpr std::uint64_t kOdd2 = 0xE7037ED1A0B428DBu;
constexpr std::uint64_t kOdd3 = 0x8EBC6AF09C88C6E3u;

/// What stands for the middle of a name that the words do not cover: all of it counts.
[[nodiscard, gnu::noinline]] std::uint64_t inner(std::string_view name)
{
    std::uint64_t hash = 0;
    for (std::size_t at = 8; at + 8 < name.size(); at += 8)
        hash = mix(load<std::uint64_t>(name.data() + at) ^ kOdd1, hash ^ kOdd2);
    return hash;
}

}  // namespace

GClassRegistry& GClassRegistry::Get()
{
    return *g_registry;
}

inline GClassRegistry::Words GClassRegistry::WordsOf(std::string_view name)
{
    const char* bytes = name.data();
    const std::size_t length = name.size();
    if (length >= 8)
        return {load<std::uint64_t>(bytes),
                length <= kWholeBytes ? load<std::uint64_t>(bytes + (length - 8) / 2) : inner(name),
                load<std::uint64_t>(bytes + length - 8), length};
    if (length >= 4)
        return {load<std::uint32_t>(bytes), 0, load<std::uint32_t>(bytes + length - 4), length};
    if (length > 0)
        return {load<unsigned char>(bytes), load<unsigned char>(bytes + length / 2),
                load<unsigned char>(bytes + length - 1), length};
    return {};
}

inline std::uint64_t GClassRegistry::Hash(const Words& words)
{
    return mix(words.first ^ kOdd1, (words.last + words.length) ^ (words.middle * kOdd3));
}

inline bool GClassRegistry::Holds(const Slot& slot, const Words& words, const char* name)
{
    return slot.words == words &&
           (words.length <= kWholeBytes ||
            std::memcmp(slot.metaclass->name, name, static_cast<std::size_t>(words.length)) == 0);
}

inline const GClassRegistry::Slot* GClassRegistry::search(std::string_view name) const
{
    const Words words = WordsOf(name);
    const std::uint64_t hash = Hash(words);
    const std::uint64_t wanted = tag_of(hash) * kEachByte;
    const std::size_t mask = tags_.size() - 1;
    for (std::size_t at = static_cast<std::size_t>(hash) & mask;; at = (at + 1) & mask) {
        const std::uint64_t tags = tags_.data()[at];
        const Slot* group = slots_.data() + kGroupSlots * at;
        for (std::uint64_t hits = zero_bytes(tags ^ wanted); hits != 0; hits &= hits - 1) {
            const Slot& slot = group[static_cast<unsigned>(std::countr_zero(hits)) / 8];
            if (Holds(slot, words, name.data()))
                return &slot;
        }
        if (zero_bytes(tags) != 0)
            return nullptr;
    }
}

inline const GMetaClass* GClassRegistry::find(std::string_view name) const
{
    if (tags_.empty())
        return nullptr;
    const Slot* slot = search(name);
    return slot == nullptr ? nullptr : slot->metaclass;
}

// Here, where the look-up can be inlined.
const GMetaClass* GMetaClass::FindByName(const char* name)
{
    return name == nullptr ? nullptr : g_registry->find(name);
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
        insert(metaclass);
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
    if (used_ == 0)  // the library itself is leaving
        *this = GClassRegistry();
}

void GClassRegistry::insert(const GMetaClass& metaclass)
{
    const Words words = WordsOf(metaclass.name);
    const std::uint64_t hash = Hash(words);
    const std::size_t mask = tags_.size() - 1;
    std::size_t group = static_cast<std::size_t>(hash) & mask;
    while (zero_bytes(tags_[group]) == 0)
        group = (group + 1) & mask;
    const auto index = static_cast<std::size_t>(std::countr_zero(zero_bytes(tags_[group]))) / 8;
    tags_[group] |= tag_of(hash) << (8 * index);
    slots_[kGroupSlots * group + index] = {words, &metaclass};
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
            insert(*slot.metaclass);
    }
}
