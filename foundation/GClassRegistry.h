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
    [[nodiscard]] const GMetaClass* find(std::string_view name) const;
    /// The classes by ordinal, null where an ordinal is free.
    [[nodiscard]] std::span<const GMetaClass* const> classes() const { return by_ordinal_; }

private:
    static constexpr std::size_t kGroupSlots = 8;

    /// The bytes of a name in words that overlap: equal words are equal names when these are no
    /// longer than kWholeBytes. Of a longer name the middle is a hash of all that lies between.
    struct Words {
        std::uint64_t first = 0;
        std::uint64_t middle = 0;
        std::uint64_t last = 0;
        std::uint64_t length = 0;

        bool operator==(const Words&) const = default;
    };
    static constexpr std::size_t kWholeBytes = 24;

    /// Within one line of the cache, of which a look-up touches no more.
    struct alignas(64) Slot {
        Words words;
        const GMetaClass* metaclass = nullptr;
    };

    [[nodiscard]] static Words WordsOf(std::string_view name);
    [[nodiscard]] static std::uint64_t Hash(const Words& words);
    [[nodiscard]] static bool Holds(const Slot& slot, const Words& words, const char* name);
    [[nodiscard]] const Slot* search(std::string_view name) const;
    void insert(const GMetaClass& metaclass);
    void remove(std::size_t at);
    void rebuild(std::size_t group_count);

    /// For each group of 8 slots a byte of each slot's hash, 0 for a free one: a group is looked
    /// through at once. A search ends at the first group with a free slot.
    std::vector<std::uint64_t> tags_;  ///< A power of two, on average at most half full.
    std::vector<Slot> slots_;
    std::size_t used_ = 0;
    std::vector<const GMetaClass*> by_ordinal_;
    std::vector<std::uint32_t> free_ordinals_;
};
