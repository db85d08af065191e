#pragma once

#include "foundation/GStreamable.h"

/// The record of settings that is kept in a database file.
class ZMR_GV_API ODB_Options : public GStreamable {
    G_DECLARE_CLASS(ODB_Options)

public:
    /// The default mediator is ODB_InternalObject.
    ODB_Options();
    ODB_Options(const ODB_Options&) = default;
    ODB_Options& operator=(const ODB_Options&) = default;

    void read(ipstream& in) override;
    void write(opstream& out) override;

    const GMetaClass* default_mediator;  ///< Null when its class is not registered here.
};
