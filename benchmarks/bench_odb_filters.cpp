// What filters and names for people cost above the work that they can't do without. Each row is the
// best of several rounds, in which the rows take turns.
//   bench_odb_filters [mediators]      (100,000 unless given)
// SQLite does the nearest that it can: a table of key and class in memory, counted by class and by
// pattern.

#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "odb/NamesText.h"
#include "odb/ODB_ClassFilter.h"
#include "odb/ODB_FiltersContainer.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_RegularExpressionFilter.h"
#include "odb/ObjectDatabase.h"
#include "tests/TemporaryFolder.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <string>
#include <vector>

class BenchModel : public GStreamable {
    G_DECLARE_CLASS(BenchModel)
};
class BenchMaterial : public GStreamable {
    G_DECLARE_CLASS(BenchMaterial)
};
G_DEFINE_CLASS(BenchModel, GStreamable);
G_DEFINE_CLASS(BenchMaterial, GStreamable);

namespace {

constexpr int kRounds = 15;
constexpr const char* kPattern = "model[0-9]*7";

/// One thing to measure: gives a number that must be the same each time.
struct Row {
    const char* name;
    std::function<long()> run;
    double best_ms = std::numeric_limits<double>::max();
    long result = 0;
};

void measure(std::vector<Row>& rows)
{
    for (int round = 0; round < kRounds; ++round) {
        for (Row& row : rows) {
            const auto start = std::chrono::steady_clock::now();
            row.result = row.run();
            const std::chrono::duration<double, std::milli> took =
                std::chrono::steady_clock::now() - start;
            row.best_ms = std::min(row.best_ms, took.count());
        }
    }
}

void print(const std::vector<Row>& rows, long each)
{
    for (const Row& row : rows)
        std::printf("  %-44s %9.3f ms  %9.2f ns each  %6.2f times the first  (%ld)\n", row.name,
                    row.best_ms, row.best_ms * 1e6 / static_cast<double>(each),
                    row.best_ms / rows.front().best_ms, row.result);
}

void fill(ObjectDatabase& database, int entries)
{
    BenchModel model;
    BenchMaterial material;
    for (int i = 0; i < entries; ++i) {
        const bool is_model = i % 3 != 0;
        const std::string name = (is_model ? "model" : "material") + std::to_string(i);
        const GStreamable* const object = is_model ? static_cast<GStreamable*>(&model) : &material;
        database.append_object(object, GString(name.c_str()), nullptr);
    }
}

long count_accepted(const ODB_MediatorsArray& contents, ODB_ContentsFilter& filter)
{
    long accepted = 0;
    for (long i = 0; i < contents.count; ++i)
        accepted += filter.accept(contents.at(i)) != 0 ? 1 : 0;
    return accepted;
}

/// A table of the same keys and classes in memory.
class SqlTable {
public:
    explicit SqlTable(const ODB_MediatorsArray& contents)
    {
        sqlite3_open(":memory:", &database_);
        run("CREATE TABLE entries(key TEXT, class TEXT)");
        run("BEGIN");
        sqlite3_stmt* insert = prepare("INSERT INTO entries VALUES(?,?)");
        for (long i = 0; i < contents.count; ++i) {
            sqlite3_bind_text(insert, 1, contents.at(i).get_DB_key().text, -1, SQLITE_STATIC);
            sqlite3_bind_text(insert, 2, contents.at(i).get_object_class_name().text, -1,
                              SQLITE_STATIC);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        run("COMMIT");
        by_class_ = prepare("SELECT count(*) FROM entries WHERE class='BenchModel'");
        by_pattern_ = prepare("SELECT count(*) FROM entries WHERE key GLOB 'model*7'");
    }
    ~SqlTable()
    {
        sqlite3_finalize(by_class_);
        sqlite3_finalize(by_pattern_);
        sqlite3_close(database_);
    }
    SqlTable(const SqlTable&) = delete;
    SqlTable& operator=(const SqlTable&) = delete;

    [[nodiscard]] long by_class() const { return count(by_class_); }
    [[nodiscard]] long by_pattern() const { return count(by_pattern_); }

private:
    void run(const char* sql) { sqlite3_exec(database_, sql, nullptr, nullptr, nullptr); }
    sqlite3_stmt* prepare(const char* sql)
    {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr) != SQLITE_OK)
            std::exit(1);
        return statement;
    }
    static long count(sqlite3_stmt* statement)
    {
        sqlite3_step(statement);
        const auto result = static_cast<long>(sqlite3_column_int64(statement, 0));
        sqlite3_reset(statement);
        return result;
    }

    sqlite3* database_ = nullptr;
    sqlite3_stmt* by_class_ = nullptr;
    sqlite3_stmt* by_pattern_ = nullptr;
};

void bench_filters(int entries)
{
    const TemporaryFolder folder;
    ObjectDatabase database(folder.file("library.odb").c_str(), GIO::OpenReadWrite);
    fill(database, entries);
    ODB_MediatorsArray contents;
    database.get_contents(contents, false);
    const SqlTable table(contents);
    const GMetaClass* const wanted = &BenchModel::metaclass_;
    ODB_ClassFilter by_class(wanted, 0);
    ODB_ClassFilter related(wanted, 1);
    ODB_RegularExpressionFilter by_pattern(kPattern);
    const RegularExpression expression(kPattern);
    ODB_FiltersContainer both;
    both.insert(new ODB_ClassFilter(wanted, 0));
    both.insert(new ODB_RegularExpressionFilter(kPattern));

    std::printf("Class filter over %ld mediators\n", contents.count);
    std::vector<Row> classes = {
        {"bare loop, two pointers compared",
         [&] {
             long accepted = 0;
             for (long i = 0; i < contents.count; ++i)
                 accepted += contents.at(i).get_object_class_identifier() == wanted ? 1 : 0;
             return accepted;
         }},
        {"ODB_ClassFilter", [&] { return count_accepted(contents, by_class); }},
        {"ODB_ClassFilter, related", [&] { return count_accepted(contents, related); }},
        {"copy of the array, apply_filter",
         [&] {
             ODB_MediatorsArray copy;
             copy.v_at_insert_range(0, contents.items, contents.count);
             copy.apply_filter(by_class);
             return copy.count;
         }},
        {"SQLite, in memory, by class", [&] { return table.by_class(); }},
    };
    measure(classes);
    print(classes, contents.count);

    std::printf("Expression filter \"%s\"\n", kPattern);
    std::vector<Row> patterns = {
        {"bare loop, the same engine and keys",
         [&] {
             long accepted = 0;
             for (long i = 0; i < contents.count; ++i)
                 accepted += expression == contents.at(i).get_DB_key().text ? 1 : 0;
             return accepted;
         }},
        {"ODB_RegularExpressionFilter", [&] { return count_accepted(contents, by_pattern); }},
        {"ODB_FiltersContainer: class and expression",
         [&] { return count_accepted(contents, both); }},
        {"SQLite, in memory, by GLOB", [&] { return table.by_pattern(); }},
    };
    measure(patterns);
    print(patterns, contents.count);
}

std::string class_name(int number)
{
    return "SceneClass" + std::to_string(number) + "Object";
}

/// The search through the text itself.
std::string plain_user_name(const std::string& text, const std::string& name)
{
    const std::string key = name + "=(";
    std::size_t at = text.find(key);
    while (at != std::string::npos && at > 0 && std::isalpha(text[at - 1]) != 0)
        at = text.find(key, at + 1);
    if (at == std::string::npos)
        return name;
    at += key.size();
    return text.substr(at, text.find(')', at) - at);
}

void bench_names()
{
    constexpr int kClasses = 2000;
    std::string text;
    zmr::NamesText names;
    std::vector<std::string> classes;
    for (int i = 0; i < kClasses; ++i) {
        classes.push_back(class_name(i));
        const std::string line = classes.back() + "=(Object of kind " + std::to_string(i) + ")";
        text += " " + line;
        names.add(line);
    }
    std::printf("user_name_for, each of %d classes\n", kClasses);
    std::vector<Row> rows = {
        {"NamesText",
         [&] {
             long bytes = 0;
             for (const std::string& name : classes)
                 bytes += names.user_name_for(name).GetLength();
             return bytes;
         }},
        {"plain search through the text",
         [&] {
             long bytes = 0;
             for (const std::string& name : classes)
                 bytes += static_cast<long>(plain_user_name(text, name).size());
             return bytes;
         }},
    };
    measure(rows);
    print(rows, kClasses);
}

}  // namespace

int main(int count, char** arguments)
{
    bench_filters(count > 1 ? std::atoi(arguments[1]) : 100'000);
    bench_names();
    return 0;
}
