#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace zmr {

/// A list that grows at its end by blocks of `BlockItems`, a power of two: what stands in it stays
/// where it is, and growing neither copies nor asks for large pieces of memory.
template <class T, std::size_t BlockItems>
class BlockList {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
    static_assert(BlockItems > 0 && (BlockItems & (BlockItems - 1)) == 0);

public:
    [[nodiscard]] std::size_t size() const { return size_; }
    /// `index` is less than size().
    [[nodiscard]] T& operator[](std::size_t index)
    {
        return blocks_.data()[index / BlockItems].get()[index % BlockItems];
    }
    [[nodiscard]] const T& operator[](std::size_t index) const
    {
        return blocks_.data()[index / BlockItems].get()[index % BlockItems];
    }
    T& push_back(const T& item)
    {
        if (size_ % BlockItems == 0)
            add_block();
        ++size_;
        return *std::construct_at(next_++, item);
    }

private:
    struct FreeBlock {
        void operator()(T* block) const { std::allocator<T>().deallocate(block, BlockItems); }
    };

    /// Apart, so that what adds items has fewer registers to save.
    [[gnu::noinline]] void add_block()
    {
        std::unique_ptr<T, FreeBlock> block(std::allocator<T>().allocate(BlockItems));
        next_ = block.get();
        blocks_.push_back(std::move(block));
    }

    std::vector<std::unique_ptr<T, FreeBlock>> blocks_;
    T* next_ = nullptr;  ///< Where the next item comes, unless the last block is full.
    std::size_t size_ = 0;
};

}  // namespace zmr
