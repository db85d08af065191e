#include "graphics/PaletteCollection.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <memory>
#include <vector>

G_DEFINE_CLASS(PaletteCollection, GSortedCollection);

PaletteCollection::PaletteCollection(const PaletteCollection& other)
    : GSortedCollection(other.count, 4, 1)
{
    copy_entries(other);
}

PaletteCollection& PaletteCollection::operator=(const PaletteCollection& other)
{
    if (this == &other)
        return *this;
    empty();
    copy_entries(other);
    return *this;
}

PaletteCollection::~PaletteCollection()
{
    empty();  // the base would free by its own rule
}

void PaletteCollection::add_entry(long index, const RGB_Color& color)
{
    const long position = find_color(index);
    if (position >= 0) {
        static_cast<Entry*>(items[position])->color = color;
        return;
    }
    auto entry = std::make_unique<Entry>(Entry{static_cast<std::int32_t>(index), color});
    v_insert(entry.get());
    static_cast<void>(entry.release());
}

long PaletteCollection::find_color(long index) const
{
    const auto key = static_cast<std::int32_t>(index);
    long position = 0;
    return search(&key, position) ? position : -1;
}

const void* PaletteCollection::keyOf(const void* item) const
{
    return &static_cast<const Entry*>(item)->index;
}

int PaletteCollection::compare(const void* key1, const void* key2) const
{
    const std::int32_t index1 = *static_cast<const std::int32_t*>(key1);
    const std::int32_t index2 = *static_cast<const std::int32_t*>(key2);
    return (index1 > index2) - (index1 < index2);
}

void PaletteCollection::freeItem(void* item)
{
    delete static_cast<Entry*>(item);
}

void PaletteCollection::write_item(void* item, opstream& out)
{
    const Entry* entry = static_cast<const Entry*>(item);
    out << entry->index;
    out.writeByte(entry->color.blue);
    out.writeByte(entry->color.green);
    out.writeByte(entry->color.red);
}

void* PaletteCollection::read_item(ipstream& in)
{
    auto entry = std::make_unique<Entry>();
    in >> entry->index;
    entry->color.blue = in.readByte();
    entry->color.green = in.readByte();
    entry->color.red = in.readByte();
    return entry.release();
}

void PaletteCollection::read(ipstream& in)
{
    try {
        GSortedCollection::read(in);
    } catch (...) {
        owns_items = 1;
        throw;
    }
    owns_items = 1;  // whatever the data says: nobody else knows the entries
    // Searching needs ascending indices, and the stream may hold any.
    std::vector<Entry> entries;
    for (long position = 0; position < count; ++position)
        if (const Entry* entry = at(position))
            entries.push_back(*entry);
    empty();
    for (const Entry& entry : entries)
        add_entry(entry.index, entry.color);
}

void PaletteCollection::copy_entries(const PaletteCollection& other)
{
    for (long position = 0; position < other.count; ++position)
        add_entry(other.at(position)->index, other.at(position)->color);
}
