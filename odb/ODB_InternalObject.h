#pragma once

#include "odb/ODB_Mediator.h"

#include <cstdint>

/// The mediator of an object that is stored in the database's own file: the default.
class ZMR_GV_API ODB_InternalObject : public ODB_Mediator {
    G_DECLARE_CLASS(ODB_InternalObject)

public:
    /// How the place of the object's resource is kept.
    enum Naming : std::int32_t {
        naming_own_place = 0,   ///< The mediator's path and name, default type; follows renames.
        naming_fixed_name = 1,  ///< Name and type are fixed; the path follows the mediator.
        naming_fixed_place = 2  ///< All is fixed: the object may be shared.
    };

    ODB_InternalObject();
    ODB_InternalObject(const GString& name, const GString& type);
    explicit ODB_InternalObject(const GResourceFullName& place);

    void read(ipstream& in) override;
    void write(opstream& out) override;
    [[nodiscard]] GStreamable* clone(bool deep) override;
    [[nodiscard]] GStreamable* get_object() override;

    /// The name of the object's resource as it is now.
    [[nodiscard]] GResourceFullName get_resource_name();
    /// The type of the resource that holds an object, unless another was given.
    [[nodiscard]] static const GString& GetDefaultResourceType();

protected:
    ~ODB_InternalObject() override;

    /// A null object takes the class of what is stored already.
    void store_object(const GStreamable* object) override;
    void remove_object() override;
    void copy_object_from(ODB_Mediator& source) override;

private:
    GResourceFullName resource_name_;
    std::int32_t naming_ = naming_own_place;
};
