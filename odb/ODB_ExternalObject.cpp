#include "odb/ODB_ExternalObject.h"

#include "foundation/FileSystem.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "odb/ODB_ObjectDatabaseFormat.h"
#include "odb/ObjectDatabase.h"
#include "odb/ObjectFileNames.h"
#include "store/GObjectFilePlacement.h"

G_DEFINE_CLASS(ODB_ExternalObject, ODB_Mediator);

namespace {

constexpr unsigned char kVersion = 0;
constexpr char kDirectory[] = "LOBJS";
constexpr char kMask[] = "*.lob";

GObjectPlacement* new_placement(const GFile& file)
{
    return new GObjectFilePlacement(file.text, false, nullptr);
}

/// Makes the directory of `full`; false when it was there already or can't be made.
bool make_directory_of(const GFile& full)
{
    const GFile directory = full.get_directory();
    return !directory.is_empty() && !directory.exists() && FileSystem::CreateDirectoryA(directory);
}

/// A made-up name for a file of that database.
GFile made_up_name(const GFile& database)
{
    GFile directory = database;
    directory.replace_name(kDirectory);
    GFile mask = database;
    if (FileSystem::CreateDirectoryA(directory)) {
        mask = directory;
        mask.add_name(kMask);
    } else {
        mask.replace_name(kMask);
    }
    return zmr::unique_file(mask.text, nullptr);
}

}  // namespace

ODB_ExternalObject::ODB_ExternalObject(const GObjectPlace& place) : place_(place) {}

ODB_ExternalObject::ODB_ExternalObject(const char* file) : pending_filename_(file) {}

ODB_ExternalObject::~ODB_ExternalObject() = default;

const ODB_ObjectDatabaseFormat& ODB_ExternalObject::ObjectDatabaseFormat()
{
    static const ODB_ObjectDatabaseFormat format;
    return format;
}

GFile ODB_ExternalObject::get_filename() const
{
    return zmr::filename_of_place(place_);
}

GFile ODB_ExternalObject::get_DB_filename() const
{
    return get_DB() == nullptr ? GFile() : get_DB()->get_filename();
}

GFile ODB_ExternalObject::relative_filename() const
{
    GFile file = get_filename();
    if (!file.is_empty() && get_DB() != nullptr)
        get_DB()->shrink_filename(file);
    return file;
}

void ODB_ExternalObject::convert_filename()
{
    if (pending_filename_.is_empty())
        return;
    place_ = new_placement(zmr::resolve_filename(get_DB_filename(), pending_filename_));
    pending_filename_.empty();
}

void ODB_ExternalObject::make_filename(const GObjectPlace& source, bool force)
{
    if (force || !zmr::is_usable_file(zmr::filename_of_place(source)))
        make_unique_filename(source);
}

void ODB_ExternalObject::make_unique_filename(const GObjectPlace& source)
{
    const GFile database = get_DB_filename();
    GFile full = zmr::resolve_filename(database, zmr::filename_of_place(source));
    const bool is_wanted = zmr::is_usable_file(full) && !full.exists() && make_directory_of(full);
    place_ = new_placement(is_wanted ? full : made_up_name(database));
}

void ODB_ExternalObject::set_DB(ObjectDatabase* database)
{
    ODB_Mediator::set_DB(database);
    if (database != nullptr)
        convert_filename();
}

void ODB_ExternalObject::store_object(const GStreamable* object)
{
    ODB_Mediator::store_object(object);
    const bool writes = may_write();
    if (writes)
        make_filename(place_, false);
    if (object == nullptr) {
        const GMetaClass* const stored = place_.get_class();
        set_object_class_name(stored == nullptr ? GString() : GString(stored->name));
        return;
    }
    if (!writes)
        return;
    if (get_DB() != nullptr)
        get_DB()->keep_place(place_);
    static_cast<void>(place_.put(const_cast<GStreamable*>(object), false));  // it only reads
}

GStreamable* ODB_ExternalObject::get_object()
{
    return zmr::class_cast<GStreamable>(place_.get(false));
}

void ODB_ExternalObject::remove_object()
{
    ODB_Mediator::remove_object();
    give_up_place(place_);
}

bool ODB_ExternalObject::may_write() const
{
    return get_DB() == nullptr || get_DB()->is_writable();
}

void ODB_ExternalObject::give_up_place(const GObjectPlace& place)
{
    if (get_DB() != nullptr)
        get_DB()->remove_after_commit(place);
    else
        static_cast<void>(place.remove());
}

void ODB_ExternalObject::copy_object_from(ODB_Mediator& source)
{
    ODB_Mediator::copy_object_from(source);
    if (!may_write())
        return;
    const auto& original = static_cast<ODB_ExternalObject&>(source);
    // An equal mediator that this copy is about to replace keeps no file behind.
    const GObjectPlace resolved = place_;
    const auto* const former =
        zmr::class_cast<ODB_ExternalObject>(get_DB()->get_mediator(get_DB_resname()));
    const bool replaces = former != nullptr && former != this && former->place_ == resolved &&
                          !(resolved == original.place_);
    // With no file to copy, the wanted name would be the source's own.
    const bool is_there =
        original.place_.placement != nullptr && original.place_.placement->place_exists();
    make_filename(is_there ? original.place_ : GObjectPlace(), true);
    get_DB()->keep_place(place_);
    static_cast<void>(original.place_.copy_to(place_));
    if (replaces)
        give_up_place(resolved);
}

bool ODB_ExternalObject::equals(const ODB_Mediator& other) const
{
    return ODB_Mediator::equals(other) &&
           place_ == static_cast<const ODB_ExternalObject&>(other).place_;
}

void ODB_ExternalObject::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    ODB_Mediator::read(in);
    GFile file;
    in >> file;
    pending_filename_ = file;
}

void ODB_ExternalObject::write(opstream& out)
{
    out.writeByte(kVersion);
    ODB_Mediator::write(out);
    out << (pending_filename_.is_empty() ? relative_filename() : pending_filename_);
}
