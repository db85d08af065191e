#pragma once

#include "store/GObjectPlacement.h"

#include <memory>

class GObjectFileFormat;

/// A value that says where one object is: it owns one placement, or is empty.
class ZMR_GV_API GObjectPlace {
public:
    GObjectPlace() = default;
    /// A file; see GObjectFilePlacement.
    GObjectPlace(const char* file, bool recognise, const GObjectFileFormat* format);
    /// The copy has a placement of its own.
    GObjectPlace(const GObjectPlace& other);
    GObjectPlace& operator=(const GObjectPlace& other);
    /// Takes the placement over and releases the former one.
    GObjectPlace& operator=(GObjectPlacement* new_placement);
    virtual ~GObjectPlace();

    /// Reads the object; null on failure and for the empty place. A place whose file is missing is
    /// first given the chance to change.
    [[nodiscard]] GObject* get(bool shared) const;
    bool put(GObject* object, bool shared) const;
    /// The stored object's class without reading the object; null when unknown.
    [[nodiscard]] const GMetaClass* get_class() const;
    bool remove() const;
    /// Copies the stored object; where neither placement handles the pair, by reading and writing
    /// it.
    bool copy_to(const GObjectPlace& to) const;
    /// The same placement by compare_items, or both empty.
    [[nodiscard]] bool operator==(const GObjectPlace& other) const;

    GObjectPlacement* placement = nullptr;  ///< Owned; null when the place is empty.
};
