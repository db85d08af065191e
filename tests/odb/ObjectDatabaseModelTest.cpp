// Random work on a library beside a simple model of it, with reopening, packing and further clients
// among it. ZMR_ODB_OPERATIONS sets how much, ZMR_ODB_SEED where it begins.

#include "../store/Random.h"
#include "TestObjects.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_ObjectPlacement.h"
#include "odb/ODB_ReferenceToObject.h"
#include "store/GObjectPlace.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace {

using Path = std::string;  // its levels, each with a "/" behind
using Key = std::pair<Path, std::string>;
enum class Kind { Internal, External, Reference, FarReference };

struct Entry {
    Kind kind = Kind::Internal;
    std::string note;
    Key target;
    int stars = 0;  // 0: no rating
};

constexpr std::array<const char*, 6> kPaths = {"", "a/", "a/x/", "b/", "b/y/", "c/"};
constexpr int kNames = 10;
constexpr int kFar = 4;

GResourcePath path_of_text(const Path& text)
{
    GResourcePath path;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find('/', at);
        path += GString(text.substr(at, end - at));
        at = end + 1;
    }
    return path;
}

GResourceFullName name_of(const Key& key)
{
    return {path_of_text(key.first), GString(key.second), ObjectDatabase::MediatorResourceType};
}

class Model {
public:
    explicit Model(std::uint32_t seed) : random_(seed)
    {
        ObjectDatabase far(folder_.file("far.odb").c_str(), GIO::OpenReadWrite);
        for (int i = 0; i < kFar; ++i) {
            TestNote note(far_note(i).c_str());
            far.append_object(&note, GString(far_name(i)), nullptr);
        }
        far.close();
        reopen();
    }

    /// One random operation; what it returns tells it.
    std::string step()
    {
        const Key key = random_key();
        const unsigned what = random_() % 100;
        if (what < 30)
            return append(key);
        if (what < 40) {
            database_->remove_object(name_of(key));
            entries_.erase(key);
            return "remove " + key.first + key.second;
        }
        if (what < 50)
            return rename(key, random_key());
        if (what < 60)
            return copy(key, random_key());
        if (what < 68)
            return rate(key);
        if (what < 72)
            return rename_directory();
        if (what < 74)
            return put_by_placement(key);
        if (what < 95) {
            check(key);
            return "look";
        }
        if (what < 97) {
            second_ = second_ == nullptr
                          ? std::make_unique<ObjectDatabase>(file().c_str(), GIO::OpenReadWrite)
                          : nullptr;
            return "second client";
        }
        if (what == 97 && random_() % 4 == 0) {
            database_->pack();
            return "pack";
        }
        if (what == 98) {
            reopen();
            return "reopen";
        }
        database_->flush();
        return "flush";
    }

    /// Compares everything.
    void check_all()
    {
        ODB_MediatorsArray contents;
        database_->get_contents(GResourcePath(), contents, true);
        ASSERT_EQ(contents.count, static_cast<long>(entries_.size()));
        for (const auto& [key, entry] : entries_)
            check(key);
    }

    void reopen()
    {
        database_.reset();
        if (random_() % 2 == 0)
            second_.reset();
        database_ = std::make_unique<ObjectDatabase>(file().c_str(), GIO::OpenReadWrite);
        ASSERT_NE(database_->server, nullptr) << database_->open_error().text;
    }

private:
    [[nodiscard]] std::string file() const { return folder_.file("library.odb"); }
    static std::string far_name(int i) { return "far" + std::to_string(i); }
    static std::string far_note(int i) { return "far away " + std::to_string(i); }
    Key random_key()
    {
        return {kPaths[random_() % kPaths.size()], "n" + std::to_string(random_() % kNames)};
    }

    /// The text of the object that an entry gives.
    [[nodiscard]] std::string expected(const Key& key) const
    {
        Key at = key;
        for (int step = 0; step <= ODB_ReferenceToObject::kMostSteps; ++step) {
            const auto found = entries_.find(at);
            if (found == entries_.end())
                return "(none)";
            const Entry& entry = found->second;
            if (entry.kind != Kind::Reference)
                return entry.note;
            at = entry.target;
        }
        return "(none)";
    }

    std::string append(const Key& key)
    {
        Entry entry;
        entry.kind = static_cast<Kind>(random_() % 4);
        entry.note = "note " + std::to_string(++notes_);
        if (random_() % 16 == 0)
            entry.note += std::string(random_() % 3000, 'x');
        TestNote note(entry.note.c_str());
        ODB_Mediator* mediator = nullptr;
        if (entry.kind == Kind::External) {
            mediator = new ODB_ExternalObject(static_cast<const char*>(nullptr));
        } else if (entry.kind == Kind::Reference) {
            entry.target = random_key();
            mediator = new ODB_ReferenceToObject(*database_, name_of(entry.target));
        } else if (entry.kind == Kind::FarReference) {
            const int far = static_cast<int>(random_() % kFar);
            entry.note = far_note(far);
            mediator =
                new ODB_ReferenceToObject(folder_.file("far.odb").c_str(),
                                          GResourceFullName(GResourcePath(), GString(far_name(far)),
                                                            ObjectDatabase::MediatorResourceType));
        }
        const auto former = entries_.find(key);
        if (former != entries_.end() && keeps_ratings(former->second.kind, entry.kind))
            entry.stars = former->second.stars;
        database_->append_object(&note, name_of(key), mediator);
        entries_[key] = entry;
        return "append " + key.first + key.second + " " +
               std::to_string(static_cast<int>(entry.kind)) + " to " + entry.target.first +
               entry.target.second;
    }

    /// Whether a new mediator over an old one of the same name is its equal.
    static bool keeps_ratings(Kind former, Kind present)
    {
        const auto is_reference = [](Kind kind) {
            return kind == Kind::Reference || kind == Kind::FarReference;
        };
        return (former == Kind::Internal && present == Kind::Internal) ||
               (is_reference(former) && is_reference(present));
    }

    std::string rename(const Key& from, const Key& to)
    {
        database_->rename_object(name_of(from), name_of(to));
        const auto found = entries_.find(from);
        if (found != entries_.end() && from != to) {
            Entry moved = found->second;
            const auto former = entries_.find(to);
            if (moved.stars == 0 && former != entries_.end())
                moved.stars = former->second.stars;
            entries_.erase(found);
            entries_[to] = moved;
        }
        return "rename " + from.first + from.second + " to " + to.first + to.second;
    }

    std::string copy(const Key& from, const Key& to)
    {
        database_->copy_object_to(name_of(from), *database_, name_of(to));
        const auto found = entries_.find(from);
        if (found != entries_.end() && from != to) {
            Entry copied = found->second;
            const auto former = entries_.find(to);
            if (copied.stars == 0 && former != entries_.end() &&
                keeps_ratings(former->second.kind, copied.kind))
                copied.stars = former->second.stars;
            entries_[to] = copied;
        }
        return "copy " + from.first + from.second + " to " + to.first + to.second;
    }

    std::string rate(const Key& key)
    {
        const auto found = entries_.find(key);
        ODB_Mediator* const mediator = database_->get_mediator(name_of(key));
        if (found == entries_.end() || mediator == nullptr)
            return "rate nothing";
        found->second.stars = static_cast<int>(random_() % 6);
        if (found->second.stars == 0)
            mediator->remove_attribute(&TestRating::metaclass_);
        else
            mediator->set_attribute(new TestRating(found->second.stars), true);
        return "rate " + key.first + key.second;
    }

    std::string rename_directory()
    {
        const Path from = kPaths[1 + random_() % (kPaths.size() - 1)];
        const Path to = kPaths[1 + random_() % (kPaths.size() - 1)];
        bool is_there = false;
        bool is_free = !to.starts_with(from);
        for (const auto& [key, entry] : entries_) {
            is_there = is_there || key.first.starts_with(from);
            is_free = is_free && !key.first.starts_with(to);
        }
        database_->rename(GResourceFullName(path_of_text(from), GString(), GString()),
                          GResourceFullName(path_of_text(to), GString(), GString()));
        if (is_there && is_free) {
            std::map<Key, Entry> moved;
            for (const auto& [key, entry] : entries_)
                moved[{key.first.starts_with(from) ? to + key.first.substr(from.size()) : key.first,
                       key.second}] = entry;
            entries_ = std::move(moved);
        }
        return "rename directory " + from + " to " + to;
    }

    std::string put_by_placement(const Key& key)
    {
        GObjectPlace place;
        place = new ODB_ObjectPlacement(*database_, path_of_text(key.first), GString(key.second));
        const std::string text = "placed " + std::to_string(++notes_);
        TestNote note(text.c_str());
        EXPECT_TRUE(place.put(&note, false));
        Entry& entry = entries_[key];
        if (entry.kind == Kind::Internal || entry.kind == Kind::External)
            entry.note = text;  // a reference writes nothing
        return "place " + key.first + key.second;
    }

    void check(const Key& key)
    {
        ObjectDatabase& asked = second_ != nullptr && random_() % 2 == 0 ? *second_ : *database_;
        ODB_Mediator* const mediator = asked.get_mediator(name_of(key));
        const auto found = entries_.find(key);
        ASSERT_EQ(mediator != nullptr, found != entries_.end()) << key.first << key.second;
        if (mediator == nullptr)
            return;
        ASSERT_TRUE(mediator->get_DB_resname() == name_of(key));
        const Kind kind = found->second.kind;
        ASSERT_EQ(mediator->is_reference(), kind == Kind::Reference || kind == Kind::FarReference);
        const std::unique_ptr<GStreamable> object(asked.get_object(name_of(key)));
        const auto* const note = zmr::class_cast<TestNote>(object.get());
        ASSERT_EQ(note == nullptr ? "(none)" : std::string(note->note().text), expected(key))
            << key.first << key.second;
        const std::unique_ptr<ODB_ObjectAttribute> rating(
            mediator->get_attribute(&TestRating::metaclass_));
        ASSERT_EQ(rating == nullptr ? 0 : static_cast<TestRating&>(*rating).stars,
                  found->second.stars)
            << key.first << key.second;
    }

    zmr::Random random_;
    TemporaryFolder folder_;
    std::unique_ptr<ObjectDatabase> database_;
    std::unique_ptr<ObjectDatabase> second_;
    std::map<Key, Entry> entries_;
    int notes_ = 0;
};

long number_of(const char* variable, long fallback)
{
    const char* const text = std::getenv(variable);
    return text == nullptr ? fallback : std::atol(text);
}

}  // namespace

TEST(ObjectDatabaseModel, RandomWork_IsAsTheModelSays)
{
    const long operations = number_of("ZMR_ODB_OPERATIONS", 20'000);
    const auto seed = static_cast<std::uint32_t>(number_of("ZMR_ODB_SEED", 1));
    Model model(seed);
    std::string done;
    for (long i = 1; i <= operations; ++i) {
        done = model.step();
        if (i % 1000 == 0)
            model.check_all();
        ASSERT_FALSE(testing::Test::HasFailure())
            << "operation " << i << " of seed " << seed << ": " << done;
    }
    model.reopen();
    model.check_all();
}
