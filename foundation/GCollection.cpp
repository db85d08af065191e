#include "foundation/GCollection.h"

#include "foundation/GException.h"
#include "foundation/HeapBlock.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>
#include <vector>

G_DEFINE_CLASS(GCollection, GStreamable);

namespace {

constexpr long kMaxCount = 0x0FFFFFFF;  // 2 GiB of pointers
constexpr unsigned char kVersion = 0;
constexpr unsigned long kMaxReadDelta = 4096;  ///< Of a step of growth that a stream tells.

std::size_t bytes_of(long count)
{
    return static_cast<std::size_t>(count) * sizeof(void*);
}

}  // namespace

GCollection::GCollection(long limit, long delta, unsigned char owns)
    : owns_items(owns), delta_(std::clamp(delta, 1L, kMaxCount))
{
    GCollection::setLimit(limit);
}

GCollection::GCollection(const GCollection& other)
    : GStreamable(other), owns_items(0), delta_(other.delta_)
{
    GCollection::setLimit(other.count);
    GCollection::v_at_insert_range(0, other.items, other.count);
}

GCollection& GCollection::operator=(const GCollection& other)
{
    if (this == &other)
        return *this;
    const std::vector<void*> copied(other.items, other.items + other.count);
    setLimit(other.count);  // before anything is freed: it may throw
    GStreamable::operator=(other);
    empty();
    owns_items = 0;
    delta_ = other.delta_;
    GCollection::v_at_insert_range(0, copied.data(), static_cast<long>(copied.size()));
    return *this;
}

GCollection::~GCollection()
{
    empty();
    zmr::free_block(items);
}

void GCollection::shut_down()
{
    empty();
    GStreamable::shut_down();
}

void GCollection::read(ipstream& in)
{
    const unsigned char version = in.readByte();
    if (version > kVersion)
        throw GStreamException("A collection was written by a newer program.");
    GStreamable::read(in);
    const unsigned char owns = in.readByte();
    if (owns > 1)
        throw GStreamException("The head of a collection is damaged.");
    const unsigned long told_delta = in.readDWord();
    const unsigned long told_count = in.readDWord();
    const long left = in.remaining();
    // An item takes a byte at least.
    if (told_count > static_cast<unsigned long>(kMaxCount) ||
        (left >= 0 && told_count > static_cast<unsigned long>(left)))
        throw GStreamException("A collection has more items than its data can hold.");

    empty();
    owns_items = owns;
    // Memory comes with the items, whatever the data says of steps.
    delta_ = 1;
    // An item that throws leaves the ones before it, which are freed as any other.
    for (unsigned long index = 0; index < told_count; ++index)
        append_item(read_item(in));
    delta_ = static_cast<long>(std::clamp(told_delta, 1UL, kMaxReadDelta));
}

void GCollection::write(opstream& out)
{
    out.writeByte(kVersion);
    GStreamable::write(out);
    out.writeByte(owns_items != 0 ? 1 : 0);
    out.writeDWord(static_cast<unsigned long>(delta_));
    out.writeDWord(static_cast<unsigned long>(count));
    for (long index = 0; index < count; ++index)
        write_item(items[index], out);
}

void GCollection::pack()
{
    count = static_cast<long>(std::remove(items, items + count, nullptr) - items);
}

void GCollection::setLimit(long new_limit)
{
    if (new_limit > kMaxCount)
        throw OutOfMemory_Exception();
    new_limit = std::max(new_limit, count);
    if (new_limit == limit_)
        return;
    if (new_limit == 0) {
        zmr::free_block(std::exchange(items, nullptr));
    } else {
        items = static_cast<void**>(zmr::resize_block(items, bytes_of(new_limit)));
    }
    limit_ = new_limit;
}

void GCollection::make_room(long more)
{
    if (more <= limit_ - count)
        return;
    if (more > kMaxCount - count)
        throw OutOfMemory_Exception();
    // By half at least, so that growing one by one stays linear.
    const long step = std::max(delta_, limit_ / 2);
    setLimit(std::max(count + more, std::min(limit_ + step, kMaxCount)));
}

long GCollection::append_item(void* item)
{
    try {
        make_room(1);
    } catch (...) {
        if (owns_items != 0 && item != nullptr)
            freeItem(item);
        throw;
    }
    items[count] = item;
    return count++;
}

long GCollection::v_index_of(const void* item) const
{
    void* const* found = std::find(items, items + count, item);
    return found == items + count ? -1 : static_cast<long>(found - items);
}

void GCollection::v_at_insert(long index, void* item)
{
    v_at_insert_range(index, &item, 1);
}

void GCollection::v_at_insert_range(long index, void* const* range, long range_count)
{
    if (range == nullptr || range_count <= 0)
        return;
    std::vector<void*> copied;
    if (std::less_equal<>()(items, range) && std::less<>()(range, items + count)) {
        copied.assign(range, range + range_count);  // a part of this very array, which moves
        range = copied.data();
    }
    make_room(range_count);
    index = std::clamp(index, 0L, count);
    void** place = items + index;
    std::memmove(place + range_count, place, bytes_of(count - index));
    std::memcpy(place, range, bytes_of(range_count));
    count += range_count;
}

void GCollection::v_at_put(long index, void* item)
{
    if (index >= 0 && index < count)
        items[index] = item;
}

long GCollection::v_insert(void* item)
{
    v_at_insert(count, item);
    return count - 1;
}

void GCollection::v_at_remove(long index)
{
    v_at_remove_range(index, 1);
}

void GCollection::v_at_remove_range(long index, long range_count)
{
    if (index < 0 || index >= count || range_count <= 0)
        return;
    range_count = std::min(range_count, count - index);
    void** place = items + index;
    std::memmove(place, place + range_count, bytes_of(count - index - range_count));
    count -= range_count;
}

void GCollection::v_remove(void* item)
{
    v_at_remove(v_index_of(item));
}

void GCollection::freeItem(void* item)
{
    GStreamable::destroy(static_cast<GStreamable*>(item));
}

void GCollection::write_item(void* item, opstream& out)
{
    out.writePointer(static_cast<GStreamable*>(item));
}

void* GCollection::read_item(ipstream& in)
{
    auto* item = in.read_pointer<GStreamable>();
    if (owns_items != 0)
        in.claim();
    return item;
}

void GCollection::at_free(long index)
{
    if (index < 0 || index >= count)
        return;
    void* item = items[index];
    v_at_remove(index);
    if (owns_items != 0 && item != nullptr)
        freeItem(item);
}

void GCollection::empty()
{
    // Freeing an item may take others out, or insert some.
    while (count > 0)
        at_free(count - 1);
}
