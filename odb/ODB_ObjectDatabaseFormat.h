#pragma once

#include "foundation/GObjectFileFormat.h"

/// Gives a whole library file as one object, an open ObjectDatabase, through a place. It is not
/// among the registered formats: a place is given it by name (ODB_ExternalObject::
/// ObjectDatabaseFormat). Any thread that may open databases.
class ZMR_GV_API ODB_ObjectDatabaseFormat : public GObjectFileFormat {
public:
    /// Always 0: a library is not written as one object.
    unsigned char write_object(const char* file, GStreamable* object) const override;
    /// The database, opened for writing, which the caller owns. Null when the file is no library or
    /// can't be opened so.
    GStreamable* read_object(const char* file) const override;
    GString read_object_class_name(const char* file) override;
};
