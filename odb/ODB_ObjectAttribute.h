#pragma once

#include "foundation/GStreamable.h"
#include "store/GResourceFullName.h"

class ObjectDatabase;
class ODB_Mediator;

/// A piece of extra data that belongs to an entry of a database and is no part of its object. It
/// lies in a resource of its own, under the entry's name, with the attribute's class name as the
/// type.
class ZMR_GV_API ODB_ObjectAttribute : public GStreamable {
    G_DECLARE_CLASS(ODB_ObjectAttribute)

public:
    ODB_ObjectAttribute() = default;
    ODB_ObjectAttribute(const ODB_ObjectAttribute&) = default;
    ODB_ObjectAttribute& operator=(const ODB_ObjectAttribute&) = default;

    void read(ipstream& in) override;
    void write(opstream& out) override;
    /// Writes the attribute back to its entry, which must be set. Nobody is notified.
    virtual void modified();

    /// The entry that it belongs to; null until it is given one.
    [[nodiscard]] ODB_Mediator* get_mediator() const { return mediator_; }
    /// The entry's database; the entry must be set.
    [[nodiscard]] ObjectDatabase* get_DB() const;
    /// The name of this attribute's resource.
    void get_DB_resname(GResourceFullName& name) const;

protected:
    virtual void set_mediator(ODB_Mediator* mediator);

private:
    friend class ODB_Mediator;
    ODB_Mediator* mediator_ = nullptr;
};
