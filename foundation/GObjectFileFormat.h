#pragma once

#include "foundation/GStreamable.h"
#include "foundation/GString.h"

#include <span>

/// Reads and writes objects of one kind in files of their own: a picture, a model. Formats register
/// for the life of their module, usually as static objects, and are asked by users that know no
/// format themselves. Registration runs while a module loads; the rest in any thread.
class ZMR_GV_API GObjectFileFormat {
public:
    GObjectFileFormat() = default;
    virtual ~GObjectFileFormat();
    GObjectFileFormat(const GObjectFileFormat&) = delete;
    GObjectFileFormat& operator=(const GObjectFileFormat&) = delete;

    /// Writes the object; 0 when the format can't write it or the file can't be written.
    virtual unsigned char write_object(const char* file, GStreamable* object) const = 0;
    /// Reads the object, which the caller owns. Null for a file of another kind. A damaged file of
    /// this kind throws GLibraryException, whose message tells what is wrong with it.
    virtual GStreamable* read_object(const char* file) const = 0;
    /// The class of the object that read_object would give, told from the file's head alone; empty
    /// for a file of another kind or one that can't be read.
    virtual GString read_object_class_name(const char* file) = 0;

    /// The formats are asked in the order of registration. One that is registered already keeps its
    /// place; the destructor unregisters.
    static void Register(GObjectFileFormat& format);
    static void Unregister(GObjectFileFormat& format);
    /// The first format that recognises the file, or null.
    [[nodiscard]] static GObjectFileFormat* Find(const char* file);
    /// All formats in the order of registration, for callers that look for one which can write.
    /// Valid until one registers or leaves.
    [[nodiscard]] static std::span<GObjectFileFormat* const> All();
};
