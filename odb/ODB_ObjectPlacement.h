#pragma once

#include "store/GObjectPlacement.h"
#include "store/GResourceFullName.h"

class ObjectDatabase;

/// Names one object in one library file. It holds no library open: each operation opens the file,
/// acts and closes it, which costs little while the application has it open itself. Users of many
/// objects use ObjectDatabase. What can't be opened gives false or null. User-interface thread.
class ZMR_GV_API ODB_ObjectPlacement : public GObjectPlacement {
    G_DECLARE_CLASS(ODB_ObjectPlacement)

public:
    /// `file` is made a full name.
    ODB_ObjectPlacement(const char* file, const GResourcePath& path, const GString& name);
    ODB_ObjectPlacement(const char* file, const GResourceFullName& name);
    ODB_ObjectPlacement(const ObjectDatabase& database, const GResourcePath& path,
                        const GString& name);
    ODB_ObjectPlacement(const ObjectDatabase& database, const GResourceFullName& name);
    ODB_ObjectPlacement(const ODB_ObjectPlacement&) = default;
    ODB_ObjectPlacement& operator=(const ODB_ObjectPlacement&) = default;

    void read(ipstream& in) override;
    void write(opstream& out) override;

    [[nodiscard]] const GResourceFullName& get_object_resource_name() const
    {
        return object_resource_name_;
    }
    [[nodiscard]] GFile get_filename() const override { return filename_; }
    [[nodiscard]] bool place_exists() const override;
    void change_not_exists() override;
    [[nodiscard]] GObject* get_object(bool shared) override;
    [[nodiscard]] const GMetaClass* get_object_class_id() const override;
    /// An entry that is there keeps its mediator, and so its icon and attributes; a new one is an
    /// internal object. True once it is on the disk.
    bool put_object(GObject* object, bool shared) override;
    /// Handles two places of this class only, and copies the whole entry.
    bool copy_object_from_to(const GObjectPlacement& from, const GObjectPlacement& to,
                             bool& ok) override;
    bool remove_object() override;
    [[nodiscard]] bool compare_items(const GObjectPlacement& other) const override;
    /// The file, then between angle brackets the path and the name.
    void get_readable_form(GString& text) const override;

protected:
    ODB_ObjectPlacement() = default;

private:
    GFile filename_;
    GResourceFullName object_resource_name_;
};
