#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <unordered_map>
#include <vector>

namespace editor {

/// Which rows' icons are in which slot of an image list with a fixed number of slots. The icon that
/// was looked at longest ago makes room for a new one.
class IconCache {
public:
    static constexpr int kNotLoaded = -1;
    static constexpr int kNoIcon = -2;  ///< The row has none.

    /// `slots` is 1 or more.
    explicit IconCache(int slots) : slots_(slots) {}
    void clear();
    /// The row's slot, which counts as looked at, or one of the values above.
    [[nodiscard]] int find(std::uint32_t row);
    [[nodiscard]] bool is_known(std::uint32_t row) const { return places_.contains(row); }
    /// The slot that the row's icon is to be put in: its own, a free one, or the one that was
    /// looked at longest ago, whose row is forgotten.
    [[nodiscard]] int store(std::uint32_t row);
    void store_none(std::uint32_t row);
    void forget(std::uint32_t row);

private:
    using Used = std::list<std::uint32_t>;  ///< Rows with a slot, the one looked at last in front.
    struct Place {
        int slot;
        Used::iterator used;  ///< Meaningless for kNoIcon.
    };

    int slots_;
    int taken_ = 0;  ///< Slots that were ever in use; those given back are in `free_`.
    std::vector<int> free_;
    Used used_;
    std::unordered_map<std::uint32_t, Place> places_;
};

/// The rows whose icons are wanted, the most wanted first: those of `shown` in view from position
/// `first` on, `count` of them, then the next `count` and the `count` before.
[[nodiscard]] std::vector<std::uint32_t> rows_around(const std::vector<std::uint32_t>& shown,
                                                     std::size_t first, std::size_t count);

}  // namespace editor
