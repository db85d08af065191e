#include "store/BlockLoader.h"

#include <utility>

namespace zmr {

std::shared_ptr<const IndexBlock> BlockLoader::load(const BlockRef& block, IndexBlock::Kind kind,
                                                    ReadOutcome& outcome)
{
    outcome = ReadOutcome::Good;
    const auto place = places_.find(block.position);
    if (place != places_.end()) {
        // A place may have been written anew since; the checksum tells.
        if (place->second->checksum == block.checksum &&
            place->second->block->bytes() == block.length) {
            order_.splice(order_.begin(), order_, place->second);
            return place->second->block;
        }
        bytes_ -= place->second->block->bytes();
        order_.erase(place->second);
        places_.erase(place);
    }
    std::string bytes;
    outcome = storage_.read_checked(block.position, block.length, block.checksum, bytes);
    if (outcome != ReadOutcome::Good)
        return nullptr;
    auto loaded = IndexBlock::Make(std::move(bytes), kind, block.position, storage_.end());
    if (loaded == nullptr) {
        outcome = ReadOutcome::Damaged;
        return nullptr;
    }
    order_.push_front({block.position, block.checksum, loaded});
    places_[block.position] = order_.begin();
    bytes_ += loaded->bytes();
    while (bytes_ > kCacheBytes && order_.size() > 1) {
        bytes_ -= order_.back().block->bytes();
        places_.erase(order_.back().position);
        order_.pop_back();
    }
    return loaded;
}

std::string BlockLoader::read_bytes(const BlockRef& block, ReadOutcome& outcome) const
{
    std::string bytes;
    outcome = storage_.read_checked(block.position, block.length, block.checksum, bytes);
    return bytes;
}

void BlockLoader::clear()
{
    order_.clear();
    places_.clear();
    bytes_ = 0;
}

}  // namespace zmr
