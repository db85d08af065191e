#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace scene {

/// Numbers keys of three words in the order of their first coming, equal keys alike: how readers
/// join corners that are one vertex. The hash is seeded per process, so that no file can slow it
/// down on purpose.
class VertexTable {
public:
    using Key = std::array<std::uint32_t, 3>;

    VertexTable();
    /// The number of `key`, a new one when it was not seen before. Constant on average.
    [[nodiscard]] std::uint32_t find_or_add(const Key& key);
    [[nodiscard]] const std::vector<Key>& keys() const { return keys_; }

private:
    static constexpr std::uint32_t kFree = 0xffffffffu;
    [[nodiscard]] std::size_t slot_of(const Key& key) const;
    void grow();

    std::vector<Key> keys_;
    std::vector<std::uint32_t> slots_;  ///< Numbers of keys; a power of two of them, half are free.
};

}  // namespace scene
