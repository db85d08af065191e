#pragma once

#include "platform/FileDevice.h"
#include "store/LibraryEntry.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zmr {

class LibraryState;

enum class LibraryAccess : std::uint8_t { Read, Write };

enum class LibraryOpenStatus : std::uint8_t {
    Ok,
    Missing,      ///< No such file, and it was to be read.
    NotALibrary,  ///< A file of another kind. It is never written to.
    NewerFormat,  ///< A library of a version that this program does not know.
    Damaged,      ///< A library, but neither root can be used.
    Locked,       ///< Another process writes it; `text` says who.
    Failed        ///< The system refused; see `error`.
};

struct LibraryOpenResult {
    LibraryOpenStatus status = LibraryOpenStatus::Failed;
    FileError error;   ///< With Failed, what the system said.
    std::string text;  ///< For a message, without the file's name and without a full stop:
                       ///< "in use by ann@studio-4, process 4711, since 2026-03-01 09:12:07 UTC".
};

/// What verify and last_damage tell of one place that can't be read.
struct LibraryDamage {
    enum class Part : std::uint8_t {
        None,
        Content,         ///< One entry's content: `name` names it whole.
        IndexExtent,     ///< Some entries of the directory `name.path` are lost from sight.
        DirectoryTable,  ///< Some directories are lost from sight; `name.path` is the first of
                         ///< them.
        TypeTable,       ///< The counts of types in the whole file; pack makes them anew.
        FreeSpace,       ///< The list of free space; pack makes it anew.
        RootSlot         ///< One of the two root slots; the other one serves.
    };
    Part part = Part::None;
    LibraryName name;
    std::string text;  ///< For a message: "its checksum does not fit".
};

/// Figures for a person; see statistics().
struct LibraryStatistics {
    std::uint64_t file_bytes = 0;
    std::uint64_t free_bytes = 0;  ///< Inside the file, free at once or when readers have gone.
    std::uint64_t entries = 0;
    std::uint64_t directories = 0;  ///< With entries of their own.
    std::uint64_t commits = 0;      ///< Since the file was made.
    std::uint64_t syncs = 0;        ///< Since this object was opened.
};

/// Gives the next bytes of a content whose size may be unknown: fills up to `size` bytes at `data`
/// and sets `done`, 0 at the end. False gives up.
using LibrarySource = std::function<bool(void* data, std::size_t size, std::size_t& done)>;
/// Told now and then how far long work has come, in bytes; false stops it. `all` may grow
/// meanwhile.
using LibraryProgress = std::function<bool(std::uint64_t done, std::uint64_t all)>;

/// Told one entry of a list; false stops the list.
using LibraryEntryVisitor = std::function<bool(const LibraryEntryView& entry)>;

/// When work is folded and synced. The values are those of every product; tests make them small, so
/// that little data takes all the ways that much does.
struct LibraryTuning {
    /// Commits are folded into the index when the records behind the root pass this.
    std::uint64_t tail_bytes = 1u << 20;
    /// And when the changes take this much memory.
    std::size_t change_bytes = 8u << 20;
    /// Commits that write more sync their data before their record, so that an open never has to
    /// read more than this to trust the last record. At most the default.
    std::uint64_t one_sync_bytes = 8u << 20;
    /// Zeros that are written behind a run of small commits, for the next ones to lie in. A sync
    /// that finds the file's length and blocks as they were takes two thirds of the time. They are
    /// cut off by close().
    std::uint64_t reserve_bytes = 512u << 10;
};

/// The file that holds a library: entries of bytes under (directory, name, type), committed so that
/// a crash or a power cut at any instant leaves the last commit. docs/library-format.md tells the
/// layout and why it holds.
///
/// Each entry has a kind, a label of the caller's and a content of any size. Nothing here throws
/// but std::bad_alloc. A refused or failed call gives false, 0 or an empty result. Every byte given
/// out is checked against its checksum; a content that fails is refused and named by last_damage().
///
/// A writer sees its own changes at once; other processes, and the next open, see them from the
/// commit on. Changes commit by themselves after kCommitBytes or kCommitSeconds of work, but never
/// inside a LibraryCommitScope; commit() and close() commit the rest.
///
/// A reader keeps the state of its open (or its last refresh()) and never waits for the writer. One
/// process writes. Within a process, keep one LibraryFile for each file (found by identity()): two
/// of them are to each other as two processes are.
///
/// Any thread may call any operation; calls exclude each other. A LibrarySource and the visitors
/// are called under that lock: they may read from this object but not change it (which is refused).
class ZMR_GV_API LibraryFile {
public:
    static constexpr std::size_t kMaxNameBytes = 1024;  ///< Of a name and of a type.
    static constexpr std::size_t kMaxLabelBytes = 255;
    static constexpr std::size_t kMaxFileKindBytes = 1024;
    static constexpr std::size_t kMaxTypesInDirectory = 65536;
    static constexpr std::uint64_t kCommitBytes = 4u << 20;
    static constexpr std::uint64_t kCommitSeconds = 1;
    /// Contents up to this lie with the index, read together with it.
    static constexpr std::size_t kInlineBytes = 512;

    /// Works on the files of `files`, which must outlive it. Closed until open().
    explicit LibraryFile(FileSystemDevice& files = FileSystemDevice::Real(),
                         const LibraryTuning& tuning = {});
    /// Closes.
    ~LibraryFile();
    LibraryFile(const LibraryFile&) = delete;
    LibraryFile& operator=(const LibraryFile&) = delete;

    /// Opens the file called `name`. With Write, a missing file (or one of no bytes) is an empty
    /// library that is made at its first commit, or earlier when what is put no longer fits in
    /// memory, and `owner` tells other processes who writes, e.g. process_identity(). Reads the two
    /// roots and the commits behind them, at most about 1 MiB however large the file is; with Read
    /// it writes nothing. On any status but Ok the object stays closed.
    [[nodiscard]] LibraryOpenResult open(const std::string& name, LibraryAccess access,
                                         std::string_view owner = {});
    /// Makes a reader the writer: takes the lock, then the newest commit. Ok when it writes
    /// already. On any other status it stays a reader of what it saw. Pinned contents stay
    /// readable.
    [[nodiscard]] LibraryOpenResult begin_writing(std::string_view owner = {});
    /// Lets a reader see the newest commit; always true for a writer. False when that can't be
    /// read: then nothing is seen until a call that succeeds.
    [[nodiscard]] bool refresh();
    /// Commits, writes a root so that the next open has nothing to follow, and lets go of all. True
    /// unless error() is set; the object is closed in either case. Open scopes and pins end.
    bool close();
    [[nodiscard]] bool is_open() const;
    [[nodiscard]] bool is_writable() const;
    /// True when the bytes of `name` begin as a library's do and a root can be read. Writes
    /// nothing.
    [[nodiscard]] static bool IsLibrary(FileSystemDevice& files, const std::string& name);
    /// The file behind it. False while a new file has not been made.
    [[nodiscard]] bool identity(FileIdentity& identity) const;

    /// Sticky from the first failed write, sync or lost lock of a writer, or change or commit that
    /// ran out of memory, until close(). From then on changes are refused, and the last commit is
    /// what is seen.
    [[nodiscard]] FileError error() const;
    /// The last damaged place that an operation met; Part::None when there was none.
    [[nodiscard]] LibraryDamage last_damage() const;

    /// A text that names what the library is of; at most kMaxFileKindBytes.
    [[nodiscard]] std::string file_kind() const;
    [[nodiscard]] bool set_file_kind(std::string_view kind);

    // Entries. Names beyond the limits are never there, and putting them is refused.
    [[nodiscard]] bool exists(const LibraryPath& path, std::string_view name,
                              std::string_view type) const;
    /// False when there is no such entry.
    [[nodiscard]] bool find(const LibraryPath& path, std::string_view name, std::string_view type,
                            LibraryContent& content) const;
    /// The whole content, checked and inflated; false when there is none or it is damaged. Memory
    /// grows with what was really read, never with what the file claims.
    [[nodiscard]] bool get(const LibraryPath& path, std::string_view name, std::string_view type,
                           std::string& bytes) const;
    /// Reads stored bytes of a found content from `offset` and checks the blocks that they touch.
    /// Gives the count: less than `size` at the content's end, 0 when a touched block is damaged.
    /// Of a compressed content these are the compressed bytes. A content in the index is read by
    /// get(), or pinned first: until it is written it has no position, and this gives 0.
    [[nodiscard]] std::size_t read_at(const LibraryContent& content, std::uint64_t offset,
                                      void* data, std::size_t size) const;
    /// Puts the entry, in the place of an old one. Streamable contents from 1 KiB are compressed
    /// when their first 2 KiB save an eighth. False, with nothing changed, when refused.
    [[nodiscard]] bool put(const LibraryPath& path, std::string_view name, std::string_view type,
                           ContentKind kind, std::string_view label,
                           std::span<const std::byte> bytes);
    /// Puts a raw content of any size from `source`, written in pieces as it comes. False, with
    /// nothing changed, when refused or when the source gives up.
    [[nodiscard]] bool put_from(const LibraryPath& path, std::string_view name,
                                std::string_view type, std::string_view label,
                                const LibrarySource& source);
    /// Copies a stored content as it lies, without inflating it, with its kind and label. `source`
    /// may be this object. False, with nothing changed, when there is none or it is damaged.
    [[nodiscard]] bool copy_from(const LibraryPath& path, std::string_view name,
                                 std::string_view type, const LibraryFile& source,
                                 const LibraryPath& from_path, std::string_view from_name,
                                 std::string_view from_type);
    /// False when there was none.
    bool remove(const LibraryPath& path, std::string_view name, std::string_view type);
    /// Moves an entry, also between directories, in the place of one that is there. Its content is
    /// not touched. False when there is none.
    [[nodiscard]] bool rename(const LibraryPath& path, std::string_view name, std::string_view type,
                              const LibraryPath& to_path, std::string_view to_name,
                              std::string_view to_type);
    /// Moves a directory with all below it. False when `from` is empty or the root, `to` exists or
    /// lies in `from`, or a path would be too long. Costs the number of directories moved.
    [[nodiscard]] bool rename_directory(const LibraryPath& from, const LibraryPath& to);
    /// Removes every entry; the file's kind stays.
    bool clear();

    // Lists, ascending in byte order.
    /// Tells `visit` the entries of one type in a directory, read where they lie; false stops. What
    /// the views show holds during that call only. Takes no memory that grows with their number.
    void visit(const LibraryPath& path, std::string_view type,
               const LibraryEntryVisitor& visit) const;
    /// The same entries, to keep.
    [[nodiscard]] LibraryEntryList list(const LibraryPath& path, std::string_view type) const;
    [[nodiscard]] std::vector<std::string> types(const LibraryPath& path) const;
    /// The types that occur anywhere in the file.
    [[nodiscard]] std::vector<std::string> types() const;
    /// The names of the directories directly below `path`.
    [[nodiscard]] std::vector<std::string> directories(const LibraryPath& path) const;
    /// True when an entry lies in or below `path`.
    [[nodiscard]] bool directory_exists(const LibraryPath& path) const;

    // Contents used in place.
    /// Finds a content and holds the place where it lies: until as many unpin() calls, or close(),
    /// it is not moved, reused or cut, even when the entry is put anew or removed.
    [[nodiscard]] bool pin(const LibraryPath& path, std::string_view name, std::string_view type,
                           LibraryContent& content);
    void unpin(const LibraryContent& content);
    /// Reads the file by position, bytes not yet written included; gives the count. What lies in a
    /// pinned content is checked, and a damaged block ends the read; other bytes are given as they
    /// are.
    [[nodiscard]] std::size_t read_position(std::uint64_t position, void* data,
                                            std::size_t size) const;
    /// The length of what read_position reads.
    [[nodiscard]] std::uint64_t extent() const;

    // Commits.
    /// Makes all changes durable: one record, one sync (two above one_sync_bytes). Inside a scope
    /// it is done when the outermost ends. True when nothing is left to commit or the scope will do
    /// it.
    bool commit();
    /// Commits when kCommitBytes or kCommitSeconds of work are waiting and no scope is open.
    /// Changes call it themselves; an idle loop may.
    bool commit_if_due();
    void begin_scope();
    void end_scope();
    /// Drops what was changed since the last commit and sets error(): for a change of several steps
    /// that stopped half-way, whose scope is still open.
    void give_up() noexcept;
    [[nodiscard]] bool in_scope() const;

    // Care.
    /// Moves what lies behind free space into it by ordinary commits, then cuts the file's end.
    /// What is seen does not change, and stopping it anywhere changes nothing. Pins and readers of
    /// older states limit what is won. False when it is no writer, a scope is open, `progress`
    /// stopped it, or error() is set.
    bool pack(const LibraryProgress& progress = {});
    /// Reads and checks everything; `visit` is told of each damage. True when there was none and
    /// `progress` did not stop it.
    bool verify(const std::function<void(const LibraryDamage&)>& visit,
                const LibraryProgress& progress = {}) const;
    [[nodiscard]] LibraryStatistics statistics() const;

private:
    std::unique_ptr<LibraryState> state_;
};

/// Keeps the changes of one operation in one commit. Nests. The end of the outermost commits only
/// when it is due or was asked for inside.
class LibraryCommitScope {
public:
    explicit LibraryCommitScope(LibraryFile& file) : file_(file) { file_.begin_scope(); }
    ~LibraryCommitScope() { file_.end_scope(); }
    LibraryCommitScope(const LibraryCommitScope&) = delete;
    LibraryCommitScope& operator=(const LibraryCommitScope&) = delete;

private:
    LibraryFile& file_;
};

}  // namespace zmr
