#include "odb/ObjectDatabase.h"

#include "foundation/GLock.h"
#include "foundation/GStaticText.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "odb/ODB_InternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_Options.h"
#include "store/GResourceIterators.h"
#include "store/ResourceFileServer.h"

#include <algorithm>
#include <new>
#include <utility>

G_DEFINE_CLASS(ObjectDatabase, ResourceFile);

namespace {

/// Objects that copy_to copies before it lets a commit come.
constexpr long kCopiedAtOnce = 4096;

// Each loaded mediator's name holds the type: sharing one text saves a block for each.
constinit const zmr::StaticText kMediatorType(".ODB mediators");
constinit const zmr::StaticText kIconType(".ODB icon");

}  // namespace

const GString ObjectDatabase::MediatorResourceType = zmr::shared_text(kMediatorType);
const GString ObjectDatabase::ODB_IconResourceType = zmr::shared_text(kIconType);
const GCallBackReason ObjectDatabase::Reason_MediatorModified;

ObjectDatabase::ObjectDatabase(const char* file, GIO::IOOpenMode mode) : ResourceFile(file, mode)
{
    ResourceFile::set_type(MediatorResourceType);
    // Last: what throws behind it would leave a callback to an object that never came to be.
    ResourceFile::RegisterCallback(Reason_DirectoryRenamed, &ResFileCallBackFunc, this);
}

ObjectDatabase::ObjectDatabase(const ObjectDatabase& other) : ResourceFile(other)
{
    ResourceFile::RegisterCallback(Reason_DirectoryRenamed, &ResFileCallBackFunc, this);
}

ObjectDatabase& ObjectDatabase::operator=(const ObjectDatabase& other)
{
    if (this == &other)
        return *this;
    close();
    ResourceFile::operator=(other);
    options_ = other.options_.get();
    return *this;
}

ObjectDatabase::~ObjectDatabase()
{
    ResourceFile::UnRegisterCallback(GAnyReason, &ResFileCallBackFunc, this);
    ObjectDatabase::close();
}

void ObjectDatabase::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    ResourceFile::read(in);
}

void ObjectDatabase::write(opstream& out)
{
    out.writeByte(0);
    ResourceFile::write(out);
}

void ObjectDatabase::set_type(const GString&) {}

void ObjectDatabase::pack()
{
    static_cast<void>(ObjectDatabase::pack({}));
}

bool ObjectDatabase::pack(const std::function<bool(std::uint64_t, std::uint64_t)>& progress)
{
    if (!is_writable())
        return false;
    {
        const CommitScope scope(*this);
        TGVector<GResourceFullName> icons(0, 4);
        collect_icon_names(GResourcePath(), icons);
        for (long i = icons.count - 1; i >= 0; --i) {
            GResourceFullName mediator = icons[i];
            mediator.type = MediatorResourceType;
            if (!object_exists(mediator))
                ResourceFile::remove(icons[i]);
        }
    }
    return ResourceFile::pack(progress);
}

void ObjectDatabase::collect_icon_names(const GResourcePath& path,
                                        TGVector<GResourceFullName>& names) const
{
    GResourceFullName name(path, GString(), ODB_IconResourceType);
    for (GResourceIterator icon(*this, name); icon.index >= 0; --icon) {
        name.name = icon.element();
        names[names.count] = name;
    }
    for (GResourceSubDirectoryIterator below(*this, path); below.index >= 0; --below) {
        GResourcePath deeper = path;
        deeper += below.element();
        collect_icon_names(deeper, names);
    }
}

GResourceFullName ObjectDatabase::mediator_name(const GString& name) const
{
    return {current_path, name, MediatorResourceType};
}

bool ObjectDatabase::object_exists(const GString& name) const
{
    return object_exists(mediator_name(name));
}

bool ObjectDatabase::object_exists(const GResourcePath& path, const GString& name) const
{
    return object_exists(GResourceFullName(path, name, MediatorResourceType));
}

bool ObjectDatabase::object_exists(const GResourceFullName& name) const
{
    return ResourceFile::exist(name);
}

template <typename Steps>
void ObjectDatabase::change_whole(const Steps& steps)
{
    const CommitScope scope(*this);
    try {
        steps();
    } catch (const std::bad_alloc&) {
        give_up_changes();
        throw;
    }
}

bool ObjectDatabase::can_hold(const GResourceFullName& name) const
{
    zmr::LibraryPath path;
    return server != nullptr && name.name.length() <= zmr::LibraryFile::kMaxNameBytes &&
           name.type.length() <= zmr::LibraryFile::kMaxNameBytes && name.to_library(path);
}

void ObjectDatabase::append_object(const GStreamable* object, const GString& name,
                                   ODB_Mediator* mediator)
{
    append_object(object, mediator_name(name), mediator);
}

void ObjectDatabase::append_object(const GStreamable* object, const GResourcePath& path,
                                   const GString& name, ODB_Mediator* mediator)
{
    append_object(object, GResourceFullName(path, name, MediatorResourceType), mediator);
}

void ObjectDatabase::append_object(const GStreamable* object, const GResourceFullName& name,
                                   ODB_Mediator* mediator)
{
    const GResourceFullName place = name;  // `name` may be a mediator's own, which dies on the way
    if (!can_hold(place)) {
        GStreamable::Destroy(mediator);
        return;
    }
    ODB_Mediator* const made = mediator == nullptr ? new ODB_InternalObject : nullptr;
    ODB_Mediator* const storing = made != nullptr ? made : mediator;
    try {
        change_whole([&] {
            attach_object_to_DB(storing, place);
            storing->store_object(object);
            ResourceFile::put(storing, place, true);
        });
    } catch (...) {
        if (!is_loaded(storing)) {
            storing->set_DB(nullptr);  // it stays the caller's, who may outlive this database
            GStreamable::Destroy(made);
        }
        throw;
    }
}

GStreamable* ObjectDatabase::get_object(const GString& name)
{
    return get_object(mediator_name(name));
}

GStreamable* ObjectDatabase::get_object(const GResourcePath& path, const GString& name)
{
    return get_object(GResourceFullName(path, name, MediatorResourceType));
}

GStreamable* ObjectDatabase::get_object(const GResourceFullName& name)
{
    ODB_Mediator* const mediator = get_mediator(name);
    if (mediator == nullptr)
        return nullptr;
    const GResourceFullName place = name;
    const auto load = [&] {
        prepare_conversions(place);
        return convert(mediator->get_object(), place);
    };
    // What a reference leads to is looked for without a lock held, and loaded under the lock of the
    // library that it lies in: with this one's held as well, two threads that load in opposite
    // directions between two libraries would wait for each other for ever.
    if (mediator->is_reference())
        return load();
    const GSingleLock locked(server->lock);
    return load();
}

void ObjectDatabase::remove_object(const GString& name)
{
    remove_object(mediator_name(name));
}

void ObjectDatabase::remove_object(const GResourcePath& path, const GString& name)
{
    remove_object(GResourceFullName(path, name, MediatorResourceType));
}

void ObjectDatabase::remove_object(const GResourceFullName& name)
{
    if (!is_writable())
        return;
    ODB_Mediator* const mediator = mediator_to_write(name);
    if (mediator == nullptr)
        return;
    GResourceFullName resource = name;
    change_whole([&] {
        mediator->remove_all();
        for (GResourceTypeIterator type(*this, resource.path()); type.index >= 0; --type) {
            if (type.element() == ODB_IconResourceType)
                continue;
            resource.type = type.element();
            ResourceFile::remove(resource);
        }
    });
}

void ObjectDatabase::rename_object(const GString& from, const GString& to)
{
    rename_object(mediator_name(from), mediator_name(to));
}

void ObjectDatabase::rename_object(const GResourcePath& from_path, const GString& from_name,
                                   const GResourcePath& to_path, const GString& to_name)
{
    rename_object(GResourceFullName(from_path, from_name, MediatorResourceType),
                  GResourceFullName(to_path, to_name, MediatorResourceType));
}

void ObjectDatabase::rename_object(const GResourceFullName& from, const GResourceFullName& to)
{
    if (!is_writable())
        return;
    ODB_Mediator* const mediator = mediator_to_write(from);
    if (mediator == nullptr || from == to || !can_hold(to))
        return;
    GResourceFullName source = from;
    GResourceFullName target = to;
    change_whole([&] {
        ODB_Mediator* const replaced = mediator_to_write(target);
        mediator->set_DB_resname(target);
        if (replaced != nullptr && !(*replaced == *mediator))
            replaced->remove_all();
        for (GResourceTypeIterator type(*this, source.path()); type.index >= 0; --type) {
            source.type = type.element();
            target.type = type.element();
            ResourceFile::rename(source, target);
        }
    });
}

void ObjectDatabase::copy_object_to(const GString& from, ObjectDatabase& target, const GString& to)
{
    if (server == target.server && from == to)
        return;
    copy_object_to(mediator_name(from), target, mediator_name(to));
}

void ObjectDatabase::copy_object_to(const GResourcePath& from_path, const GString& from_name,
                                    ObjectDatabase& target, const GResourcePath& to_path,
                                    const GString& to_name)
{
    copy_object_to(GResourceFullName(from_path, from_name, MediatorResourceType), target,
                   GResourceFullName(to_path, to_name, MediatorResourceType));
}

void ObjectDatabase::copy_object_to(const GResourceFullName& from, ObjectDatabase& target,
                                    const GResourceFullName& to)
{
    if (server == target.server && from == to)
        return;
    ODB_Mediator* const source = get_mediator(from);
    if (source == nullptr || !target.can_hold(to))
        return;
    GResourceFullName source_name = from;
    GResourceFullName target_name = to;
    auto* const copy = static_cast<ODB_Mediator*>(source->clone(true));
    if (copy == nullptr)
        return;
    try {
        target.change_whole([&] {
            target.attach_object_to_DB(copy, target_name);
            copy->copy_object_from(*source);
            target.put(copy, target_name, true);
            for (GResourceTypeIterator type(*this, source_name.path()); type.index >= 0; --type) {
                if (IsMediatorType(type.element()))
                    continue;
                source_name.type = type.element();
                target_name.type = type.element();
                target.copy_from(target_name, *this, source_name);
            }
        });
    } catch (...) {
        if (!target.is_loaded(copy))
            GStreamable::Destroy(copy);
        throw;
    }
}

ODB_Mediator* ObjectDatabase::get_mediator(const GString& name)
{
    return get_mediator(mediator_name(name));
}

ODB_Mediator* ObjectDatabase::get_mediator(const GResourcePath& path, const GString& name)
{
    return get_mediator(GResourceFullName(path, name, MediatorResourceType));
}

ODB_Mediator* ObjectDatabase::get_mediator(const GResourceFullName& name)
{
    auto* const mediator = zmr::class_cast<ODB_Mediator>(ResourceFile::get(name, true));
    if (mediator != nullptr && mediator->get_DB() == nullptr)
        attach_mediator_to_DB(mediator, name);
    return mediator;
}

ODB_Mediator* ObjectDatabase::mediator_to_write(const GResourceFullName& name)
{
    ODB_Mediator* const mediator = get_mediator(name);
    if (mediator != nullptr && mediator->get_DB() != nullptr && !mediator->get_DB()->is_writable())
        attach_mediator_to_DB(mediator, GResourceFullName(name));
    return mediator;
}

void ObjectDatabase::get_contents(ODB_MediatorsArray& result, bool recursive)
{
    get_contents(current_path, result, recursive);
}

void ObjectDatabase::get_contents(const GResourcePath& path, ODB_MediatorsArray& result,
                                  bool recursive)
{
    std::vector<ODB_Mediator*> mediators;
    collect_mediators(path, recursive, mediators);
    result.insert_all(std::move(mediators));
}

void ObjectDatabase::collect_mediators(const GResourcePath& path, bool recursive,
                                       std::vector<ODB_Mediator*>& mediators)
{
    GResourceFullName name(path, GString(), MediatorResourceType);
    for (GResourceIterator entry(*this, name); entry.index >= 0; --entry) {
        name.name = entry.element();
        if (ODB_Mediator* const mediator = get_mediator(name))
            mediators.push_back(mediator);
    }
    if (!recursive)
        return;
    for (GResourceSubDirectoryIterator below(*this, path); below.index >= 0; --below) {
        GResourcePath deeper = path;
        deeper += below.element();
        collect_mediators(deeper, true, mediators);
    }
}

void ObjectDatabase::get_cached_mediators(const GResourcePath& path, ODB_MediatorsArray& result,
                                          bool recursive)
{
    std::vector<ODB_Mediator*> mediators;
    for (GStreamable* const instance : loaded_instances(path, MediatorResourceType, recursive)) {
        if (auto* const mediator = zmr::class_cast<ODB_Mediator>(instance))
            mediators.push_back(mediator);
    }
    result.insert_all(std::move(mediators));
}

void ObjectDatabase::get_names(GStringCollection& result, bool recursive)
{
    get_names(current_path, result, recursive);
}

void ObjectDatabase::get_names(const GResourcePath& path, GStringCollection& result, bool recursive)
{
    ODB_MediatorsArray contents;
    get_contents(path, contents, recursive);
    contents.get_names(result);
}

void ObjectDatabase::copy_to(ObjectDatabase& target)
{
    if (server == target.server)
        return;
    ODB_MediatorsArray contents;
    get_contents(GResourcePath(), contents, true);
    for (long i = 0; i < contents.count;) {
        const CommitScope scope(target);  // one commit, and its wait for the disk, for many
        for (const long end = std::min(contents.count, i + kCopiedAtOnce); i < end; ++i) {
            const GResourceFullName name = contents.at(i).get_DB_resname();
            copy_object_to(name, target, name);
        }
    }
}

void ObjectDatabase::empty()
{
    if (!is_writable())
        return;
    change_whole([this] {
        ODB_MediatorsArray contents;
        get_contents(GResourcePath(), contents, true);
        for (long i = contents.count - 1; i >= 0; --i)
            contents.at(i).remove_all();
        options_ = nullptr;
        ResourceFile::empty();
    });
}

void ObjectDatabase::shrink_filename(GFile& file) const
{
    GFile directory = get_filename();
    directory.just_directory();
    file.shrink(directory.text);
}

bool ObjectDatabase::IsMediatorType(const GString& type)
{
    return type == MediatorResourceType;
}

bool ObjectDatabase::is_loaded(const ODB_Mediator* mediator) const
{
    struct Search {
        const ODB_Mediator* wanted;
        bool found = false;
    } search{mediator};
    visit_loaded(
        [](GStreamable* instance, void* user) {
            auto* const one = static_cast<Search*>(user);
            one->found = one->found || zmr::class_cast<ODB_Mediator>(instance) == one->wanted;
        },
        &search);
    return search.found;
}

void ObjectDatabase::attach_object_to_DB(ODB_Mediator* mediator, const GResourceFullName& name)
{
    if (mediator == nullptr)
        return;
    const ODB_Mediator* const old = get_mediator(name);
    attach_mediator_to_DB(mediator, name);
    if (old != nullptr && !(*old == *mediator))
        remove_object(name);
}

void ObjectDatabase::attach_mediator_to_DB(ODB_Mediator* mediator, const GResourceFullName& name)
{
    if (mediator == nullptr)
        return;
    try {
        mediator->set_DB(this);
        mediator->set_DB_resname(name);
    } catch (...) {
        mediator->ODB_Mediator::set_DB(nullptr);  // whoever asks for it next attaches it again
        throw;
    }
}

void ObjectDatabase::notify_about_mediator_modification(ODB_Mediator* mediator)
{
    ResourceFile::put(mediator, mediator->get_DB_resname(), true);
    MediatorModifiedInfo info;
    info.server = server;
    info.mediator = mediator;
    ResourceFile::EvokeCallback(Reason_MediatorModified, info);
}

void ObjectDatabase::directory_renamed(const GResourcePath& old_path, const GResourcePath& new_path)
{
    // Mediators of one directory share its levels, and go on to share those of the new one.
    GResourcePath former;
    GResourcePath present;
    bool is_moved = false;
    for (ODB_Mediator* const mediator : attached_mediators(new_path)) {
        GResourceFullName name = mediator->get_DB_resname();
        if (!name.shares_levels(former) || !is_moved) {
            former = name.path();
            present = former;
            is_moved = present.rename_path_from_root(old_path, new_path);
        }
        if (!is_moved)
            continue;
        static_cast<GResourcePath&>(name) = present;
        mediator->set_DB_resname(name);
    }
}

void ObjectDatabase::ResFileCallBackFunc(GCallBackReason, void* info, void* user)
{
    const auto* const renamed =
        static_cast<const DirectoryRenamedInfo*>(static_cast<const Reason_BaseInfo*>(info));
    auto* const database = static_cast<ObjectDatabase*>(user);
    if (renamed->server == database->server)
        database->directory_renamed(*renamed->old_path, *renamed->new_path);
}
