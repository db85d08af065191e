#include "foundation/ObjectPool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstring>
#include <limits>
#include <memory>
#include <mutex>
#include <new>
#include <random>
#include <set>
#include <thread>
#include <vector>

namespace {

/// Counts the slabs that are out, and has no more than `limit` of them.
class CountingSource final : public zmr::SlabSource {
public:
    void* take() noexcept override
    {
        const std::lock_guard lock(mutex_);
        if (out_.size() >= limit_)
            return nullptr;
        void* const slab = System().take();
        out_.insert(slab);
        return slab;
    }
    void give_back(void* slab) noexcept override
    {
        const std::lock_guard lock(mutex_);
        EXPECT_EQ(out_.erase(slab), 1U);
        System().give_back(slab);
    }
    [[nodiscard]] std::size_t out()
    {
        const std::lock_guard lock(mutex_);
        return out_.size();
    }
    void set_limit(std::size_t limit) { limit_ = limit; }

private:
    std::mutex mutex_;
    std::set<void*> out_;
    std::size_t limit_ = std::numeric_limits<std::size_t>::max();
};

using Blocks = std::vector<void*>;

Blocks allocate(zmr::ObjectPool& pool, std::size_t size, int number)
{
    Blocks blocks;
    for (int block = 0; block < number; ++block)
        blocks.push_back(pool.allocate(size));
    return blocks;
}

void free_all(zmr::ObjectPool& pool, const Blocks& blocks)
{
    for (void* block : blocks)
        pool.free(block);
}

std::uintptr_t address(const void* block)
{
    return reinterpret_cast<std::uintptr_t>(block);
}

constexpr std::uintptr_t kSlab = zmr::SlabSource::kSlabBytes;

/// A block with bytes that tell its size and its number.
struct Filled {
    unsigned char* bytes = nullptr;
    std::size_t size = 0;
    unsigned char value = 0;
};

Filled filled(zmr::ObjectPool& pool, std::size_t size, unsigned char value)
{
    auto* const bytes = static_cast<unsigned char*>(pool.allocate(size));
    std::memset(bytes, value, size);
    return {bytes, size, value};
}

bool is_whole(const Filled& block)
{
    return std::all_of(block.bytes, block.bytes + block.size,
                       [&](unsigned char byte) { return byte == block.value; });
}

/// The handler for new is the former one again at the end of the scope.
class HandlerKept {
public:
    explicit HandlerKept(std::new_handler handler) : former_(std::set_new_handler(handler)) {}
    ~HandlerKept() { std::set_new_handler(former_); }
    HandlerKept(const HandlerKept&) = delete;
    HandlerKept& operator=(const HandlerKept&) = delete;

private:
    std::new_handler former_;
};

constinit CountingSource* g_starved = nullptr;
constinit int g_asked = 0;

}  // namespace

TEST(SlabSource, Slabs_LieAtMultiplesOfTheirSizeAndCanBeWritten)
{
    Blocks slabs;
    for (int number = 0; number < 20; ++number) {
        slabs.push_back(zmr::SlabSource::System().take());
        ASSERT_NE(slabs.back(), nullptr);
        EXPECT_EQ(address(slabs.back()) % kSlab, 0U);
        std::memset(slabs.back(), number, kSlab);
    }
    for (int number = 0; number < 20; ++number) {
        const auto* bytes =
            static_cast<const unsigned char*>(slabs[static_cast<std::size_t>(number)]);
        EXPECT_EQ(bytes[0], number);
        EXPECT_EQ(bytes[kSlab - 1], number);
        zmr::SlabSource::System().give_back(slabs[static_cast<std::size_t>(number)]);
    }
}

TEST(ObjectPool, EverySize_AlignedAsItsTypesMayBe)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    for (std::size_t size = 1; size <= zmr::ObjectPool::kLargest; ++size) {
        const std::size_t rounded = (size + 7) / 8 * 8;
        const std::size_t alignment = std::min<std::size_t>(rounded & (~rounded + 1), 64);
        for (void* block : allocate(pool, size, 3)) {
            EXPECT_EQ(address(block) % alignment, 0U) << size;
            pool.free(block);
        }
    }
}

TEST(ObjectPool, EverySize_NoBlockReachesIntoAnother)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    std::vector<Filled> blocks;
    for (std::size_t size = 1; size <= zmr::ObjectPool::kLargest; ++size) {
        for (int number = 0; number < 600; ++number)
            blocks.push_back(filled(pool, size, static_cast<unsigned char>(blocks.size())));
    }

    EXPECT_TRUE(std::all_of(blocks.begin(), blocks.end(), is_whole));
    for (const Filled& block : blocks)
        pool.free(block.bytes);
    pool.give_back();
    EXPECT_EQ(source.out(), 0U);
}

TEST(ObjectPool, FreshBlocks_StandSideBySideInTheOrderOfTheirAddresses)
{
    CountingSource source;
    zmr::ObjectPool pool(source);

    const Blocks blocks = allocate(pool, 64, 5000);

    int side_by_side = 0;
    for (std::size_t number = 1; number < blocks.size(); ++number) {
        if (address(blocks[number]) / kSlab != address(blocks[number - 1]) / kSlab)
            continue;
        EXPECT_EQ(address(blocks[number]) - address(blocks[number - 1]), 64U);
        ++side_by_side;
    }
    EXPECT_GE(side_by_side, 4990);
    EXPECT_LE(source.out(), 6U);
    free_all(pool, blocks);
}

TEST(ObjectPool, FreedBlocks_ComeAgainLastInFirstOut)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    Blocks blocks = allocate(pool, 72, 10);

    free_all(pool, {blocks[3], blocks[7], blocks[5]});

    EXPECT_EQ(pool.allocate(70), blocks[5]);
    EXPECT_EQ(pool.allocate(72), blocks[7]);
    EXPECT_EQ(pool.allocate(65), blocks[3]);
    free_all(pool, blocks);
}

TEST(ObjectPool, FullSlabsThatGetRoom_AreFilledBeforeMoreAreAskedFor)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    Blocks blocks = allocate(pool, 128, 4000);
    const std::size_t slabs = source.out();
    std::shuffle(blocks.begin(), blocks.end(), std::mt19937(3));

    for (int turn = 0; turn < 20; ++turn) {
        free_all(pool, Blocks(blocks.begin(), blocks.begin() + 2000));
        blocks.erase(blocks.begin(), blocks.begin() + 2000);
        const Blocks again = allocate(pool, 128, 2000);
        blocks.insert(blocks.end(), again.begin(), again.end());
        std::shuffle(blocks.begin(), blocks.end(), std::mt19937(static_cast<unsigned>(turn)));
    }

    EXPECT_EQ(source.out(), slabs);
    EXPECT_EQ(std::set<void*>(blocks.begin(), blocks.end()).size(), 4000U);
    free_all(pool, blocks);
}

TEST(ObjectPool, SlabsWithoutABlockInUse_ServeOtherSizes)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    free_all(pool, allocate(pool, 64, 10'000));
    const std::size_t slabs = source.out();

    for (const std::size_t size : {256U, 8U, 40U, 200U})
        free_all(pool, allocate(pool, size, static_cast<int>(500'000 / size)));

    EXPECT_LE(source.out(), slabs + 4);  // each size keeps the slab that it served from last
}

TEST(ObjectPool, SourceHasNoMoreAndNoHandler_ThrowsAndGoesOnWithWhatThereIs)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    const HandlerKept kept(nullptr);
    source.set_limit(2);
    Blocks blocks;
    EXPECT_THROW(for (;;) blocks.push_back(pool.allocate(64)), std::bad_alloc);
    EXPECT_GT(blocks.size(), 2000U);
    EXPECT_THROW(static_cast<void>(pool.allocate(8)), std::bad_alloc);

    pool.free(blocks.front());
    EXPECT_EQ(pool.allocate(64), blocks.front());
    EXPECT_THROW(static_cast<void>(pool.allocate(64)), std::bad_alloc);
    source.set_limit(3);
    blocks.push_back(pool.allocate(64));
    free_all(pool, blocks);
    pool.give_back();
    EXPECT_EQ(source.out(), 0U);
}

TEST(ObjectPool, SourceHasNoMore_HandlerIsAskedUntilItHelps)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    g_starved = &source;
    g_asked = 0;
    source.set_limit(0);
    const HandlerKept kept([] {
        if (++g_asked == 3)
            g_starved->set_limit(1);
    });

    void* const block = pool.allocate(16);

    EXPECT_EQ(g_asked, 3);
    pool.free(block);
}

TEST(ObjectPool, HandlerThrows_ThatComesOutAndThePoolIsWhole)
{
    struct GaveUp {};
    CountingSource source;
    zmr::ObjectPool pool(source);
    source.set_limit(0);
    const HandlerKept kept([] { throw GaveUp(); });
    EXPECT_THROW(static_cast<void>(pool.allocate(16)), GaveUp);
    std::thread([&] { EXPECT_THROW(static_cast<void>(pool.allocate(16)), GaveUp); }).join();

    source.set_limit(2);
    pool.free(pool.allocate(16));
    std::thread([&] { pool.free(pool.allocate(16)); }).join();
}

TEST(ObjectPool, OwnersBlocksFreedByOtherThreads_ServeTheOwnerAgain)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    std::size_t slabs = 0;
    for (int turn = 0; turn < 20; ++turn) {
        const Blocks blocks = allocate(pool, 64, 8000);
        slabs = turn == 0 ? source.out() : slabs;
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([&, thread] {
                free_all(pool, Blocks(blocks.begin() + 2000 * thread,
                                      blocks.begin() + 2000 * (thread + 1)));
            });
        for (std::thread& thread : threads)
            thread.join();
    }

    EXPECT_EQ(source.out(), slabs);
    pool.give_back();
    EXPECT_EQ(source.out(), 0U);
}

TEST(ObjectPool, OtherThreadsBlocksFreedByTheOwner_ServeTheOthersAgain)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    std::size_t slabs = 0;
    for (int turn = 0; turn < 20; ++turn) {
        Blocks blocks;
        std::thread([&] { blocks = allocate(pool, 64, 8000); }).join();
        slabs = turn == 0 ? source.out() : slabs;
        free_all(pool, blocks);
    }

    EXPECT_EQ(source.out(), slabs);
    pool.give_back();
    EXPECT_EQ(source.out(), 0U);
}

TEST(ObjectPool, ThreadsThatHandBlocksRound_FindThemWhole)
{
    constexpr std::size_t kThreads = 4;
    constexpr int kSteps = 20'000;
    struct Basket {
        std::mutex mutex;
        std::vector<Filled> blocks;
    };
    CountingSource source;
    zmr::ObjectPool pool(source);
    std::array<Basket, kThreads> baskets;
    std::atomic<int> broken = 0;
    const auto work = [&](std::size_t own) {
        std::mt19937 random(static_cast<unsigned>(own));
        for (int step = 0; step < kSteps; ++step) {
            const std::size_t size = 1 + random() % zmr::ObjectPool::kLargest;
            const Filled made = filled(pool, size, static_cast<unsigned char>(random()));
            Filled taken;
            {
                Basket& basket = baskets[random() % kThreads];
                const std::lock_guard lock(basket.mutex);
                basket.blocks.push_back(made);
                std::swap(basket.blocks.back(), basket.blocks[random() % basket.blocks.size()]);
                if (basket.blocks.size() > 100) {
                    taken = basket.blocks.back();
                    basket.blocks.pop_back();
                }
            }
            if (taken.bytes == nullptr)
                continue;
            broken += is_whole(taken) ? 0 : 1;
            pool.free(taken.bytes);
        }
    };

    std::vector<std::thread> threads;
    for (std::size_t thread = 1; thread < kThreads; ++thread)
        threads.emplace_back(work, thread);
    work(0);  // the owner's part
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(broken, 0);
    for (const Basket& basket : baskets) {
        EXPECT_TRUE(std::all_of(basket.blocks.begin(), basket.blocks.end(), is_whole));
        for (const Filled& block : basket.blocks)
            pool.free(block.bytes);
    }
    pool.give_back();
    EXPECT_EQ(source.out(), 0U);
}

TEST(ObjectPool, RandomWalk_BlocksStayWholeAndMemoryIsBounded)
{
    std::mt19937 random(17);
    CountingSource source;
    zmr::ObjectPool pool(source);
    std::vector<Filled> blocks;
    std::size_t most = 0;
    for (int step = 0; step < 200'000; ++step) {
        const unsigned wave = step / 20'000 % 2 == 0 ? 70 : 30;
        if (blocks.empty() || random() % 100 < wave) {
            // Few sizes at a time, so that slabs fill, empty, and change their size.
            const std::size_t size = 1 + (random() % 4 + static_cast<unsigned>(step) / 1000) * 16 %
                                             zmr::ObjectPool::kLargest;
            blocks.push_back(filled(pool, size, static_cast<unsigned char>(random())));
        } else {
            std::swap(blocks.back(), blocks[random() % blocks.size()]);
            ASSERT_TRUE(is_whole(blocks.back())) << step;
            pool.free(blocks.back().bytes);
            blocks.pop_back();
        }
        most = std::max(most, blocks.size());
    }

    // All of the largest size would be this many slabs; each size can hold a few in part.
    EXPECT_LE(source.out(), most * zmr::ObjectPool::kLargest / kSlab + 2 * 32);
    EXPECT_TRUE(std::all_of(blocks.begin(), blocks.end(), is_whole));
    for (const Filled& block : blocks)
        pool.free(block.bytes);
    pool.give_back();
    EXPECT_EQ(source.out(), 0U);
}

TEST(ObjectPool, GiveBackWithABlockInUse_KeepsItsSlabAlone)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    const Blocks blocks = allocate(pool, 64, 5000);
    const Filled kept = filled(pool, 40, 7);
    free_all(pool, Blocks(blocks.begin() + 1, blocks.end()));

    pool.give_back();

    EXPECT_EQ(source.out(), 2U);
    EXPECT_TRUE(is_whole(kept));
    pool.free(kept.bytes);
    pool.free(blocks.front());
    pool.give_back();
    EXPECT_EQ(source.out(), 0U);
    pool.free(pool.allocate(64));  // it goes on working
    EXPECT_EQ(source.out(), 1U);
}

TEST(ObjectPool, FreeIfOwn_KnowsWhatItsThreadHasTaken)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    const Blocks blocks = allocate(pool, 64, 3000);
    const auto foreign = std::make_unique<std::array<char, 64>>();

    EXPECT_FALSE(pool.free_if_own(foreign.get()));
    for (void* block : blocks)
        EXPECT_TRUE(pool.free_if_own(block));
    std::thread([&] {
        void* const block = pool.allocate(40);
        EXPECT_FALSE(pool.free_if_own(foreign.get()));
        EXPECT_TRUE(pool.free_if_own(block));
    }).join();
    pool.give_back();
    EXPECT_EQ(source.out(), 0U);
    EXPECT_FALSE(pool.free_if_own(blocks.front()));
}

TEST(ObjectPool, GiveBackOnAThreadThatIsNotTheOwner_LeavesTheOwnersSlabs)
{
    CountingSource source;
    zmr::ObjectPool pool(source);
    pool.free(pool.allocate(64));
    std::thread([&] { pool.free(pool.allocate(64)); }).join();
    EXPECT_EQ(source.out(), 2U);

    std::thread([&] { pool.give_back(); }).join();

    EXPECT_EQ(source.out(), 1U);
}
