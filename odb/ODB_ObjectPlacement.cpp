#include "odb/ODB_ObjectPlacement.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "odb/ODB_InternalObject.h"
#include "odb/ObjectDatabase.h"
#include "store/GObjectFilePlacement.h"
#include "store/ResourceFileServer.h"

G_DEFINE_CLASS(ODB_ObjectPlacement, GObjectPlacement);

namespace {

constexpr unsigned char kVersion = 1;  // 1: the whole name of the entry

bool server_fine(const ObjectDatabase& database)
{
    return database.server != nullptr && database.server->error() == 0;
}

/// Brings what was done to the disk, so that its failure is told.
bool is_kept(ObjectDatabase& database)
{
    database.flush();
    return server_fine(database);
}

}  // namespace

ODB_ObjectPlacement::ODB_ObjectPlacement(const char* file, const GResourcePath& path,
                                         const GString& name)
    : ODB_ObjectPlacement(file, GResourceFullName(path, name, ObjectDatabase::MediatorResourceType))
{
}

ODB_ObjectPlacement::ODB_ObjectPlacement(const char* file, const GResourceFullName& name)
    : filename_(file), object_resource_name_(name)
{
    filename_.expand();
}

ODB_ObjectPlacement::ODB_ObjectPlacement(const ObjectDatabase& database, const GResourcePath& path,
                                         const GString& name)
    : ODB_ObjectPlacement(database,
                          GResourceFullName(path, name, ObjectDatabase::MediatorResourceType))
{
}

ODB_ObjectPlacement::ODB_ObjectPlacement(const ObjectDatabase& database,
                                         const GResourceFullName& name)
    : filename_(database.get_filename()), object_resource_name_(name)
{
}

bool ODB_ObjectPlacement::place_exists() const
{
    if (!filename_.exists())
        return false;
    const ObjectDatabase database(filename_.text, GIO::OpenRead);
    return database.object_exists(object_resource_name_);
}

void ODB_ObjectPlacement::change_not_exists()
{
    if (filename_.is_empty())
        return;
    filename_.redirect();
    if (filename_.exists() || GObjectFilePlacement::s_AskFunction == nullptr)
        return;
    GFile asked = filename_;
    if (!GObjectFilePlacement::s_AskFunction(asked))
        return;
    asked.expand();
    filename_ = asked;
}

GObject* ODB_ObjectPlacement::get_object(bool shared)
{
    ObjectDatabase database(filename_.text, GIO::OpenRead);
    GStreamable* const object = database.get_object(object_resource_name_);
    if (shared)
        set_shared_object(object);
    return object;
}

const GMetaClass* ODB_ObjectPlacement::get_object_class_id() const
{
    ObjectDatabase database(filename_.text, GIO::OpenRead);
    const ODB_Mediator* const mediator = database.get_mediator(object_resource_name_);
    return mediator == nullptr ? nullptr : mediator->get_object_class_identifier();
}

bool ODB_ObjectPlacement::put_object(GObject* object, bool shared)
{
    const auto* const streamable = zmr::class_cast<GStreamable>(object);
    if (streamable == nullptr)
        return false;
    ObjectDatabase database(filename_.text, GIO::OpenReadWrite);
    if (!database.is_writable())
        return false;
    database.append_object(streamable, object_resource_name_,
                           database.get_mediator(object_resource_name_));
    return is_kept(database) && GObjectPlacement::put_object(object, shared);
}

bool ODB_ObjectPlacement::copy_object_from_to(const GObjectPlacement& from,
                                              const GObjectPlacement& to, bool& ok)
{
    const auto* const from_entry = zmr::class_cast<ODB_ObjectPlacement>(&from);
    const auto* const to_entry = zmr::class_cast<ODB_ObjectPlacement>(&to);
    if (from_entry == nullptr || to_entry == nullptr)
        return false;
    ObjectDatabase source(from_entry->filename_.text, GIO::OpenRead);
    ObjectDatabase target(to_entry->filename_.text, GIO::OpenReadWrite);
    source.copy_object_to(from_entry->object_resource_name_, target,
                          to_entry->object_resource_name_);
    // A file that is not there is not made for nothing.
    const bool is_there = target.object_exists(to_entry->object_resource_name_);
    ok = (is_there ? is_kept(target) : server_fine(target)) && server_fine(source);
    return true;
}

bool ODB_ObjectPlacement::remove_object()
{
    ObjectDatabase database(filename_.text, GIO::OpenReadWrite);
    if (!database.object_exists(object_resource_name_))
        return server_fine(database);
    database.remove_object(object_resource_name_);
    return is_kept(database);
}

bool ODB_ObjectPlacement::compare_items(const GObjectPlacement& other) const
{
    const auto* const entry = zmr::class_cast<ODB_ObjectPlacement>(&other);
    return entry != nullptr && filename_.compare(entry->filename_.text) == 0 &&
           object_resource_name_ == entry->object_resource_name_;
}

void ODB_ObjectPlacement::get_readable_form(GString& text) const
{
    text = filename_;
    text += "<";
    text += object_resource_name_.get_readable_form();
    text += object_resource_name_.name;
    text += ">";
}

void ODB_ObjectPlacement::read(ipstream& in)
{
    const unsigned char version = in.readByte();
    GObjectPlacement::read(in);
    GFile file;
    in >> file;
    GResourceFullName name;
    if (version >= 1) {
        in >> name;
    } else {
        in >> name.name;
        name.type = ObjectDatabase::MediatorResourceType;
    }
    file.redirect();
    file.expand();
    filename_ = file;
    object_resource_name_ = name;
}

void ODB_ObjectPlacement::write(opstream& out)
{
    out.writeByte(kVersion);
    GObjectPlacement::write(out);
    out << filename_;
    out << object_resource_name_;
}
