#include "foundation/GVoidPtrSortedArrayPrim.h"

#include "foundation/HeapBlock.h"

#include <cstring>
#include <functional>
#include <utility>

namespace {

std::size_t bytes_of(long count)
{
    return static_cast<std::size_t>(count) * sizeof(void*);
}

}  // namespace

GVoidPtrSortedArrayPrim::GVoidPtrSortedArrayPrim(const GVoidPtrSortedArrayPrim& other)
{
    if (other.count == 0)
        return;
    items = static_cast<const void**>(zmr::allocate_block(bytes_of(other.count)));
    std::memcpy(items, other.items, bytes_of(other.count));
    count = limit_ = other.count;
}

GVoidPtrSortedArrayPrim& GVoidPtrSortedArrayPrim::operator=(const GVoidPtrSortedArrayPrim& other)
{
    GVoidPtrSortedArrayPrim copied(other);
    std::swap(items, copied.items);
    std::swap(count, copied.count);
    std::swap(limit_, copied.limit_);
    return *this;
}

GVoidPtrSortedArrayPrim::~GVoidPtrSortedArrayPrim()
{
    zmr::free_block(items);
}

long GVoidPtrSortedArrayPrim::insert_item(const void* item)
{
    long index = 0;
    if (search(item, index))
        return index;
    if (count == limit_) {
        const long grown = limit_ + (limit_ < 16 ? 16 : limit_ / 2);
        items = static_cast<const void**>(zmr::resize_block(items, bytes_of(grown)));
        limit_ = grown;
    }
    std::memmove(items + index + 1, items + index, bytes_of(count - index));
    items[index] = item;
    ++count;
    return index;
}

long GVoidPtrSortedArrayPrim::index_of(const void* item) const
{
    long index = 0;
    return search(item, index) ? index : -1;
}

void GVoidPtrSortedArrayPrim::at_remove(long index)
{
    if (index < 0 || index >= count)
        return;
    --count;
    std::memmove(items + index, items + index + 1, bytes_of(count - index));
}

int GVoidPtrSortedArrayPrim::compare(const void* item1, const void* item2) const
{
    if (item1 == item2)
        return 0;
    return std::less<>()(item1, item2) ? -1 : 1;
}

bool GVoidPtrSortedArrayPrim::search(const void* item, long& index) const
{
    long low = 0;
    long high = count;
    while (low < high) {
        const long middle = low + (high - low) / 2;
        if (compare(items[middle], item) < 0)
            low = middle + 1;
        else
            high = middle;
    }
    index = low;
    return low < count && compare(items[low], item) == 0;
}
