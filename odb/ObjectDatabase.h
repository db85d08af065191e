#pragma once

#include "foundation/GCollection.h"
#include "foundation/GPointer.h"
#include "foundation/GStringCollection.h"
#include "foundation/TGVector.h"
#include "store/ResourceFile.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class ODB_Mediator;
class ODB_MediatorsArray;
class ODB_Options;

/// A library of named, typed objects in one resource file. Each object has a mediator
/// (ODB_Mediator): a few bytes that stay loaded, are shared by all clients of the file, and answer
/// for the object without reading it. All resources of one object lie under one directory and one
/// name and differ by type (docs/odb.md lists the types).
///
/// Operations that name an object come in three forms: a bare name in `current_path`, a path and a
/// name, and a GResourceFullName. An absent object, and a file that can't be written, make them do
/// nothing or answer null; nothing here raises an error of its own. Each operation is one commit:
/// an object is there whole or not at all. User-interface thread.
class ZMR_GV_API ObjectDatabase : public ResourceFile {
    G_DECLARE_CLASS(ObjectDatabase)

public:
    /// Type of the resource that holds a mediator, and the kind of such files.
    static const GString MediatorResourceType;
    /// Type of the resource that holds an object's icon, a PixelMap.
    static const GString ODB_IconResourceType;
    /// Evoked, with a MediatorModifiedInfo, when a mediator was changed and written.
    static const GCallBackReason Reason_MediatorModified;
    struct MediatorModifiedInfo : Reason_BaseInfo {
        ODB_Mediator* mediator = nullptr;
    };

    /// A hook around each load of an object, by which a newer program brings old objects up to
    /// date. Its operations run under the lock of the database's server, so where several threads
    /// load they use no other library.
    class ZMR_GV_API ConversionObject {
    public:
        virtual ~ConversionObject();
        /// Called before the object is loaded. Does nothing here.
        virtual void prepare_to_loading(ObjectDatabase& database, const GResourceFullName& name);
        /// Returns the object to go on with; `object` may be null.
        virtual GStreamable* convert_after_loading(GStreamable* object, ObjectDatabase& database,
                                                   const GResourceFullName& name) = 0;
    };

    /// An unopened database.
    ObjectDatabase() : ObjectDatabase(nullptr, GIO::OpenReadWrite) {}
    ObjectDatabase(const char* file, GIO::IOOpenMode mode);
    /// A further client of the same file.
    ObjectDatabase(const ObjectDatabase& other);
    ObjectDatabase& operator=(const ObjectDatabase& other);
    ~ObjectDatabase() override;

    void read(ipstream& in) override;
    void write(opstream& out) override;
    /// Hands the mediators attached here to another client of the file that stays, or detaches
    /// them.
    void close() override;
    /// Does nothing: the kind of a database is fixed.
    void set_type(const GString& type) override;
    /// Removes the icons whose objects are gone, then compacts the file.
    void pack() override;
    bool pack(const std::function<bool(std::uint64_t, std::uint64_t)>& progress) override;

    [[nodiscard]] bool object_exists(const GString& name) const;
    [[nodiscard]] bool object_exists(const GResourcePath& path, const GString& name) const;
    /// Tests the very resource named, its type included.
    [[nodiscard]] bool object_exists(const GResourceFullName& name) const;

    /// Stores an object, which stays the caller's, through `mediator`, which the file takes over; a
    /// null one means a new ODB_InternalObject. An unequal mediator of that name is removed with
    /// all its resources but the icon. With a null object the mediator takes the class from what is
    /// stored. An unopened database destroys the mediator.
    void append_object(const GStreamable* object, const GString& name, ODB_Mediator* mediator);
    void append_object(const GStreamable* object, const GResourcePath& path, const GString& name,
                       ODB_Mediator* mediator);
    void append_object(const GStreamable* object, const GResourceFullName& name,
                       ODB_Mediator* mediator);

    /// Loads the object, which the caller owns; it passes through the registered conversions.
    [[nodiscard]] GStreamable* get_object(const GString& name);
    [[nodiscard]] GStreamable* get_object(const GResourcePath& path, const GString& name);
    [[nodiscard]] GStreamable* get_object(const GResourceFullName& name);

    /// Removes an object with all its resources but the icon, which a new object of that name would
    /// show; `pack` removes it.
    void remove_object(const GString& name);
    void remove_object(const GResourcePath& path, const GString& name);
    void remove_object(const GResourceFullName& name);

    /// Moves an object with all its resources. Where another object has the new name it is
    /// replaced, and one that lay outside of this place, in a file of its own, is removed there.
    /// References are not told.
    void rename_object(const GString& from, const GString& to);
    void rename_object(const GResourcePath& from_path, const GString& from_name,
                       const GResourcePath& to_path, const GString& to_name);
    void rename_object(const GResourceFullName& from, const GResourceFullName& to);

    /// Copies an object with all its resources. The form with bare names uses this database's
    /// current directory on both sides.
    void copy_object_to(const GString& from, ObjectDatabase& target, const GString& to);
    void copy_object_to(const GResourcePath& from_path, const GString& from_name,
                        ObjectDatabase& target, const GResourcePath& to_path,
                        const GString& to_name);
    void copy_object_to(const GResourceFullName& from, ObjectDatabase& target,
                        const GResourceFullName& to);

    /// The mediator of an object, owned by the file; null when there is none.
    [[nodiscard]] ODB_Mediator* get_mediator(const GString& name);
    [[nodiscard]] ODB_Mediator* get_mediator(const GResourcePath& path, const GString& name);
    [[nodiscard]] ODB_Mediator* get_mediator(const GResourceFullName& name);

    /// Adds the mediators of a directory, and with `recursive` of those below, to `result`. Reads
    /// and keeps every mediator of the range, and no object.
    void get_contents(ODB_MediatorsArray& result, bool recursive);
    void get_contents(const GResourcePath& path, ODB_MediatorsArray& result, bool recursive);
    /// The same for the mediators that are in memory; reads nothing and attaches nothing.
    void get_cached_mediators(const GResourcePath& path, ODB_MediatorsArray& result,
                              bool recursive);
    /// The names alone; `result` is emptied first.
    void get_names(GStringCollection& result, bool recursive);
    void get_names(const GResourcePath& path, GStringCollection& result, bool recursive);

    /// Copies all objects under their names. Nothing happens between clients of one file.
    void copy_to(ObjectDatabase& target);
    /// Removes everything.
    void empty();

    /// The class of mediators that the application makes by default, kept in the file. The first
    /// question writes the record where the file can be written.
    [[nodiscard]] const GMetaClass* get_default_mediator() const;
    void set_default_mediator(const GMetaClass* mediator_class);

    /// Makes `file` relative to this database's directory when it lies in it.
    void shrink_filename(GFile& file) const;

    [[nodiscard]] static bool IsMediatorType(const GString& type);
    /// Takes a conversion over for the life of the library; null does nothing. The one added last
    /// is asked first.
    static void AddConversion(ConversionObject* conversion);

private:
    friend class ODB_Mediator;
    friend class ODB_ReferenceToObject;

    /// False when no instance of that name can be taken over.
    [[nodiscard]] bool can_hold(const GResourceFullName& name) const;
    [[nodiscard]] GResourceFullName mediator_name(const GString& name) const;
    void prepare_conversions(const GResourceFullName& name);
    [[nodiscard]] GStreamable* convert(GStreamable* object, const GResourceFullName& name);
    /// The mediator of an object that this client, which can write, is about to change. One that a
    /// reading client fetched first is attached to this one, so that it can give up what it keeps.
    [[nodiscard]] ODB_Mediator* mediator_to_write(const GResourceFullName& name);
    void collect_mediators(const GResourcePath& path, bool recursive,
                           std::vector<ODB_Mediator*>& mediators);
    /// Runs the steps of one change in one commit. When memory runs out among them, none of them is
    /// kept: the library has failed then, and what it held at the last commit is what is seen.
    template <typename Steps>
    void change_whole(const Steps& steps);
    /// Whether the file holds that very mediator. Linear in what is in memory, of which it takes
    /// none.
    [[nodiscard]] bool is_loaded(const ODB_Mediator* mediator) const;
    void attach_object_to_DB(ODB_Mediator* mediator, const GResourceFullName& name);
    void attach_mediator_to_DB(ODB_Mediator* mediator, const GResourceFullName& name);
    void notify_about_mediator_modification(ODB_Mediator* mediator);
    void get_all_clients(GCollection& clients, bool include_self) const;
    void get_all_clients(const ResourceFileServer* of_server, GCollection& clients,
                         bool include_self) const;
    void directory_renamed(const GResourcePath& old_path, const GResourcePath& new_path);
    void collect_icon_names(const GResourcePath& path, TGVector<GResourceFullName>& names) const;
    /// The client of `file` that the references in the library of `holder` share. Null when the
    /// file can't be read.
    static std::shared_ptr<ObjectDatabase> OpenForReferences(const GFile& file,
                                                             const ObjectDatabase& holder);
    /// Those in memory in and below `path` that are attached to this client, in no order.
    [[nodiscard]] std::vector<ODB_Mediator*> attached_mediators(const GResourcePath& path) const;
    void hand_mediators_over();
    void detach_mediators();
    [[nodiscard]] std::shared_ptr<ObjectDatabase> find_heir() const;
    void end_circle();
    ODB_Options* get_DB_options() const;
    void update_DB_options();
    static void ResFileCallBackFunc(GCallBackReason reason, void* info, void* user);

    mutable TGPointer<ODB_Options> options_;  ///< Owned by the file's server.
    /// The library whose references share this client; null for a client of the application.
    const ResourceFileServer* held_for_ = nullptr;
    bool was_attached_to_ = false;  ///< Some mediator was, since the opening or before.
    bool closing_ = false;          ///< In `close`, which may come back to this client.
    bool leaving_ = false;          ///< About to be closed: takes no mediators over.
};
