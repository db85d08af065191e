#pragma once

#include "foundation/GMetaClass.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/// All registered classes of the process: a flat hash table from name to class, and the classes by
/// ordinal. Behind GMetaClass, which is the face to use. Changed only while a module
/// loads or unloads, in one thread; read by any.
class GClassRegistry {
public:
    constexpr GClassRegistry() = default;

    /// The one of the process.
    [[nodiscard]] static GClassRegistry& Get();

    /// Takes the class in, in front of one of the same name, and gives it its ordinal.
    void enroll(const GMetaClass& metaclass);
    /// Takes it out; the one of the same name behind it answers again.
    void leave(const GMetaClass& metaclass);
    [[nodiscard]] const GMetaClass* find(const char* name) const;
    /// The classes by ordinal, null where an ordinal is free.
    [[nodiscard]] std::span<const GMetaClass* const> classes() const { return by_ordinal_; }

    /// 32 bits of hash below 32 bits of length, never 0.
    [[nodiscard]] static std::uint64_t Key(std::string_view name);

private:
    static constexpr std::size_t kGroupSlots = 8;

    /// One line of the cache: a look-up touches no more when the name is as short as most are.
    struct alignas(64) Slot {
        std::uint64_t key = 0;
        const GMetaClass* metaclass = nullptr;
        char text[48] = {};  ///< The first bytes of the name.
    };

    [[nodiscard]] static bool Holds(const Slot& slot, std::string_view name);
    [[nodiscard]] const Slot* search(std::string_view name) const;
    void insert(std::uint64_t key, const GMetaClass& metaclass);
    void remove(std::size_t at);
    void rebuild(std::size_t group_count);

    /// For each group of 8 slots a byte of each slot's key, 0 for a free one: a group is looked
    /// through at once. A search ends at the first group with a free slot.
    std::vector<std::uint64_t> tags_;  ///< A power of two, on average at most half full.
    std::vector<Slot> slots_;
    std::size_t used_ = 0;
    std::vector<const GMetaClass*> by_ordinal_;
    std::vector<std::uint32_t> free_ordinals_;
};
