#include "odb/ObjectImport.h"

#include "foundation/GException.h"
#include "foundation/GObjectFileFormat.h"
#include "graphics/GIconMaker.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_Mediator.h"
#include "odb/ObjectDatabase.h"
#include "platform/FileDevice.h"
#include "store/ResourceFileServer.h"

#include <memory>
#include <new>

namespace {

bool can_write(const ObjectDatabase& database)
{
    return database.is_writable() && database.server->error() == 0;
}

// Why no format need be asked; empty when the file has content. A format could only say that it
// does not know the file.
std::string why_nothing_to_read(const std::string& file)
{
    zmr::FileError error;
    const auto device = zmr::FileSystemDevice::Real().open(file, zmr::FileAccess::Read,
                                                           zmr::FileCreate::OpenExisting,
                                                           zmr::FileShare::ReadWrite, error);
    std::uint64_t size = 0;
    if (device != nullptr)
        error = device->length(size);
    if (error)
        return error.text();
    return size == 0 ? "it is empty" : std::string();
}

std::unique_ptr<PixelMap> make_icon(const GStreamable& object, int size_px)
{
    try {
        return std::unique_ptr<PixelMap>(GIconMaker::Make(object, size_px));
    } catch (const GException&) {
        return nullptr;  // the object is worth keeping without one
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace

zmr::ImportedObject zmr::import_object(const std::string& file)
{
    try {
        if (std::string reason = why_nothing_to_read(file); !reason.empty())
            return {nullptr, std::move(reason)};
        const GObjectFileFormat* const format = GObjectFileFormat::Find(file.c_str());
        OwnedObject<> object(format == nullptr ? nullptr : format->read_object(file.c_str()));
        if (object == nullptr)
            return {nullptr, "no registered format reads it"};
        return {std::move(object), {}};
    } catch (const GException& damage) {
        return {nullptr, damage.what()};
    } catch (const std::bad_alloc&) {
        return {nullptr, "there is not enough memory to read it"};
    }
}

bool zmr::append_with_icon(ObjectDatabase& database, const GStreamable& object,
                           const GResourceFullName& name, ODB_Mediator* mediator, int icon_size_px)
{
    if (!can_write(database)) {
        GStreamable::Destroy(mediator);
        return false;
    }
    const GResourceFullName entry(name.path(), name.name, ObjectDatabase::MediatorResourceType);
    std::unique_ptr<PixelMap> icon = make_icon(object, icon_size_px);
    {
        const ResourceFile::CommitScope whole(database);
        database.append_object(&object, entry, mediator);
        ODB_Mediator* const stored =
            database.object_exists(entry) ? database.get_mediator(entry) : nullptr;
        if (stored == nullptr)
            return false;
        if (icon != nullptr)
            stored->set_icon(icon.release());
        else
            database.remove({entry.path(), entry.name, ObjectDatabase::ODB_IconResourceType});
        stored->unload_icon();
    }
    return can_write(database);
}
