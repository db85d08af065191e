#pragma once

#include "foundation/GFile.h"
#include "odb/ODB_ObjectAttribute.h"

class GInputAVIFile;

/// The way to an entry's movie, an AVI file kept whole as the raw bytes of a resource of its own.
/// It plays where it lies: the platform's multimedia layer opens a name that tells the library and
/// the resource in it (get_movie_name), for libraries with the extension "odb" and any other that
/// RegisterIOProc was told. Needs the attribute to belong to an entry.
class ZMR_GV_API ODB_MovieAttribute : public ODB_ObjectAttribute {
    G_DECLARE_CLASS(ODB_MovieAttribute)

public:
    ODB_MovieAttribute() = default;
    ODB_MovieAttribute(const ODB_MovieAttribute&) = default;
    ODB_MovieAttribute& operator=(const ODB_MovieAttribute&) = default;

    void read(ipstream& in) override;
    void write(opstream& out) override;

    /// Stores the bytes of a file in place of the old movie; a null `file` removes that one. A file
    /// that can't be read, and the library's own, change nothing.
    void set_movie(const char* file);
    /// Writes the movie's bytes to a file, in place of an old one. False when there is no movie, or
    /// it could not be written whole: then there is no such file. Never over the library itself.
    bool extract_movie(const char* file) const;
    /// The movie, opened; the caller owns it. Null when there is none or it can't be opened, and
    /// always where there is no AVI layer.
    [[nodiscard]] GInputAVIFile* get_movie() const;
    /// The name for the multimedia layer; with `must_exist` empty when there is no movie. It is long:
    /// GInputAVIFile opens it by a short one, because Wine's AVI layer writes a long one over memory
    /// that is not its own.
    [[nodiscard]] GString get_movie_name(bool must_exist) const;
    [[nodiscard]] GResourceFullName get_movie_resource_name() const;

    /// The type of the resource that holds a movie.
    [[nodiscard]] static GString GetMovieResourceType();
    /// The name of the movie of the entry that `name` names, whatever its type. A `file` with a "+"
    /// in it, and an entry with the byte 4, can't be found again by it.
    [[nodiscard]] static GString BuildMovieName(const GFile& file, const GResourceFullName& name);
    /// False, with both results unchanged, for a text that is no movie's name.
    [[nodiscard]] static bool ParseMovieName(const char* text, GFile& file,
                                             GResourceFullName& name);
    /// Lets the multimedia layer open movies in libraries of that extension, until this library
    /// unloads. Doing so again, and where there is no such layer, has no effect.
    static void RegisterIOProc(const char* extension);
};
