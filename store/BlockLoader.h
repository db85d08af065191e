#pragma once

#include "store/IndexBlock.h"
#include "store/LibraryStorage.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <unordered_map>

namespace zmr {

/// Reads index blocks and keeps those used last, as bytes, up to kCacheBytes.
class BlockLoader {
public:
    static constexpr std::size_t kCacheBytes = 12u << 20;

    explicit BlockLoader(const LibraryStorage& storage) : storage_(storage) {}
    /// Null when `outcome` is not Good.
    [[nodiscard]] std::shared_ptr<const IndexBlock> load(const BlockRef& block,
                                                         IndexBlock::Kind kind,
                                                         ReadOutcome& outcome);
    /// The bytes of a block of another kind, never kept.
    [[nodiscard]] std::string read_bytes(const BlockRef& block, ReadOutcome& outcome) const;
    void clear();

private:
    struct Cached {
        std::uint64_t position;
        std::uint64_t checksum;
        std::shared_ptr<const IndexBlock> block;
    };
    using Order = std::list<Cached>;

    const LibraryStorage& storage_;
    Order order_;  // the last used first
    std::unordered_map<std::uint64_t, Order::iterator> places_;
    std::size_t bytes_ = 0;
};

}  // namespace zmr
