#pragma once

#include "foundation/GFile.h"
#include "odb/ODB_Mediator.h"

#include <memory>

/// The mediator of an entry that stands for an object of another entry, in this library or another
/// one. Object and icon are those of the host: the mediator that is no reference at the end of all
/// references. Attributes are its own. A reference whose host is gone gives null for both and keeps
/// its class name.
///
/// While attached it holds the other library open for reading; references of one library share that
/// client. The other library is only written, when an icon is set through the reference.
class ZMR_GV_API ODB_ReferenceToObject : public ODB_Mediator {
    G_DECLARE_CLASS(ODB_ReferenceToObject)

public:
    /// A walk along references ends after as many: longer chains, and circles, have no host.
    static constexpr int kMostSteps = 256;

    /// `file` is the other library's; it is made a full name. When it turns out, on attaching, to
    /// be the library that holds the reference, the name is dropped.
    ODB_ReferenceToObject(const char* file, const GResourceFullName& target);
    ODB_ReferenceToObject(const ObjectDatabase& database, const GResourceFullName& target);
    /// The copy holds the other library open by a client of its own.
    ODB_ReferenceToObject(const ODB_ReferenceToObject& other);
    ODB_ReferenceToObject& operator=(const ODB_ReferenceToObject& other);

    void read(ipstream& in) override;
    void write(opstream& out) override;

    /// Loads the host's object under the lock of the host's library; call it with the lock of no
    /// other held.
    [[nodiscard]] GStreamable* get_object() override;
    using ODB_Mediator::set_icon;
    /// Sets the host's icon; without a host the map is freed.
    void set_icon(PixelMap* map) override;
    [[nodiscard]] const PixelMap* get_icon() const override;
    void unload_icon() override;
    [[nodiscard]] bool has_icon() const override;

    /// The file of the library that the target lies in; empty when that is this library and the
    /// reference is detached.
    [[nodiscard]] GFile get_referenced_DB_filename() const;
    [[nodiscard]] const GResourceFullName& get_referenced_object_resname() const
    {
        return referenced_object_resname_;
    }

protected:
    ODB_ReferenceToObject();
    ~ODB_ReferenceToObject() override;

    /// Takes the host's class; the object is not written anywhere.
    void store_object(const GStreamable* object) override;
    /// Opens the other library. A reference to a reference into a third one is made to point
    /// straight at the host.
    void set_DB(ObjectDatabase* database) override;

private:
    [[nodiscard]] ODB_Mediator* get_host_mediator() const;
    [[nodiscard]] ODB_Mediator* referenced_mediator() const;
    [[nodiscard]] ODB_Mediator* host_to_write() const;
    void open_referenced_DB();
    void point_at_host();

    std::shared_ptr<ObjectDatabase> referenced_DB_;  ///< Open while attached, if it is another.
    GFile referenced_DB_filename_;                   ///< Empty within one library.
    GResourceFullName referenced_object_resname_;
    bool in_same_DB_ = false;
};
