#pragma once

#include "odb/ODB_Mediator.h"
#include "store/GObjectPlace.h"

class ODB_ObjectDatabaseFormat;

/// The mediator of an object that lives in a file of its own. The database keeps that file's name
/// relative to its own directory, so that both can move together. Files without a name of the
/// caller's get a made-up one in the directory "LOBJS" beside the database (docs/object-file.md).
///
/// A missing file costs its object only: get_object gives null, all else of the entry stays. An
/// object file is replaced in one step, and goes only after the commit that removes its entry.
class ZMR_GV_API ODB_ExternalObject : public ODB_Mediator {
    G_DECLARE_CLASS(ODB_ExternalObject)

public:
    /// Takes a copy of the place.
    explicit ODB_ExternalObject(const GObjectPlace& place);
    /// `file` is a full name, or relative to the database's directory; null lets one be made up
    /// when the object is stored.
    explicit ODB_ExternalObject(const char* file);

    void read(ipstream& in) override;
    /// Detached, the name is written as it is: full, or as it was given.
    void write(opstream& out) override;
    [[nodiscard]] GStreamable* get_object() override;

    /// Where the object is; empty until the mediator was first attached to a database.
    [[nodiscard]] GObjectPlace get_place() const { return place_; }
    /// The object's file; empty when it is not yet known or the place is no file.
    [[nodiscard]] GFile get_filename() const;
    /// The same, relative to the database's directory when it lies in it. Full when detached.
    [[nodiscard]] GFile relative_filename() const;
    /// The database's file; empty when detached.
    [[nodiscard]] GFile get_DB_filename() const;

    /// Resolves a name that was read or given to the constructor against the database's. Done
    /// already when it was attached before.
    void convert_filename();
    /// Gives the object a new file, unless that of `source` can be used and `force` is false; then
    /// nothing changes.
    void make_filename(const GObjectPlace& source, bool force);
    /// Gives the object a file that does not exist. It has the name of `source` only when even its
    /// directory had to be made; else it is made up, in "LOBJS", or beside the database when that
    /// can't be made.
    void make_unique_filename(const GObjectPlace& source);

    /// The format that opens a whole library file as one object.
    [[nodiscard]] static const ODB_ObjectDatabaseFormat& ObjectDatabaseFormat();

protected:
    ~ODB_ExternalObject() override;

    /// Writes to the place if it is a file that can be used, else to a new one. A null object takes
    /// the class of what is there. Writes nothing when the library can't be written.
    void store_object(const GStreamable* object) override;
    void remove_object() override;
    /// Copies into a new file: two mediators never come to share one by copying.
    void copy_object_from(ODB_Mediator& source) override;
    [[nodiscard]] bool equals(const ODB_Mediator& other) const override;
    void set_DB(ObjectDatabase* database) override;

private:
    explicit ODB_ExternalObject(StreamableInit) {}
    /// False when the library can't be written: then no file of its objects is touched either.
    [[nodiscard]] bool may_write() const;
    void give_up_place(const GObjectPlace& place);

    GObjectPlace place_;
    GFile pending_filename_;  ///< A name not yet resolved; empty afterwards.
};
