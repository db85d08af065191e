#include "store/BlockLoader.h"

#include <algorithm>
#include <utility>

namespace zmr {

BlockLoader::Blocks::iterator BlockLoader::find(std::uint64_t position)
{
    return std::lower_bound(
        cached_.begin(), cached_.end(), position,
        [](const Cached& cached, std::uint64_t at) { return cached.position < at; });
}

bool BlockLoader::read(const BlockRef& block, IndexBlock::Kind kind, IndexBlock& into,
                       ReadOutcome& outcome) const
{
    ByteBuffer bytes = into.release();
    outcome = storage_.read_checked(block.position, block.length, block.checksum, bytes);
    if (outcome != ReadOutcome::Good)
        return false;
    if (into.assign(std::move(bytes), kind, block.position, storage_.end()))
        return true;
    outcome = ReadOutcome::Damaged;
    return false;
}

std::shared_ptr<const IndexBlock> BlockLoader::load(const BlockRef& block, IndexBlock::Kind kind,
                                                    ReadOutcome& outcome)
{
    outcome = ReadOutcome::Good;
    auto place = find(block.position);
    if (place != cached_.end() && place->position == block.position) {
        // A place may have been written anew since; the checksum tells.
        if (place->checksum == block.checksum && place->block->bytes() == block.length) {
            place->used = true;
            return place->block;
        }
        bytes_ -= place->block->bytes();
        place = cached_.erase(place);
    }
    const auto loaded = std::make_shared<IndexBlock>();
    if (!read(block, kind, *loaded, outcome))
        return nullptr;
    cached_.insert(place, {block.position, block.checksum, true, loaded});
    bytes_ += loaded->bytes();
    make_room();
    return loaded;
}

void BlockLoader::make_room()
{
    while (bytes_ > kCacheBytes) {
        if (hand_ >= cached_.size())
            hand_ = 0;
        Cached& next = cached_[hand_];
        if (std::exchange(next.used, false)) {
            ++hand_;
            continue;
        }
        bytes_ -= next.block->bytes();
        cached_.erase(cached_.begin() + static_cast<std::ptrdiff_t>(hand_));
    }
}

std::string BlockLoader::read_bytes(const BlockRef& block, ReadOutcome& outcome) const
{
    std::string bytes;
    outcome = storage_.read_checked(block.position, block.length, block.checksum, bytes);
    return bytes;
}

void BlockLoader::clear()
{
    cached_.clear();
    hand_ = 0;
    bytes_ = 0;
}

BlockLoader::Walk::Walk(BlockLoader& loader) : loader_(loader), own_(std::move(loader.walked_))
{
    // A walk inside another finds none and makes its own.
    if (own_ == nullptr)
        own_ = std::make_unique<IndexBlock>();
}

BlockLoader::Walk::~Walk()
{
    if (own_->memory() <= kWalkBytes)
        loader_.walked_ = std::move(own_);
}

const IndexBlock* BlockLoader::Walk::load(const BlockRef& extent)
{
    const auto place = loader_.find(extent.position);
    if (place != loader_.cached_.end() && place->position == extent.position &&
        place->checksum == extent.checksum && place->block->bytes() == extent.length) {
        cached_ = place->block;
        return cached_.get();
    }
    ReadOutcome outcome;
    return loader_.read(extent, IndexBlock::Kind::Extent, *own_, outcome) ? own_.get() : nullptr;
}

}  // namespace zmr
