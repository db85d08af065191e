#include "tests/foundation/CountedItem.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

G_DEFINE_CLASS(CountedItem, GStreamable);

void CountedItem::read(ipstream& in)
{
    GStreamable::read(in);
    number = static_cast<std::int32_t>(in.readDWord());
}

void CountedItem::write(opstream& out)
{
    GStreamable::write(out);
    out.writeDWord(static_cast<std::uint32_t>(number));
}
