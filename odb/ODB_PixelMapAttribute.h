#pragma once

#include "odb/ODB_ObjectAttribute.h"

class GStringCollection;
class PixelMap;

/// The way to an entry's named pictures, which it may have besides its icon. The attribute holds no
/// data: each picture is a resource of its own beside it, whose type is the attribute's class name,
/// a dot and the picture's name. Needs the attribute to belong to an entry.
class ZMR_GV_API ODB_PixelMapAttribute : public ODB_ObjectAttribute {
    G_DECLARE_CLASS(ODB_PixelMapAttribute)

public:
    ODB_PixelMapAttribute() = default;
    ODB_PixelMapAttribute(const ODB_PixelMapAttribute&) = default;
    ODB_PixelMapAttribute& operator=(const ODB_PixelMapAttribute&) = default;

    void read(ipstream& in) override;
    void write(opstream& out) override;

    /// Puts the names of the entry's pictures into `result`, emptied first, which then owns its
    /// texts. Costs the number of types in the whole file.
    void get_names(GStringCollection& result) const;
    /// The picture, loaded, which the caller owns; null when there is none.
    [[nodiscard]] PixelMap* get_map(const char* name) const;
    /// Stores `map`, which stays the caller's, in place of an old picture of that name. Nothing
    /// happens when either is null.
    void add_map(const char* name, PixelMap* map);
    /// Stores the picture of a file; nothing happens when it can't be read.
    void add_map(const char* name, const char* file);
    void remove_map(const char* name);

private:
    void get_map_resname(GResourceFullName& name, const char* map) const;
};
