#pragma once

#include "foundation/GFile.h"
#include "foundation/GPointer.h"
#include "foundation/GStreamable.h"

/// Says where one object is stored. Owned by a GObjectPlace.
class ZMR_GV_API GObjectPlacement : public GStreamable {
    G_DECLARE_CLASS(GObjectPlacement)

public:
    void read(ipstream& in) override;
    void write(opstream& out) override;

    /// The file that holds the object.
    [[nodiscard]] virtual GFile get_filename() const = 0;
    [[nodiscard]] virtual bool place_exists() const = 0;
    /// Tries to mend a place that does not exist, by redirection or by asking the user.
    virtual void change_not_exists() = 0;
    /// Reads the object; null on failure. The caller owns it unless `shared`, when the place keeps
    /// track of it as the object that its users share.
    [[nodiscard]] virtual GObject* get_object(bool shared) = 0;
    /// The stored object's class without reading the object; null when unknown.
    [[nodiscard]] virtual const GMetaClass* get_object_class_id() const = 0;
    /// Writes the object. The base version is called after a successful write.
    virtual bool put_object(GObject* object, bool shared);
    /// Copies the stored object between two places. False when this kind of placement does not
    /// handle the pair, with `ok` left alone; otherwise `ok` tells the success.
    virtual bool copy_object_from_to(const GObjectPlacement& from, const GObjectPlacement& to,
                                     bool& ok) = 0;
    virtual bool remove_object() = 0;
    /// True when `other`, of this class, names the same place.
    [[nodiscard]] virtual bool compare_items(const GObjectPlacement& other) const = 0;
    /// A text that names the place to the user.
    virtual void get_readable_form(GString& text) const = 0;

    /// The object that users of this place share, null when there is none any more.
    [[nodiscard]] GObject* get_shared_object() const { return shared_.get(); }

protected:
    GObjectPlacement() = default;
    GObjectPlacement(const GObjectPlacement&) = default;
    GObjectPlacement& operator=(const GObjectPlacement&) = default;
    /// Remembers an object that is shared among the users of the place; it is only tracked.
    void set_shared_object(GObject* object);

private:
    TGPointer<GObject> shared_;
};
