#include "odb/ODB_AttributesArray.h"

#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "odb/ODB_UnknownAttribute.h"

#include <cassert>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

G_DEFINE_CLASS(ODB_AttributesArray, GSortedCollection);

namespace {

/// One block: a complete little stream with the attribute in it. An attribute of an unknown class
/// is kept as the bytes of the block. Null for an object that is no attribute.
std::unique_ptr<ODB_ObjectAttribute> read_attribute(ipstream& in)
{
    const auto size = static_cast<std::uint32_t>(in.readDWord());
    std::unique_ptr<unsigned char[]> block = in.read_block(size);
    try {
        impstream content(std::span<const unsigned char>(block.get(), size));
        return std::unique_ptr<ODB_ObjectAttribute>(content.read_pointer<ODB_ObjectAttribute>());
    } catch (const UnknownStreamableType_Exception&) {
        return std::make_unique<ODB_UnknownAttribute>(block.release(), static_cast<long>(size));
    }
}

}  // namespace

ODB_AttributesArray::ODB_AttributesArray() : GSortedCollection(0, 2, 0) {}

void ODB_AttributesArray::read(ipstream& in)
{
    empty();
    static_cast<void>(in.readByte());
    const auto stored = static_cast<std::uint32_t>(in.readDWord());
    std::vector<std::unique_ptr<ODB_ObjectAttribute>> attributes;  // freed when a later one fails
    for (std::uint32_t i = 0; i < stored; ++i) {
        if (std::unique_ptr<ODB_ObjectAttribute> attribute = read_attribute(in))
            attributes.push_back(std::move(attribute));
    }
    setLimit(static_cast<long>(attributes.size()));
    for (std::unique_ptr<ODB_ObjectAttribute>& attribute : attributes)
        v_at_insert(count, attribute.release());
}

void ODB_AttributesArray::write(opstream& out)
{
    out.writeByte(0);
    out.writeDWord(static_cast<std::uint32_t>(count));
    for (long i = 0; i < count; ++i) {
        ODB_ObjectAttribute& attribute = at(i);
        if (attribute.hasTheSameClassAs(&ODB_UnknownAttribute::metaclass_)) {
            const auto& unknown = static_cast<const ODB_UnknownAttribute&>(attribute);
            out.writeDWord(static_cast<std::uint32_t>(unknown.get_size()));
            out.writeBytes(unknown.get_content(), unknown.get_size());
            continue;
        }
        ompstream block;
        block.writeStreamablePointer(&attribute, false);
        out.writeDWord(static_cast<std::uint32_t>(block.tellp()));
        out.writeBytes(block.data(), block.tellp());
    }
}

const void* ODB_AttributesArray::keyOf(const void* item) const
{
    return static_cast<const ODB_ObjectAttribute*>(item)->getMetaClass();
}

int ODB_AttributesArray::compare(const void* key1, const void* key2) const
{
    if (key1 == key2)
        return 0;
    return std::less<const void*>()(key1, key2) ? -1 : 1;
}

ODB_ObjectAttribute& ODB_AttributesArray::at(long index) const
{
    assert(index >= 0 && index < count);
    return *static_cast<ODB_ObjectAttribute*>(items[index]);
}
