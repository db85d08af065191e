#include "StoredText.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

G_DEFINE_CLASS(StoredText, GStreamable);

std::atomic<int> StoredText::alive = 0;

void StoredText::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    GStreamable::read(in);
    in >> text;
}

void StoredText::write(opstream& out)
{
    out.writeByte(0);
    GStreamable::write(out);
    out << text;
}
