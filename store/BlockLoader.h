#pragma once

#include "store/IndexBlock.h"
#include "store/LibraryStorage.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

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

    /// Reads one extent after the other into memory that walk after walk uses again; what a long
    /// list passes by does not push anything out of the cache.
    class Walk {
    public:
        explicit Walk(BlockLoader& loader);
        ~Walk();
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;
        /// The extent until the next call; null when it can't be read.
        [[nodiscard]] const IndexBlock* load(const BlockRef& extent);

    private:
        BlockLoader& loader_;
        std::unique_ptr<IndexBlock> own_;
        std::shared_ptr<const IndexBlock> cached_;
    };

private:
    static constexpr std::size_t kWalkBytes = 256 * 1024;  // more is not kept for the next walk
    struct Cached {
        std::uint64_t position;
        std::uint64_t checksum;
        bool used;  ///< Since the hand passed last.
        std::shared_ptr<const IndexBlock> block;
    };
    using Blocks = std::vector<Cached>;
    [[nodiscard]] Blocks::iterator find(std::uint64_t position);
    [[nodiscard]] bool read(const BlockRef& block, IndexBlock::Kind kind, IndexBlock& into,
                            ReadOutcome& outcome) const;
    void make_room();

    const LibraryStorage& storage_;
    Blocks cached_;         // ascending by position
    std::size_t hand_ = 0;  // goes round and lets go of what was not used since it came by
    std::size_t bytes_ = 0;
    std::unique_ptr<IndexBlock> walked_;  // while no walk has it
};

}  // namespace zmr
