#pragma once

#include "../store/Random.h"
#include "TestObjects.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

/// Random work on a library beside a simple model of it: objects inside and in files of their own,
/// references within and into another library, attributes, placements, with reopening,
/// packing and further clients among it. What the library gives is compared on the way.
class DatabaseModel {
public:
    explicit DatabaseModel(std::uint32_t seed);

    /// One random operation. Says what differs from the model; empty when nothing does.
    [[nodiscard]] std::string step();
    /// What the last step did, for a message.
    [[nodiscard]] const std::string& last_step() const { return last_step_; }
    /// Compares everything. Says what differs, as step does.
    [[nodiscard]] std::string check_all();
    [[nodiscard]] std::string reopen();

private:
    using Path = std::string;  // its levels, each with a "/" behind
    using Key = std::pair<Path, std::string>;
    enum class Kind { Internal, External, Reference, FarReference };
    struct Entry {
        Kind kind = Kind::Internal;
        std::string note;
        Key target;
        int stars = 0;  // 0: no rating
    };

    static GResourcePath path_of_text(const Path& text);
    static GResourceFullName name_of(const Key& key);
    static bool keeps_ratings(Kind former, Kind present);
    [[nodiscard]] std::string file() const { return folder_.file("library.odb"); }
    [[nodiscard]] Key random_key();
    [[nodiscard]] std::string expected(const Key& key) const;
    [[nodiscard]] std::string check(const Key& key);
    [[nodiscard]] std::string check_files();

    void append(const Key& key);
    void remove(const Key& key);
    void rename(const Key& from, const Key& to);
    void copy(const Key& from, const Key& to);
    void rate(const Key& key);
    void rename_directory();
    [[nodiscard]] std::string put_by_placement(const Key& key);
    void care(unsigned what);

    zmr::Random random_;
    TemporaryFolder folder_;
    std::unique_ptr<ObjectDatabase> database_;
    std::unique_ptr<ObjectDatabase> second_;
    std::map<Key, Entry> entries_;
    std::string last_step_;
    int notes_ = 0;
};
