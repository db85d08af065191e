// Any bytes as a list of attributes. What comes out is written and read again: known attributes
// must be equal, unknown ones the same bytes.
#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "odb/ODB_AttributesArray.h"
#include "odb/ODB_MovieAttribute.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "odb/ODB_UnknownAttribute.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

/// An attribute that owns another one and refers to a third.
class Pair : public ODB_ObjectAttribute {
    G_DECLARE_CLASS(Pair)

public:
    Pair() { ++alive; }
    ~Pair() override
    {
        GStreamable::destroy(owned_);
        --alive;
    }
    void read(ipstream& in) override
    {
        ODB_ObjectAttribute::read(in);
        owned_ = in.read_owned<ODB_ObjectAttribute>();
    }
    void write(opstream& out) override
    {
        ODB_ObjectAttribute::write(out);
        out.writePointer(owned_);
    }
    static inline int alive = 0;

private:
    ODB_ObjectAttribute* owned_ = nullptr;
};
G_DEFINE_CLASS(Pair, ODB_ObjectAttribute);

using Bytes = std::vector<unsigned char>;

bool read_array(std::span<const unsigned char> bytes, ODB_AttributesArray& array)
{
    array.owns_items = 1;
    impstream in(bytes);
    try {
        array.read(in);
    } catch (const GException&) {
        return false;
    }
    return true;
}

Bytes written(ODB_AttributesArray& array)
{
    ompstream out;
    array.write(out);
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

void check_same(ODB_AttributesArray& a, ODB_AttributesArray& b)
{
    if (a.count != b.count)
        std::abort();
    for (long i = 0; i < a.count; ++i) {
        ODB_ObjectAttribute& first = a.at(i);
        ODB_ObjectAttribute& second = b.at(i);
        if (first.getMetaClass() != second.getMetaClass())
            std::abort();
        if (!first.hasTheSameClassAs(&ODB_UnknownAttribute::metaclass_))
            continue;
        const auto& x = static_cast<const ODB_UnknownAttribute&>(first);
        const auto& y = static_cast<const ODB_UnknownAttribute&>(second);
        if (x.get_size() != y.get_size() ||
            (x.get_size() > 0 && std::memcmp(x.get_content(), y.get_content(),
                                             static_cast<std::size_t>(x.get_size())) != 0))
            std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    {
        ODB_AttributesArray array;
        if (read_array({data, size}, array)) {
            const Bytes first = written(array);
            ODB_AttributesArray again;
            if (!read_array(first, again))
                std::abort();  // what was written must be readable
            check_same(array, again);
            if (written(again) != first)
                std::abort();
        } else if (array.count != 0) {
            std::abort();  // nothing comes out of a stream that fails
        }
    }
    if (Pair::alive != 0)
        std::abort();
    return 0;
}
