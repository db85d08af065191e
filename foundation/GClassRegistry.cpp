#include "foundation/GClassRegistry.h"

#include "foundation/Immortal.h"

#include <cstring>

namespace {

constinit zmr::Immortal<GClassRegistry> g_registry;

constexpr std::size_t kFirstSlots = 256;

template <class T>
[[nodiscard]] inline std::uint64_t load(const char* bytes)
{
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

/// One multiplication, both halves of its product folded.
[[nodiscard]] inline std::uint64_t mix(std::uint64_t a, std::uint64_t b)
{
    const std::uint64_t product = (a ^ b) * 0x9E3779B97F4A7C15u;
    return product ^ (product >> 32);
}

/// Equality of two texts of one length, eight bytes at a time, the last eight overlapping.
[[nodiscard]] inline bool equal(const char* a, const char* b, std::size_t length)
{
    if (length < 8)
        return std::memcmp(a, b, length) == 0;
    std::uint64_t difference =
        load<std::uint64_t>(a + length - 8) ^ load<std::uint64_t>(b + length - 8);
    for (std::size_t at = 0; at + 8 < length; at += 8)
        difference |= load<std::uint64_t>(a + at) ^ load<std::uint64_t>(b + at);
    return difference == 0;
}

}  // namespace

GClassRegistry& GClassRegistry::Get()
{
    return *g_registry;
}

std::uint64_t GClassRegistry::Key(std::string_view name)
{
    const char* bytes = name.data();
    const std::size_t length = name.size();
    std::uint64_t hash = length;
    if (length >= 8) {
        for (std::size_t at = 0; at + 8 < length; at += 8)
            hash = mix(hash, load<std::uint64_t>(bytes + at));
        hash = mix(hash, load<std::uint64_t>(bytes + length - 8));
    } else if (length >= 4) {
        hash =
            mix(hash, load<std::uint32_t>(bytes) | load<std::uint32_t>(bytes + length - 4) << 32);
    } else if (length > 0) {
        const std::uint64_t first = load<unsigned char>(bytes);
        const std::uint64_t middle = load<unsigned char>(bytes + length / 2);
        hash = mix(hash, first | middle << 8 | load<unsigned char>(bytes + length - 1) << 16);
    }
    return (hash & 0xFFFFFFFFu) | (static_cast<std::uint64_t>(length) + 1) << 32;
}

std::size_t GClassRegistry::position(std::string_view name, std::uint64_t key) const
{
    const std::size_t mask = slots_.size() - 1;
    const Slot* slots = slots_.data();
    std::size_t at = static_cast<std::size_t>(key) & mask;
    while (slots[at].key != 0) {
        if (slots[at].key == key && equal(slots[at].name, name.data(), name.size()))
            break;
        at = (at + 1) & mask;
    }
    return at;
}

const GMetaClass* GClassRegistry::find(const char* name) const
{
    if (name == nullptr || slots_.empty())
        return nullptr;
    const std::string_view text(name);
    return slots_.data()[position(text, Key(text))].metaclass;
}

void GClassRegistry::enroll(const GMetaClass& metaclass)
{
    if (slots_.size() < 2 * (used_ + 1))
        grow();
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
    const std::uint64_t key = Key(name);
    Slot& slot = slots_[position(name, key)];
    metaclass.shadowed_ = slot.metaclass;
    if (slot.metaclass == nullptr)
        ++used_;
    slot = {key, metaclass.name, &metaclass};
}

void GClassRegistry::leave(const GMetaClass& metaclass)
{
    by_ordinal_[metaclass.ordinal_] = nullptr;
    free_ordinals_.push_back(metaclass.ordinal_);

    const std::string_view name(metaclass.name);
    const std::size_t at = position(name, Key(name));
    Slot& slot = slots_[at];
    if (slot.metaclass != &metaclass) {
        for (const GMetaClass* other = slot.metaclass; other != nullptr; other = other->shadowed_) {
            if (other->shadowed_ == &metaclass)
                other->shadowed_ = metaclass.shadowed_;
        }
        return;
    }
    slot.metaclass = metaclass.shadowed_;
    if (slot.metaclass != nullptr)
        slot.name = slot.metaclass->name;  // the text of the other's module
    else
        vacate(at);
}

void GClassRegistry::grow()
{
    std::vector<Slot> former(slots_.empty() ? kFirstSlots : 2 * slots_.size());
    former.swap(slots_);
    for (const Slot& slot : former) {
        if (slot.key != 0)
            slots_[position(slot.name, slot.key)] = slot;
    }
}

void GClassRegistry::vacate(std::size_t hole)
{
    // What was pushed along by the entry that goes moves back, so that no probe ends too early.
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = hole;
    while (true) {
        at = (at + 1) & mask;
        if (slots_[at].key == 0)
            break;
        const std::size_t home = static_cast<std::size_t>(slots_[at].key) & mask;
        if (((at - home) & mask) >= ((at - hole) & mask)) {
            slots_[hole] = slots_[at];
            hole = at;
        }
    }
    slots_[hole] = Slot{};
    --used_;
}
