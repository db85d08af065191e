#include "scene_editor/core/IconCache.h"

#include <algorithm>

namespace editor {

void IconCache::clear()
{
    *this = IconCache(slots_);
}

int IconCache::find(std::uint32_t row)
{
    const auto found = places_.find(row);
    if (found == places_.end())
        return kNotLoaded;
    if (found->second.slot != kNoIcon)
        used_.splice(used_.begin(), used_, found->second.used);
    return found->second.slot;
}

int IconCache::store(std::uint32_t row)
{
    const auto found = places_.find(row);
    if (found != places_.end() && found->second.slot != kNoIcon)
        return found->second.slot;

    int slot = 0;
    if (!free_.empty()) {
        slot = free_.back();
        free_.pop_back();
    } else if (taken_ < slots_) {
        slot = taken_++;
    } else {
        const std::uint32_t oldest = used_.back();
        slot = places_.at(oldest).slot;
        places_.erase(oldest);
        used_.pop_back();
    }
    used_.push_front(row);
    places_.insert_or_assign(row, Place{slot, used_.begin()});
    return slot;
}

void IconCache::store_none(std::uint32_t row)
{
    forget(row);
    places_.insert_or_assign(row, Place{kNoIcon, used_.end()});
}

void IconCache::forget(std::uint32_t row)
{
    const auto found = places_.find(row);
    if (found == places_.end())
        return;
    if (found->second.slot != kNoIcon) {
        free_.push_back(found->second.slot);
        used_.erase(found->second.used);
    }
    places_.erase(found);
}

std::vector<std::uint32_t> rows_around(const std::vector<std::uint32_t>& shown, std::size_t first,
                                       std::size_t count)
{
    std::vector<std::uint32_t> rows;
    const auto add = [&](std::size_t from, std::size_t to) {
        const auto place = [&](std::size_t at) {
            return shown.begin() + static_cast<std::ptrdiff_t>(at);
        };
        rows.insert(rows.end(), place(from), place(to));
    };
    const std::size_t begin = std::min(first, shown.size());
    const std::size_t end = begin + std::min(count, shown.size() - begin);
    add(begin, end);
    add(end, end + std::min(count, shown.size() - end));
    add(begin - std::min(count, begin), begin);
    return rows;
}

}  // namespace editor
