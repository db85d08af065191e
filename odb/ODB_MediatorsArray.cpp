#include "odb/ODB_MediatorsArray.h"

#include "odb/ODB_ContentsFilter.h"
#include "odb/ODB_Mediator.h"

#include <algorithm>
#include <cassert>
#include <cstring>

G_DEFINE_CLASS(ODB_MediatorsArray, GSortedCollection);

ODB_MediatorsArray::ODB_MediatorsArray() : GSortedCollection(0, 16, 0)
{
    duplicates = true;
}

ODB_MediatorsArray::ODB_MediatorsArray(const ODB_MediatorsArray& other) : ODB_MediatorsArray()
{
    *this = other;
}

ODB_MediatorsArray& ODB_MediatorsArray::operator=(const ODB_MediatorsArray& other)
{
    if (this == &other)
        return *this;
    empty();
    for (long i = 0; i < other.count; ++i)
        v_at_insert(i, other.items[i]);
    return *this;
}

ODB_MediatorsArray::~ODB_MediatorsArray()
{
    empty();
}

const void* ODB_MediatorsArray::keyOf(const void* item) const
{
    return static_cast<const ODB_Mediator*>(item)->get_DB_key().text;
}

int ODB_MediatorsArray::compare(const void* key1, const void* key2) const
{
    return std::strcmp(static_cast<const char*>(key1), static_cast<const char*>(key2));
}

void ODB_MediatorsArray::freeItem(void* item)
{
    GStreamable* const mediator = static_cast<ODB_Mediator*>(item);
    delete mediator;
}

ODB_Mediator& ODB_MediatorsArray::at(long index) const
{
    assert(index >= 0 && index < count);
    return *static_cast<ODB_Mediator*>(items[index]);
}

void ODB_MediatorsArray::at_remove(long index)
{
    v_at_remove(index);
}

void ODB_MediatorsArray::insert_all(std::vector<ODB_Mediator*> mediators)
{
    const auto before = [this](const void* a, const void* b) {
        return compare(keyOf(a), keyOf(b)) < 0;
    };
    std::stable_sort(mediators.begin(), mediators.end(), before);
    std::vector<void*> merged(static_cast<std::size_t>(count) + mediators.size());
    std::merge(items, items + count, mediators.begin(), mediators.end(), merged.begin(), before);
    v_at_remove_range(0, count);
    v_at_insert_range(0, merged.data(), static_cast<long>(merged.size()));
}

long ODB_MediatorsArray::find(const GString& key) const
{
    long index = 0;
    return search(key.text, index) ? index : -1;
}

void ODB_MediatorsArray::get_names(GStringCollection& result) const
{
    result.empty();
    result.owns_items = 1;
    for (long i = 0; i < count; ++i)
        result.v_at_insert(i, gnewstr(at(i).get_DB_key().text));
}

void ODB_MediatorsArray::apply_filter(const ODB_ContentsFilter& filter)
{
    auto& asked = const_cast<ODB_ContentsFilter&>(filter);  // hosts override `accept` without const
    long kept = count;  // from here on lie the wanted ones; what is between was refused
    long next = count - 1;
    try {
        for (; next >= 0; --next) {
            if (asked.accept(at(next)) != 0)
                items[--kept] = items[next];
        }
    } catch (...) {
        v_at_remove_range(next + 1, kept - next - 1);
        throw;
    }
    v_at_remove_range(0, kept);
}
