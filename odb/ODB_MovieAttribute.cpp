#include "odb/ODB_MovieAttribute.h"

#include "foundation/GException.h"
#include "foundation/fpstream.h"
#include "odb/GInputAVIFile.h"
#include "odb/MovieName.h"
#include "odb/MovieProcedure.h"
#include "odb/ObjectDatabase.h"
#include "platform/FileDevice.h"

#include <memory>

G_DEFINE_CLASS(ODB_MovieAttribute, ODB_ObjectAttribute);

namespace {

const GModuleCtor install_for_libraries([] { ODB_MovieAttribute::RegisterIOProc("odb"); });
const GModuleDtor take_back(&zmr::remove_movie_procedures);

bool identify(const char* file, zmr::FileIdentity& identity)
{
    zmr::FileError error;
    const auto device = zmr::FileSystemDevice::Real().open(file, zmr::FileAccess::Read,
                                                           zmr::FileCreate::OpenExisting,
                                                           zmr::FileShare::ReadWrite, error);
    return device != nullptr && !device->identity(identity);
}

/// True when `file` leads to the library: it must neither grow by itself nor be overwritten.
bool is_library(const char* file, const GFile& library)
{
    GFile full(file);
    full.expand();
    if (full.compare(library.text) == 0)
        return true;  // it may not have been made yet
    zmr::FileIdentity first;
    zmr::FileIdentity second;
    return identify(file, first) && identify(library.text, second) && first == second;
}

}  // namespace

void ODB_MovieAttribute::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    ODB_ObjectAttribute::read(in);
}

void ODB_MovieAttribute::write(opstream& out)
{
    out.writeByte(0);
    ODB_ObjectAttribute::write(out);
}

void ODB_MovieAttribute::set_movie(const char* file)
{
    if (file == nullptr) {
        get_DB()->remove(get_movie_resource_name());
        return;
    }
    if (is_library(file, get_DB()->get_filename()))
        return;
    ifpstream source(file, GIO::OpenRead, GFileIO::OpenExisting, GFileIO::ShareRead);
    if (source.good())
        get_DB()->copy_from(get_movie_resource_name(), source, -1, 0);
}

bool ODB_MovieAttribute::extract_movie(const char* file) const
{
    const GResourceFullName name = get_movie_resource_name();
    if (file == nullptr || !get_DB()->exist(name) || is_library(file, get_DB()->get_filename()))
        return false;
    bool done = false;
    try {
        ofpstream target(file, GIO::OpenWrite, GFileIO::CreateOrTruncate, GFileIO::ShareNone);
        if (!target.good())
            return false;
        done = get_DB()->extract_to(target, name, false);
        target.flush();
        done = done && target.good();
    } catch (const GException&) {
        done = false;
    }
    if (!done)  // a piece of a movie is of no use
        static_cast<void>(zmr::FileSystemDevice::Real().remove(file));
    return done;
}

GInputAVIFile* ODB_MovieAttribute::get_movie() const
{
    const GString name = get_movie_name(true);
    if (name.is_empty())
        return nullptr;
    auto movie = std::make_unique<GInputAVIFile>(name.text);
    return movie->handle == nullptr ? nullptr : movie.release();
}

GString ODB_MovieAttribute::get_movie_name(bool must_exist) const
{
    const GResourceFullName name = get_movie_resource_name();
    if (must_exist && !get_DB()->exist(name))
        return {};
    return BuildMovieName(get_DB()->get_filename(), name);
}

GResourceFullName ODB_MovieAttribute::get_movie_resource_name() const
{
    GResourceFullName name;
    get_DB_resname(name);
    name.type = GetMovieResourceType();
    return name;
}

GString ODB_MovieAttribute::GetMovieResourceType()
{
    return GString(metaclass_.name) + ".movie";
}

GString ODB_MovieAttribute::BuildMovieName(const GFile& file, const GResourceFullName& name)
{
    return zmr::build_movie_name(file,
                                 GResourceFullName(name.path(), name.name, GetMovieResourceType()));
}

bool ODB_MovieAttribute::ParseMovieName(const char* text, GFile& file, GResourceFullName& name)
{
    return zmr::parse_movie_name(text, file, name);
}

void ODB_MovieAttribute::RegisterIOProc(const char* extension)
{
    zmr::install_movie_procedure(extension);
}
