#pragma once

#include "foundation/GStreamable.h"
#include "foundation/GString.h"
#include "store/GResourceFullName.h"

#include <memory>

class ObjectDatabase;
class ODB_AttributesArray;
class ODB_ObjectAttribute;
class PixelMap;

/// What a database keeps loaded for each object, so that the object need not be read: its name, its
/// class, and on demand its icon and attributes, which are resources of their own under the same
/// name. Derived classes decide where the object itself lives.
///
/// Mediators that a database returned belong to the file: callers never delete them. Operations
/// that reach the file need the mediator to be attached to a database. User-interface thread.
class ZMR_GV_API ODB_Mediator : public GStreamable {
    G_DECLARE_CLASS(ODB_Mediator)

public:
    [[nodiscard]] const GString& get_object_class_name() const { return object_class_name_; }
    /// Null when the class is not registered in this process.
    [[nodiscard]] const GMetaClass* get_object_class_identifier() const
    {
        return object_class_identifier_;
    }
    /// The database that it is attached to; null when detached.
    [[nodiscard]] ObjectDatabase* get_DB() const { return DB_; }
    [[nodiscard]] const GResourceFullName& get_DB_resname() const { return DB_resname_; }
    /// The name alone.
    [[nodiscard]] const GString& get_DB_key() const { return DB_resname_.name; }
    /// True when the mediator stands for an object held by another entry; false also for null.
    [[nodiscard]] bool is_reference() const { return IsReference(this); }
    [[nodiscard]] static bool IsReference(const ODB_Mediator* mediator);

    /// The same object, or one of the same class that `equals`.
    [[nodiscard]] bool operator==(const ODB_Mediator& other) const;

    /// Reads the version byte and the class name; items of older versions are read and dropped. The
    /// stream holds neither the attachment nor the icon, so a clone has none.
    void read(ipstream& in) override;
    void write(opstream& out) override;

    /// Loads the object itself; the caller owns it. Null when it is missing or damaged.
    [[nodiscard]] virtual GStreamable* get_object() = 0;

protected:
    /// Writes the object to its home and takes its class. Here: takes the class of the object, none
    /// for null; derived classes call this first.
    virtual void store_object(const GStreamable* object);
    /// Removes the object from a home of its own. Here: nothing.
    virtual void remove_object();
    /// Copies the object of `source`, from which this mediator was cloned. Here: nothing.
    virtual void copy_object_from(ODB_Mediator& source);

public:
    /// Loads the picture file and sets it as the icon; nothing happens when it can't be read.
    void set_icon(const char* file);
    /// Writes the icon and takes it over. Null drops the loaded icon and leaves the stored one,
    /// which the next get_icon reads back.
    virtual void set_icon(PixelMap* map);
    /// The icon, loaded on demand, owned by the mediator; null when there is none.
    [[nodiscard]] virtual const PixelMap* get_icon() const;
    /// Frees the loaded icon.
    virtual void unload_icon();
    /// Whether an icon is stored; reads no picture.
    [[nodiscard]] virtual bool has_icon() const;

    /// The attribute of that class, which the caller owns and may change and write back while the
    /// mediator lives; null when there is none or the class is none of attributes.
    [[nodiscard]] ODB_ObjectAttribute* get_attribute(const GMetaClass* attribute_class);
    [[nodiscard]] virtual ODB_ObjectAttribute* get_attribute(const GString& class_name);
    /// Writes the attribute. With `delete_it` it is deleted then, else it stays the caller's and is
    /// attached to this mediator. Nobody is notified. Null does nothing.
    virtual void set_attribute(ODB_ObjectAttribute* attribute, bool delete_it);
    void remove_attribute(const GMetaClass* attribute_class);
    virtual void remove_attribute(const GString& class_name);
    /// All attributes, owned by `result`. Reads every resource of this object's name, the object
    /// included: callers who know the class use get_attribute.
    void get_attributes(ODB_AttributesArray& result);

    /// Writes the mediator and tells the listeners of ObjectDatabase::Reason_MediatorModified.
    void modified();

protected:
    ODB_Mediator();
    /// The copy shares the loaded icon.
    ODB_Mediator(const ODB_Mediator& other);
    ODB_Mediator& operator=(const ODB_Mediator& other);
    ~ODB_Mediator() override;

    /// Whether `other`, of the same class, stands for the same object. Here: the same full name.
    [[nodiscard]] virtual bool equals(const ODB_Mediator& other) const;
    virtual void set_DB(ObjectDatabase* database);
    virtual void set_DB_resname(const GResourceFullName& name);

    void set_object_class_name(const GString& name);
    /// Calls the virtual remove_object.
    void remove_all() { remove_object(); }

private:
    friend class ObjectDatabase;

    [[nodiscard]] GResourceFullName resource_of_type(const GString& type) const;
    void save_icon(PixelMap* map);
    void load_icon() const;

    ObjectDatabase* DB_ = nullptr;
    GResourceFullName DB_resname_;
    mutable std::shared_ptr<PixelMap> icon_;
    GString object_class_name_;
    const GMetaClass* object_class_identifier_ = nullptr;
};
