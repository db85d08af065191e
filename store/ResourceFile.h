#pragma once

#include "foundation/GFile.h"
#include "foundation/GIO.h"
#include "foundation/GStreamable.h"
#include "store/GCallBackReason.h"
#include "store/GResourceFullName.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class GObjectPlace;
class ResourceFileServer;

/// Where a resource's content lies in the server's stream.
struct ResourceFileBlock {
    std::uint32_t offset = 0;    ///< Start of the content in the stream of the server.
    std::uint32_t presence = 0;  ///< 0 when there is no such resource, or it ends beyond 2^31 - 1.
    std::uint32_t length = 0;    ///< Bytes of content.
    std::uint32_t sequential = 0;  ///< Not 0: reached only by seeking to `offset` and skipping.
};

/// One client of a library file: a file of named, typed resources in a tree of directories. Clients
/// of one file share a server, which holds the open file and the loaded instances.
///
/// A missing resource reads as null and a failed operation is seen by `server` being null or by
/// `server->error()`; nothing here throws but for want of memory. Writing needs a client opened
/// with bit 2; on another one it does nothing. Changes are kept at the commit points: `flush`, the
/// last `close`, and by themselves after 4 MiB or a second of work, never inside a CommitScope. A
/// file that is no library is never overwritten. Operations lock the server; callbacks run under
/// that lock.
class ZMR_GV_API ResourceFile : public GStreamable {
    G_DECLARE_CLASS(ResourceFile)

public:
    /// What callbacks receive; reasons extend it behind `server`.
    struct Reason_BaseInfo {
        ResourceFileServer* server = nullptr;
    };
    struct DirectoryRenamedInfo : Reason_BaseInfo {
        const GResourcePath* old_path = nullptr;
        const GResourcePath* new_path = nullptr;
    };
    /// Evoked, with a DirectoryRenamedInfo, after a directory was renamed.
    static const GCallBackReason Reason_DirectoryRenamed;
    using Callback = void (*)(GCallBackReason reason, void* info, void* user);

    /// An unopened file.
    ResourceFile() : ResourceFile(nullptr, GIO::OpenReadWrite) {}
    /// Opens the file when the name is not null. Mode bit 2 asks for writing; a missing file is
    /// then made at the first commit.
    ResourceFile(const char* file, GIO::IOOpenMode mode);
    /// A further client of the same server.
    ResourceFile(const ResourceFile& other);
    ResourceFile& operator=(const ResourceFile& other);
    ~ResourceFile() override;

    void shut_down() override;

    /// Opens the file; an open client is closed first. On failure `server` is null and open_error
    /// tells why.
    virtual void open(const char* file, GIO::IOOpenMode mode);
    /// Ends this client. The last one of a server commits, frees the loaded instances and closes
    /// the file.
    virtual void close();
    /// Names the file's kind. Writes nothing when it is the same or the client can't write.
    virtual void set_type(const GString& type);
    /// Commits.
    virtual void flush();
    /// Compacts the file: moves contents into free space and cuts the end off, by ordinary commits.
    virtual void pack();
    /// The same, telling `progress` now and then the bytes done and in all, which may grow. Its
    /// false stops the work, which changes nothing that is seen; it runs under the lock and uses no
    /// library. False when it was stopped or nothing can be written, also inside a CommitScope.
    virtual bool pack(const std::function<bool(std::uint64_t, std::uint64_t)>& progress);

    [[nodiscard]] int io_mode() const { return mode_; }
    /// Whether this client may write: open, and with bit 2.
    [[nodiscard]] bool is_writable() const
    {
        return server != nullptr && (mode_ & GIO::OpenWrite) != 0;
    }
    /// The file's full name; empty when not open.
    [[nodiscard]] GFile get_filename() const;
    /// The file's kind.
    [[nodiscard]] GString get_type() const;
    /// Why the last open failed, as a sentence that names the file: missing, no library, damaged,
    /// or in use by whom. Empty after a success.
    [[nodiscard]] const GString& open_error() const { return open_error_; }
    /// What kind of failure that was.
    enum class OpenFailure : std::uint8_t { None, Missing, NoLibrary, Damaged, InUse, Device };
    [[nodiscard]] OpenFailure open_failure() const { return open_failure_; }

    /// A number that moves whenever what the file holds was changed by any client in this process,
    /// committed or not: who shows what is in the file compares it, at idle for instance, and looks
    /// again when it has moved. Not by a failure, which takes changes back: that is seen at the
    /// server's error(). 0 when not open. Any thread, while this client stays open; takes no lock.
    [[nodiscard]] std::uint64_t change_count() const;

    [[nodiscard]] bool exist(const GResourceFullName& name) const;
    /// Reads a resource; null when there is none, when it is damaged, raw, or of an unknown class.
    /// With `keep_loaded` the instance belongs to the server, and later calls of any client give
    /// the same one; without it each call makes a new one that the caller owns.
    [[nodiscard]] GStreamable* get(const GResourceFullName& name, bool keep_loaded);
    [[nodiscard]] GStreamable* get(const GString& name, const GString& type, bool keep_loaded);
    /// Writes a resource in place of any old one. With `keep_loaded` the server takes the instance
    /// over, also where this client can't write; else the caller keeps it. Another loaded instance
    /// of that name is destroyed.
    void put(GStreamable* object, const GResourceFullName& name, bool keep_loaded);
    void put(GStreamable* object, const GString& name, const GString& type, bool keep_loaded);
    void remove(const GResourceFullName& name);
    /// Moves content and loaded instance, onto an existing resource too. Names with neither name
    /// nor type rename a directory with all below it; onto an existing one that is refused.
    void rename(const GResourceFullName& from, const GResourceFullName& to);
    /// Copies the stored bytes of one resource between files.
    void copy_from(const GResourceFullName& to, const ResourceFile& source,
                   const GResourceFullName& from);
    /// Stores the stream's next `size` bytes, to its end with -1, as raw content. `flags` is 0.
    void copy_from(const GResourceFullName& to, ipstream& source, long size, unsigned int flags);
    /// Writes the content, uncompressed, to the stream. False when there is none, it is damaged, or
    /// the stream fails. `flags` is false.
    bool extract_to(opstream& out, const GResourceFullName& name, bool flags) const;
    /// The class name of a stored streamable, for gfreestr; null when there is none. Reads no
    /// content.
    [[nodiscard]] char* read_class_name(const GResourceFullName& name) const;
    [[nodiscard]] ResourceFileBlock get_resource_block(const GResourceFullName& name) const;
    /// Removes every resource, and destroys all loaded instances.
    void empty();

    /// True when the file is a library that can be read.
    [[nodiscard]] static bool IsValidToRead(const char* file);
    static void RegisterCallback(GCallBackReason reason, Callback callback, void* user);
    /// Takes a registration back; GAnyReason takes back the pair under all reasons.
    static void UnRegisterCallback(GCallBackReason reason, Callback callback, void* user);
    /// Calls each callback registered for `reason`. Callbacks may register and take back on the
    /// way.
    static void EvokeCallback(GCallBackReason reason, Reason_BaseInfo& info);

    /// Destroys the instance that the server holds of that resource, to which nobody may keep a
    /// pointer. The resource stays.
    void unload(const GResourceFullName& name);
    /// The instances of type `type` that are in memory in `path`, and with `recursive` below it.
    /// Costs their number and that of the directories below; reads nothing.
    [[nodiscard]] std::vector<GStreamable*> loaded_instances(const GResourcePath& path,
                                                             const GString& type,
                                                             bool recursive) const;

    /// One damaged resource, or a damaged piece of the index that hides an unknown number.
    struct Damage {
        GResourceFullName name;  ///< Name and type are empty when a piece of the index is damaged.
        std::string reason;
    };
    /// Reads every byte of the file and checks it; calls `report` for each damage. True when there
    /// is none. `progress`, when given, is told the bytes done and in all, and stops the check by
    /// false.
    bool verify(const std::function<void(const Damage&)>& report,
                const std::function<bool(std::uint64_t, std::uint64_t)>& progress = {});
    /// The damage met last by a reading operation of any client, or null.
    [[nodiscard]] const Damage* last_damage() const;

    /// Holds commits back while it lives: what happens inside is kept whole or not at all. Nests.
    class ZMR_GV_API CommitScope {
    public:
        explicit CommitScope(const ResourceFile& file);
        ~CommitScope();
        CommitScope(const CommitScope&) = delete;
        CommitScope& operator=(const CommitScope&) = delete;

    private:
        ResourceFileServer* server_;
    };

    /// Removes the object at `place`, which lies outside this file, once the changes made so far
    /// are durable: so a stop never leaves an entry without the object that it names. That is at
    /// the end of the outermost CommitScope, which then commits, or at once outside of one. When
    /// the commit fails the object stays.
    void remove_after_commit(const GObjectPlace& place);
    /// Takes `place`, where an object is put again, out of those that wait to be removed.
    void keep_place(const GObjectPlace& place);

    ResourceFileServer* server = nullptr;  ///< Null when not open.
    GResourcePath current_path;            ///< The directory of operations that take a bare name.

protected:
    /// The file's name, its mode and the current directory: reading opens the file.
    void read(ipstream& in) override;
    void write(opstream& out) override;
    /// Drops what was changed since the last commit, and sets the server's error: for a change of
    /// several steps that stopped half-way for want of memory.
    void give_up_changes() noexcept;
    /// Calls `visit` with each instance that is in memory; it must neither load nor remove. Takes
    /// no memory, so that it serves where there is none.
    void visit_loaded(void (*visit)(GStreamable* instance, void* user), void* user) const;

private:
    void attach(ResourceFileServer* new_server);
    void fail_open(const char* file, OpenFailure failure, const std::string& reason);

    int mode_ = 0;
    OpenFailure open_failure_ = OpenFailure::None;
    GString open_error_;
};
