#include "StorePeers.h"

#include "store/LibraryFile.h"

#include <lmdb.h>
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

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
        const zmr::LibraryEntryList entries = file_.list(path(directory), type);
        std::uint64_t sum = 0;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const zmr::LibraryEntryView entry = entries[i];
            sum +=
                entry.bytes.size() + static_cast<unsigned char>(entry.bytes[0]) + entry.name.size();
        }
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
        const unsigned flags = MDB_NOSUBDIR | (write ? 0u : unsigned{MDB_RDONLY});
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

class SqlitePeer final : public StorePeer {
public:
    void open(const std::string& name, bool) override
    {
        check(sqlite3_open(name.c_str(), &base_) == SQLITE_OK, "sqlite3_open");
        run("PRAGMA journal_mode=WAL");
        run("PRAGMA synchronous=FULL");
        run("CREATE TABLE IF NOT EXISTS entry(directory TEXT, type TEXT, name TEXT, bytes BLOB,"
            " PRIMARY KEY(directory, type, name))");
        put_ = prepare("INSERT OR REPLACE INTO entry VALUES(?1, ?2, ?3, ?4)");
        remove_ = prepare("DELETE FROM entry WHERE directory=?1 AND type=?2 AND name=?3");
        rename_ = prepare("UPDATE entry SET name=?4 WHERE directory=?1 AND type=?2 AND name=?3");
        list_ =
            prepare("SELECT name, bytes FROM entry WHERE directory=?1 AND type=?2 ORDER BY name");
        get_ = prepare("SELECT bytes FROM entry WHERE directory=?1 AND type=?2 AND name=?3");
    }
    void close() override
    {
        for (sqlite3_stmt* statement : {put_, remove_, rename_, list_, get_})
            sqlite3_finalize(statement);
        check(sqlite3_close(base_) == SQLITE_OK, "sqlite3_close");
    }
    void begin() override { run("BEGIN"); }
    void commit() override { run("COMMIT"); }
    void put(std::string_view directory, std::string_view name, std::string_view type,
             std::string_view bytes) override
    {
        bind(put_, 1, directory);
        bind(put_, 2, type);
        bind(put_, 3, name);
        sqlite3_bind_blob(put_, 4, bytes.data(), static_cast<int>(bytes.size()), SQLITE_STATIC);
        step(put_);
    }
    void remove(std::string_view directory, std::string_view name, std::string_view type) override
    {
        bind(remove_, 1, directory);
        bind(remove_, 2, type);
        bind(remove_, 3, name);
        step(remove_);
    }
    void rename(std::string_view directory, std::string_view name, std::string_view to,
                std::string_view type) override
    {
        bind(rename_, 1, directory);
        bind(rename_, 2, type);
        bind(rename_, 3, name);
        bind(rename_, 4, to);
        step(rename_);
    }
    std::uint64_t list(std::string_view directory, std::string_view type) override
    {
        bind(list_, 1, directory);
        bind(list_, 2, type);
        std::uint64_t sum = 0;
        while (sqlite3_step(list_) == SQLITE_ROW)
            sum += static_cast<std::uint64_t>(sqlite3_column_bytes(list_, 0)) +
                   static_cast<std::uint64_t>(sqlite3_column_bytes(list_, 1)) +
                   *static_cast<const unsigned char*>(sqlite3_column_blob(list_, 1));
        sqlite3_reset(list_);
        return sum;
    }
    std::size_t get(std::string_view directory, std::string_view name, std::string_view type,
                    std::string& bytes) override
    {
        bind(get_, 1, directory);
        bind(get_, 2, type);
        bind(get_, 3, name);
        check(sqlite3_step(get_) == SQLITE_ROW, "SELECT");
        bytes.assign(static_cast<const char*>(sqlite3_column_blob(get_, 0)),
                     static_cast<std::size_t>(sqlite3_column_bytes(get_, 0)));
        sqlite3_reset(get_);
        return bytes.size();
    }
    void compact(const std::string&) override { run("VACUUM"); }

private:
    void run(const char* text)
    {
        check(sqlite3_exec(base_, text, nullptr, nullptr, nullptr) == SQLITE_OK, text);
    }
    sqlite3_stmt* prepare(const char* text)
    {
        sqlite3_stmt* statement = nullptr;
        check(sqlite3_prepare_v2(base_, text, -1, &statement, nullptr) == SQLITE_OK, text);
        return statement;
    }
    static void bind(sqlite3_stmt* statement, int number, std::string_view text)
    {
        sqlite3_bind_text(statement, number, text.data(), static_cast<int>(text.size()),
                          SQLITE_STATIC);
    }
    static void step(sqlite3_stmt* statement)
    {
        check(sqlite3_step(statement) == SQLITE_DONE, "sqlite3_step");
        sqlite3_reset(statement);
    }
    sqlite3* base_ = nullptr;
    sqlite3_stmt* put_ = nullptr;
    sqlite3_stmt* remove_ = nullptr;
    sqlite3_stmt* rename_ = nullptr;
    sqlite3_stmt* list_ = nullptr;
    sqlite3_stmt* get_ = nullptr;
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
