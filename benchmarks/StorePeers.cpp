#include "StorePeers.h"

#include "store/LibraryFile.h"

#include <lmdb.h>
#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>

namespace {

void check(bool good, const char* what)
{
    if (good)
        return;
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

class LibraryPeer final : public StorePeer {
public:
    void open(const std::string& name, bool write) override
    {
        const auto access = write ? zmr::LibraryAccess::Write : zmr::LibraryAccess::Read;
        check(file_.open(name, access, "benchmark").status == zmr::LibraryOpenStatus::Ok, "open");
    }
    void close() override { check(file_.close(), "close"); }
    void begin() override { file_.begin_scope(); }
    void commit() override
    {
        file_.commit();
        file_.end_scope();
        check(!file_.error(), "commit");
    }
    void put(std::string_view directory, std::string_view name, std::string_view type,
             std::string_view bytes) override
    {
        check(file_.put(path(directory), name, type, zmr::ContentKind::Streamable, "Label",
                        std::as_bytes(std::span(bytes))),
              "put");
    }
    void remove(std::string_view directory, std::string_view name, std::string_view type) override
    {
        check(file_.remove(path(directory), name, type), "remove");
    }
    void rename(std::string_view directory, std::string_view name, std::string_view to,
                std::string_view type) override
    {
        check(file_.rename(path(directory), name, type, path(directory), to, type), "rename");
    }
    std::uint64_t list(std::string_view directory, std::string_view type) override
    {
        std::uint64_t sum = 0;
        file_.visit(path(directory), type, [&](const zmr::LibraryEntryView& entry) {
            sum +=
                entry.bytes.size() + static_cast<unsigned char>(entry.bytes[0]) + entry.name.size();
            return true;
        });
        return sum;
    }
    std::size_t get(std::string_view directory, std::string_view name, std::string_view type,
                    std::string& bytes) override
    {
        check(file_.get(path(directory), name, type, bytes), "get");
        return bytes.size();
    }
    void compact(const std::string&) override { check(file_.pack(), "pack"); }

private:
    static zmr::LibraryPath path(std::string_view directory)
    {
        zmr::LibraryPath path;
        check(path.append(directory), "path");
        return path;
    }
    zmr::LibraryFile file_;
};

class LmdbPeer final : public StorePeer {
public:
    void open(const std::string& name, bool write) override
    {
        check(mdb_env_create(&environment_) == 0, "mdb_env_create");
        mdb_env_set_mapsize(environment_, std::size_t{16} << 30);
        // Read-ahead would bring in a hundred pages for each one that is read.
        const unsigned flags =
            MDB_NOSUBDIR | unsigned{MDB_NORDAHEAD} | (write ? 0u : unsigned{MDB_RDONLY});
        check(mdb_env_open(environment_, name.c_str(), flags, 0664) == 0, "mdb_env_open");
        MDB_txn* start = nullptr;
        check(mdb_txn_begin(environment_, nullptr, write ? 0 : MDB_RDONLY, &start) == 0, "begin");
        check(mdb_dbi_open(start, nullptr, 0, &table_) == 0, "mdb_dbi_open");
        check(mdb_txn_commit(start) == 0, "commit");
    }
    void close() override
    {
        mdb_env_close(environment_);
        environment_ = nullptr;
    }
    void begin() override
    {
        check(mdb_txn_begin(environment_, nullptr, 0, &writing_) == 0, "mdb_txn_begin");
    }
    void commit() override
    {
        check(mdb_txn_commit(writing_) == 0, "mdb_txn_commit");
        writing_ = nullptr;
    }
    void put(std::string_view directory, std::string_view name, std::string_view type,
             std::string_view bytes) override
    {
        const std::string text = key(directory, name, type);
        MDB_val place = value(text);
        MDB_val content = value(bytes);
        check(mdb_put(writing_, table_, &place, &content, 0) == 0, "mdb_put");
    }
    void remove(std::string_view directory, std::string_view name, std::string_view type) override
    {
        const std::string text = key(directory, name, type);
        MDB_val place = value(text);
        check(mdb_del(writing_, table_, &place, nullptr) == 0, "mdb_del");
    }
    void rename(std::string_view directory, std::string_view name, std::string_view to,
                std::string_view type) override
    {
        const std::string text = key(directory, name, type);
        MDB_val place = value(text);
        MDB_val content{};
        check(mdb_get(writing_, table_, &place, &content) == 0, "mdb_get");
        const std::string bytes(static_cast<const char*>(content.mv_data), content.mv_size);
        check(mdb_del(writing_, table_, &place, nullptr) == 0, "mdb_del");
        put(directory, to, type, bytes);
    }
    std::uint64_t list(std::string_view directory, std::string_view type) override
    {
        MDB_txn* reading = nullptr;
        check(mdb_txn_begin(environment_, nullptr, MDB_RDONLY, &reading) == 0, "begin");
        MDB_cursor* cursor = nullptr;
        check(mdb_cursor_open(reading, table_, &cursor) == 0, "mdb_cursor_open");
        const std::string prefix = key(directory, {}, type);
        MDB_val place = value(prefix);
        MDB_val content{};
        std::uint64_t sum = 0;
        for (int got = mdb_cursor_get(cursor, &place, &content, MDB_SET_RANGE); got == 0;
             got = mdb_cursor_get(cursor, &place, &content, MDB_NEXT)) {
            const std::string_view found(static_cast<const char*>(place.mv_data), place.mv_size);
            if (!found.starts_with(prefix))
                break;
            sum += content.mv_size + *static_cast<const unsigned char*>(content.mv_data) +
                   found.size() - prefix.size();
        }
        mdb_cursor_close(cursor);
        mdb_txn_abort(reading);
        return sum;
    }
    std::size_t get(std::string_view directory, std::string_view name, std::string_view type,
                    std::string& bytes) override
    {
        MDB_txn* reading = nullptr;
        check(mdb_txn_begin(environment_, nullptr, MDB_RDONLY, &reading) == 0, "begin");
        const std::string text = key(directory, name, type);
        MDB_val place = value(text);
        MDB_val content{};
        check(mdb_get(reading, table_, &place, &content) == 0, "mdb_get");
        bytes.assign(static_cast<const char*>(content.mv_data), content.mv_size);
        mdb_txn_abort(reading);
        return bytes.size();
    }
    void compact(const std::string& name) override
    {
        const std::string copy = name + ".copy";
        std::filesystem::remove(copy);
        check(mdb_env_copy2(environment_, copy.c_str(), MDB_CP_COMPACT) == 0, "mdb_env_copy2");
        std::filesystem::rename(copy, name);
    }

private:
    static std::string key(std::string_view directory, std::string_view name, std::string_view type)
    {
        std::string text(directory);
        text += '\0';
        text += type;
        text += '\0';
        text += name;
        return text;
    }
    static MDB_val value(std::string_view bytes)
    {
        return {bytes.size(), const_cast<char*>(bytes.data())};
    }
    MDB_env* environment_ = nullptr;
    MDB_dbi table_ = 0;
    MDB_txn* writing_ = nullptr;
};

/// As well as SQLite does this work: a write-ahead log, one process, mapped reads, directories by
/// number, the small contents in a table of their own, and names apart from the large contents.
class SqlitePeer final : public StorePeer {
public:
    void open(const std::string& name, bool) override
    {
        check(sqlite3_open(name.c_str(), &base_) == SQLITE_OK, "sqlite3_open");
        run("PRAGMA locking_mode=EXCLUSIVE");
        run("PRAGMA journal_mode=WAL");
        run("PRAGMA synchronous=FULL");
        run("PRAGMA mmap_size=17179869184");
        run("CREATE TABLE IF NOT EXISTS directory(id INTEGER PRIMARY KEY, name TEXT UNIQUE)");
        run("CREATE TABLE IF NOT EXISTS small(directory INTEGER, type TEXT, name TEXT, bytes BLOB,"
            " PRIMARY KEY(directory, type, name)) WITHOUT ROWID");
        run("CREATE TABLE IF NOT EXISTS large(directory INTEGER, type TEXT, name TEXT,"
            " content INTEGER, PRIMARY KEY(directory, type, name)) WITHOUT ROWID");
        run("CREATE TABLE IF NOT EXISTS content(id INTEGER PRIMARY KEY, bytes BLOB)");
    }
    void close() override
    {
        for (sqlite3_stmt*& statement : statements_) {
            sqlite3_finalize(statement);
            statement = nullptr;
        }
        directories_.clear();
        check(sqlite3_close(base_) == SQLITE_OK, "sqlite3_close");
    }
    void begin() override { run("BEGIN"); }
    void commit() override { run("COMMIT"); }
    void put(std::string_view directory, std::string_view name, std::string_view type,
             std::string_view bytes) override
    {
        if (is_small(type)) {
            sqlite3_stmt* const small =
                named(kPutSmall, "INSERT OR REPLACE INTO small VALUES(?1, ?2, ?3, ?4)", directory,
                      type, name);
            bind_bytes(small, 4, bytes);
            step(small);
            return;
        }
        sqlite3_stmt* const find = named(
            kFindLarge, "SELECT content FROM large WHERE directory=?1 AND type=?2 AND name=?3",
            directory, type, name);
        const bool is_there = sqlite3_step(find) == SQLITE_ROW;
        const sqlite3_int64 old = is_there ? sqlite3_column_int64(find, 0) : 0;
        sqlite3_reset(find);
        if (is_there) {
            sqlite3_stmt* const update =
                statement(kUpdateContent, "UPDATE content SET bytes=?2 WHERE id=?1");
            sqlite3_bind_int64(update, 1, old);
            bind_bytes(update, 2, bytes);
            step(update);
            return;
        }
        sqlite3_stmt* const content =
            statement(kPutContent, "INSERT INTO content(bytes) VALUES(?1)");
        bind_bytes(content, 1, bytes);
        step(content);
        sqlite3_stmt* const large =
            named(kPutLarge, "INSERT INTO large VALUES(?1, ?2, ?3, ?4)", directory, type, name);
        sqlite3_bind_int64(large, 4, sqlite3_last_insert_rowid(base_));
        step(large);
    }
    void remove(std::string_view directory, std::string_view name, std::string_view type) override
    {
        if (is_small(type)) {
            step(named(kRemoveSmall, "DELETE FROM small WHERE directory=?1 AND type=?2 AND name=?3",
                       directory, type, name));
            return;
        }
        step(named(kRemoveContent,
                   "DELETE FROM content WHERE id="
                   "(SELECT content FROM large WHERE directory=?1 AND type=?2 AND name=?3)",
                   directory, type, name));
        step(named(kRemoveLarge, "DELETE FROM large WHERE directory=?1 AND type=?2 AND name=?3",
                   directory, type, name));
    }
    void rename(std::string_view directory, std::string_view name, std::string_view to,
                std::string_view type) override
    {
        sqlite3_stmt* const renames =
            is_small(type)
                ? named(kRenameSmall,
                        "UPDATE small SET name=?4 WHERE directory=?1 AND type=?2 AND name=?3",
                        directory, type, name)
                : named(kRenameLarge,
                        "UPDATE large SET name=?4 WHERE directory=?1 AND type=?2 AND name=?3",
                        directory, type, name);
        bind(renames, 4, to);
        step(renames);
    }
    std::uint64_t list(std::string_view directory, std::string_view type) override
    {
        sqlite3_stmt* const rows = statement(kList,
                                             "SELECT name, bytes FROM small"
                                             " WHERE directory=?1 AND type=?2 ORDER BY name");
        sqlite3_bind_int64(rows, 1, number(directory));
        bind(rows, 2, type);
        std::uint64_t sum = 0;
        while (sqlite3_step(rows) == SQLITE_ROW)
            sum += static_cast<std::uint64_t>(sqlite3_column_bytes(rows, 0)) +
                   static_cast<std::uint64_t>(sqlite3_column_bytes(rows, 1)) +
                   *static_cast<const unsigned char*>(sqlite3_column_blob(rows, 1));
        sqlite3_reset(rows);
        return sum;
    }
    std::size_t get(std::string_view directory, std::string_view name, std::string_view type,
                    std::string& bytes) override
    {
        sqlite3_stmt* const row =
            is_small(type)
                ? named(kGetSmall,
                        "SELECT bytes FROM small WHERE directory=?1 AND type=?2 AND name=?3",
                        directory, type, name)
                : named(kGetLarge,
                        "SELECT bytes FROM large JOIN content ON id=content"
                        " WHERE directory=?1 AND type=?2 AND name=?3",
                        directory, type, name);
        check(sqlite3_step(row) == SQLITE_ROW, "SELECT");
        bytes.assign(static_cast<const char*>(sqlite3_column_blob(row, 0)),
                     static_cast<std::size_t>(sqlite3_column_bytes(row, 0)));
        sqlite3_reset(row);
        return bytes.size();
    }
    void compact(const std::string& name) override
    {
        const std::string copy = name + ".copy";
        std::filesystem::remove(copy);
        run(("VACUUM INTO '" + copy + "'").c_str());
        std::filesystem::rename(copy, name);
    }

private:
    enum Work {
        kDirectory,
        kAddDirectory,
        kPutSmall,
        kFindLarge,
        kUpdateContent,
        kPutContent,
        kPutLarge,
        kRemoveSmall,
        kRemoveContent,
        kRemoveLarge,
        kRenameSmall,
        kRenameLarge,
        kList,
        kGetSmall,
        kGetLarge,
        kWorks
    };
    static bool is_small(std::string_view type) { return type == "mediator"; }
    void run(const char* text)
    {
        check(sqlite3_exec(base_, text, nullptr, nullptr, nullptr) == SQLITE_OK, text);
    }
    /// Prepared when it is first used.
    sqlite3_stmt* statement(Work work, const char* text)
    {
        if (statements_[work] == nullptr)
            check(sqlite3_prepare_v2(base_, text, -1, &statements_[work], nullptr) == SQLITE_OK,
                  text);
        return statements_[work];
    }
    sqlite3_stmt* named(Work work, const char* text, std::string_view directory,
                        std::string_view type, std::string_view name)
    {
        sqlite3_stmt* const prepared = statement(work, text);
        sqlite3_bind_int64(prepared, 1, number(directory));
        bind(prepared, 2, type);
        bind(prepared, 3, name);
        return prepared;
    }
    sqlite3_int64 number(std::string_view directory)
    {
        const auto known = directories_.find(directory);
        if (known != directories_.end())
            return known->second;
        sqlite3_stmt* const find = statement(kDirectory, "SELECT id FROM directory WHERE name=?1");
        bind(find, 1, directory);
        sqlite3_int64 id = 0;
        if (sqlite3_step(find) == SQLITE_ROW) {
            id = sqlite3_column_int64(find, 0);
        } else {
            sqlite3_stmt* const add =
                statement(kAddDirectory, "INSERT INTO directory(name) VALUES(?1)");
            bind(add, 1, directory);
            step(add);
            id = sqlite3_last_insert_rowid(base_);
        }
        sqlite3_reset(find);
        directories_.emplace(directory, id);
        return id;
    }
    static void bind(sqlite3_stmt* statement, int number, std::string_view text)
    {
        sqlite3_bind_text(statement, number, text.data(), static_cast<int>(text.size()),
                          SQLITE_STATIC);
    }
    static void bind_bytes(sqlite3_stmt* statement, int number, std::string_view bytes)
    {
        sqlite3_bind_blob(statement, number, bytes.data(), static_cast<int>(bytes.size()),
                          SQLITE_STATIC);
    }
    static void step(sqlite3_stmt* statement)
    {
        check(sqlite3_step(statement) == SQLITE_DONE, "sqlite3_step");
        sqlite3_reset(statement);
    }
    sqlite3* base_ = nullptr;
    std::array<sqlite3_stmt*, kWorks> statements_{};
    std::map<std::string, sqlite3_int64, std::less<>> directories_;
};

}  // namespace

std::unique_ptr<StorePeer> make_library_peer()
{
    return std::make_unique<LibraryPeer>();
}

std::unique_ptr<StorePeer> make_lmdb_peer()
{
    return std::make_unique<LmdbPeer>();
}

std::unique_ptr<StorePeer> make_sqlite_peer()
{
    return std::make_unique<SqlitePeer>();
}
