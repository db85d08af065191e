#include "Chair.h"

#include "foundation/GException.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <cstdint>

// [streaming]
G_DEFINE_CLASS(Chair, GStreamable);

void Chair::write(opstream& out)
{
    out.writeByte(1);  // the version of what follows
    GStreamable::write(out);
    out << wood;
    out.writeDWord(static_cast<std::uint32_t>(legs));
}

void Chair::read(ipstream& in)
{
    const unsigned char version = in.readByte();
    if (version > 1)
        throw GLibraryException("This chair was made by a newer program.");
    GStreamable::read(in);
    in >> wood;
    if (version == 1)
        legs = static_cast<int>(in.readDWord());
}
// [/streaming]
