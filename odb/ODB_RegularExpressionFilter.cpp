#include "odb/ODB_RegularExpressionFilter.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "odb/ODB_Mediator.h"

G_DEFINE_CLASS(ODB_RegularExpressionFilter, ODB_ContentsFilter);

void ODB_RegularExpressionFilter::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    in >> expression_;
}

void ODB_RegularExpressionFilter::write(opstream& out)
{
    out.writeByte(0);
    out << expression_;
}

unsigned char ODB_RegularExpressionFilter::accept(const ODB_Mediator& mediator)
{
    return expression_ == mediator.get_DB_key() ? 1 : 0;
}
