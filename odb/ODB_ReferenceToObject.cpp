#include "odb/ODB_ReferenceToObject.h"

#include "foundation/GLock.h"
#include "foundation/OwnedObject.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "graphics/PixelMap.h"
#include "odb/ObjectDatabase.h"
#include "store/ResourceFileServer.h"

#include <utility>

G_DEFINE_CLASS(ODB_ReferenceToObject, ODB_Mediator);

namespace {

constexpr unsigned char kVersion = 2;  // 2: the byte for references within one library

/// Attaching a reference loads the next one, which is attached in its turn. So many may be nested;
/// the next ones are opened, but left as they are.
constexpr int kMostNested = 32;
thread_local int nested = 0;

class Nesting {
public:
    Nesting() { ++nested; }
    ~Nesting() { --nested; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
};

}  // namespace

ODB_ReferenceToObject::ODB_ReferenceToObject()
{
    referenced_object_resname_.type = ObjectDatabase::MediatorResourceType;
}

ODB_ReferenceToObject::ODB_ReferenceToObject(const char* file, const GResourceFullName& target)
    : referenced_DB_filename_(file), referenced_object_resname_(target)
{
    referenced_DB_filename_.expand();
}

ODB_ReferenceToObject::ODB_ReferenceToObject(const ObjectDatabase& database,
                                             const GResourceFullName& target)
    : referenced_DB_filename_(database.get_filename()), referenced_object_resname_(target)
{
}

ODB_ReferenceToObject::ODB_ReferenceToObject(const ODB_ReferenceToObject& other)
    : ODB_Mediator(other),
      referenced_DB_(other.referenced_DB_ == nullptr
                         ? nullptr
                         : std::make_shared<ObjectDatabase>(*other.referenced_DB_)),
      referenced_DB_filename_(other.referenced_DB_filename_),
      referenced_object_resname_(other.referenced_object_resname_),
      in_same_DB_(other.in_same_DB_)
{
}

ODB_ReferenceToObject& ODB_ReferenceToObject::operator=(const ODB_ReferenceToObject& other)
{
    if (this == &other)
        return *this;
    ODB_ReferenceToObject copy(other);
    ODB_Mediator::operator=(other);
    referenced_DB_.swap(copy.referenced_DB_);
    referenced_DB_filename_ = copy.referenced_DB_filename_;
    referenced_object_resname_ = copy.referenced_object_resname_;
    in_same_DB_ = copy.in_same_DB_;
    return *this;
}

ODB_ReferenceToObject::~ODB_ReferenceToObject() = default;

GFile ODB_ReferenceToObject::get_referenced_DB_filename() const
{
    if (!in_same_DB_)
        return referenced_DB_filename_;
    return get_DB() == nullptr ? GFile() : get_DB()->get_filename();
}

ODB_Mediator* ODB_ReferenceToObject::referenced_mediator() const
{
    ObjectDatabase* const database = in_same_DB_ ? get_DB() : referenced_DB_.get();
    return database == nullptr ? nullptr : database->get_mediator(referenced_object_resname_);
}

ODB_Mediator* ODB_ReferenceToObject::get_host_mediator() const
{
    const ODB_ReferenceToObject* current = this;
    for (int step = 0; step < kMostSteps; ++step) {  // which also ends what only leads to a circle
        ODB_Mediator* const next = current->referenced_mediator();
        const auto* const reference = zmr::class_cast<ODB_ReferenceToObject>(next);
        if (reference == nullptr)
            return next;
        if (reference == this)
            return nullptr;
        current = reference;
    }
    return nullptr;
}

void ODB_ReferenceToObject::set_DB(ObjectDatabase* database)
{
    ODB_Mediator::set_DB(database);
    if (database == nullptr) {
        // Closing may attach this reference anew, to another client of its library.
        const std::shared_ptr<ObjectDatabase> closed = std::move(referenced_DB_);
        return;
    }
    const auto is_of_holder = [&] {
        return referenced_DB_filename_.compare(database->get_filename().text) == 0;
    };
    if (!in_same_DB_)
        in_same_DB_ = is_of_holder();
    if (!in_same_DB_)
        open_referenced_DB();
    if (!in_same_DB_ && nested < kMostNested)
        point_at_host();
    if (!in_same_DB_)
        return;
    referenced_DB_filename_.empty();
    const std::shared_ptr<ObjectDatabase> closed = std::move(referenced_DB_);
}

void ODB_ReferenceToObject::open_referenced_DB()
{
    const std::shared_ptr<ObjectDatabase> former = std::move(referenced_DB_);
    referenced_DB_ = ObjectDatabase::OpenForReferences(referenced_DB_filename_, *get_DB());
    // The same file may have another name: a link, another case of its letters.
    in_same_DB_ = referenced_DB_ != nullptr && referenced_DB_->server == get_DB()->server;
}

void ODB_ReferenceToObject::point_at_host()
{
    const Nesting nesting;
    const ODB_Mediator* const host = get_host_mediator();
    if (host == nullptr || host->get_DB() == nullptr || host->get_DB()->server == nullptr ||
        referenced_DB_ == nullptr || host->get_DB()->server == referenced_DB_->server)
        return;
    const ObjectDatabase keeps_it_open(*host->get_DB());
    referenced_object_resname_ = host->get_DB_resname();
    referenced_DB_filename_ = keeps_it_open.get_filename();
    in_same_DB_ = keeps_it_open.server == get_DB()->server;
    if (!in_same_DB_)
        open_referenced_DB();
}

void ODB_ReferenceToObject::store_object(const GStreamable* object)
{
    ODB_Mediator::store_object(object);
    if (const ODB_Mediator* const host = get_host_mediator())
        set_object_class_name(host->get_object_class_name());
}

GStreamable* ODB_ReferenceToObject::get_object()
{
    ODB_Mediator* const host = get_host_mediator();
    if (host == nullptr)
        return nullptr;
    const ObjectDatabase* const library = host->get_DB();
    if (library == nullptr || library->server == nullptr)
        return nullptr;
    const GSingleLock locked(library->server->lock);
    return host->get_object();
}

ODB_Mediator* ODB_ReferenceToObject::host_to_write() const
{
    ObjectDatabase* const holder = get_DB();
    const bool may_write = holder != nullptr && holder->is_writable();
    const std::shared_ptr<ObjectDatabase> kept = referenced_DB_;  // whatever opening it anew ends
    ObjectDatabase* const database = in_same_DB_ ? holder : kept.get();
    if (!in_same_DB_ && may_write && database != nullptr && !database->is_writable()) {
        database->open(referenced_DB_filename_.text, GIO::OpenReadWrite);
        if (database->server == nullptr)  // another process writes it
            database->open(referenced_DB_filename_.text, GIO::OpenRead);
    }
    ODB_Mediator* const host = get_host_mediator();
    if (host != nullptr && database != nullptr && host->get_DB() != nullptr &&
        host->get_DB()->server == database->server && !host->get_DB()->is_writable() &&
        database->is_writable())
        database->attach_mediator_to_DB(host, host->get_DB_resname());
    return host;
}

void ODB_ReferenceToObject::set_icon(PixelMap* map)
{
    zmr::OwnedObject<PixelMap> taken(map);
    if (ODB_Mediator* const host = host_to_write())
        host->set_icon(taken.release());
}

const PixelMap* ODB_ReferenceToObject::get_icon() const
{
    const ODB_Mediator* const host = get_host_mediator();
    return host == nullptr ? nullptr : host->get_icon();
}

void ODB_ReferenceToObject::unload_icon()
{
    if (ODB_Mediator* const host = get_host_mediator())
        host->unload_icon();
}

bool ODB_ReferenceToObject::has_icon() const
{
    const ODB_Mediator* const host = get_host_mediator();
    return host != nullptr && host->has_icon();
}

void ODB_ReferenceToObject::read(ipstream& in)
{
    const unsigned char version = in.readByte();
    ODB_Mediator::read(in);
    const bool in_same_DB = version >= 2 && in.readByte() != 0;
    GFile file;
    if (!in_same_DB) {
        in >> file;
        file.redirect();
    }
    GResourceFullName target;
    if (version >= 1) {
        in >> target;
    } else {
        in >> target.name;
        target.type = ObjectDatabase::MediatorResourceType;
    }
    in_same_DB_ = in_same_DB;
    referenced_DB_filename_ = file;
    referenced_object_resname_ = target;
}

void ODB_ReferenceToObject::write(opstream& out)
{
    out.writeByte(kVersion);
    ODB_Mediator::write(out);
    out.writeByte(in_same_DB_ ? 1 : 0);
    if (!in_same_DB_)
        out << referenced_DB_filename_;
    out << referenced_object_resname_;
}
