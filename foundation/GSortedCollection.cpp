#include "foundation/GSortedCollection.h"

#include "foundation/GException.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <algorithm>
#include <functional>

G_DEFINE_CLASS(GSortedCollection, GCollection);

namespace {

constexpr unsigned char kVersion = 0;

}  // namespace

void GSortedCollection::read(ipstream& in)
{
    const unsigned char version = in.readByte();
    if (version > kVersion)
        throw GStreamException("A sorted collection was written by a newer program.");
    const unsigned char told_duplicates = in.readByte();
    if (told_duplicates > 1)
        throw GStreamException("The head of a sorted collection is damaged.");
    duplicates = told_duplicates != 0;
    GCollection::read(in);
    restore_order();
}

void GSortedCollection::write(opstream& out)
{
    out.writeByte(kVersion);
    out.writeByte(duplicates ? 1 : 0);
    GCollection::write(out);
}

void GSortedCollection::restore_order()
{
    pack();  // a null item has no key
    const auto before = [this](const void* item1, const void* item2) {
        return compare(keyOf(item1), keyOf(item2)) < 0;
    };
    if (!std::is_sorted(items, items + count, before))
        std::stable_sort(items, items + count, before);
}

const void* GSortedCollection::keyOf(const void* item) const
{
    return item;
}

int GSortedCollection::compare(const void* key1, const void* key2) const
{
    if (key1 == key2)
        return 0;
    return std::less<>()(key1, key2) ? -1 : 1;
}

bool GSortedCollection::search(const void* key, long& index) const
{
    long low = 0;
    long high = count;
    while (low < high) {
        const long middle = low + (high - low) / 2;
        if (compare(keyOf(items[middle]), key) < 0)
            low = middle + 1;
        else
            high = middle;
    }
    index = low;
    return low < count && compare(keyOf(items[low]), key) == 0;
}

long GSortedCollection::v_index_of(const void* item) const
{
    long index = 0;
    if (item == nullptr || !search(keyOf(item), index))
        return -1;
    const void* key = keyOf(item);
    for (; index < count; ++index) {
        if (items[index] == item)
            return index;
        if (compare(keyOf(items[index]), key) != 0)
            break;
    }
    return -1;
}

long GSortedCollection::v_insert(void* item)
{
    if (item == nullptr)
        return -1;
    long index = 0;
    if (search(keyOf(item), index)) {
        if (!duplicates)
            return index;
        index = end_of_equals(keyOf(item), index);
    }
    v_at_insert(index, item);
    return index;
}

long GSortedCollection::end_of_equals(const void* key, long first) const
{
    long low = first;
    long high = count;
    while (low < high) {
        const long middle = low + (high - low) / 2;
        if (compare(keyOf(items[middle]), key) <= 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}
