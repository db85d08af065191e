#pragma once

#include "foundation/GStreamable.h"

class ODB_Mediator;

/// Decides from a mediator alone whether an entry is wanted. Filters are streamable, so that a view
/// can keep what it shows.
class ZMR_GV_API ODB_ContentsFilter : public GStreamable {
    G_DECLARE_CLASS(ODB_ContentsFilter)

public:
    /// Not 0 when the entry is wanted.
    virtual unsigned char accept(const ODB_Mediator& mediator) = 0;
};
