#pragma once

#include "foundation/GMetaClass.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/// All registered classes of the process: a flat open-addressing table from name to class, and the
/// classes by ordinal. Behind GMetaClass, which is the face to use. Changed only while a module
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
    struct Slot {
        std::uint64_t key = 0;       ///< 0: the slot is free.
        const char* name = nullptr;  ///< That of `metaclass`, one hop nearer.
        const GMetaClass* metaclass = nullptr;
    };

    /// The slot that holds the name, or the free one where it belongs. The table is not empty.
    [[nodiscard]] std::size_t position(std::string_view name, std::uint64_t key) const;
    void grow();
    void vacate(std::size_t hole);

    std::vector<Slot> slots_;  ///< A power of two, at most half full.
    std::size_t used_ = 0;
    std::vector<const GMetaClass*> by_ordinal_;
    std::vector<std::uint32_t> free_ordinals_;
};
