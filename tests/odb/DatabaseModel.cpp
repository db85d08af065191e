#include "DatabaseModel.h"

#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_ObjectPlacement.h"
#include "odb/ODB_ReferenceToObject.h"
#include "store/GObjectPlace.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace {

constexpr std::array<const char*, 6> kPaths = {"", "a/", "a/x/", "b/", "b/y/", "c/"};
constexpr int kNames = 10;
constexpr int kFar = 4;

std::string far_name(int i)
{
    return "far" + std::to_string(i);
}

std::string far_note(int i)
{
    return "far away " + std::to_string(i);
}

}  // namespace

DatabaseModel::DatabaseModel(std::uint32_t seed) : random_(seed)
{
    ObjectDatabase far(folder_.file("far.odb").c_str(), GIO::OpenReadWrite);
    for (int i = 0; i < kFar; ++i) {
        TestNote note(far_note(i).c_str());
        far.append_object(&note, GString(far_name(i)), nullptr);
    }
    far.close();
    database_ = std::make_unique<ObjectDatabase>(file().c_str(), GIO::OpenReadWrite);
}

GResourcePath DatabaseModel::path_of_text(const Path& text)
{
    GResourcePath path;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find('/', at);
        path += GString(text.substr(at, end - at));
        at = end + 1;
    }
    return path;
}

GResourceFullName DatabaseModel::name_of(const Key& key)
{
    return {path_of_text(key.first), GString(key.second), ObjectDatabase::MediatorResourceType};
}

DatabaseModel::Key DatabaseModel::random_key()
{
    return {kPaths[random_() % kPaths.size()], "n" + std::to_string(random_() % kNames)};
}

std::string DatabaseModel::step()
{
    const Key key = random_key();
    const unsigned what = random_() % 100;
    if (what < 30) {
        append(key);
    } else if (what < 40) {
        remove(key);
    } else if (what < 50) {
        rename(key, random_key());
    } else if (what < 60) {
        copy(key, random_key());
    } else if (what < 68) {
        rate(key);
    } else if (what < 72) {
        rename_directory();
    } else if (what < 74) {
        return put_by_placement(key);
    } else if (what < 95) {
        last_step_ = "look";
        return check(key);
    } else if (what == 98) {
        last_step_ = "reopen";
        return reopen();
    } else {
        care(what);
    }
    return {};
}

void DatabaseModel::care(unsigned what)
{
    if (what < 97) {
        last_step_ = "second client";
        second_ = second_ == nullptr
                      ? std::make_unique<ObjectDatabase>(file().c_str(), GIO::OpenReadWrite)
                      : nullptr;
        return;
    }
    if (what == 97 && random_() % 4 == 0) {
        last_step_ = "pack";
        database_->pack();
        return;
    }
    last_step_ = "flush";
    database_->flush();
}

std::string DatabaseModel::check_all()
{
    ODB_MediatorsArray contents;
    database_->get_contents(GResourcePath(), contents, true);
    if (contents.count != static_cast<long>(entries_.size()))
        return std::to_string(contents.count) + " entries in place of " +
               std::to_string(entries_.size());
    for (const auto& [key, entry] : entries_) {
        std::string difference = check(key);
        if (!difference.empty())
            return difference;
    }
    return check_files();
}

/// Each external object has a file, and no file is left of one that is gone.
std::string DatabaseModel::check_files()
{
    database_->flush();
    const auto wanted = std::count_if(entries_.begin(), entries_.end(), [](const auto& one) {
        return one.second.kind == Kind::External;
    });
    std::error_code none;
    const std::filesystem::directory_iterator files(folder_.path() / "LOBJS", none);
    const auto present = std::distance(begin(files), end(files));
    if (present == wanted)
        return {};
    return std::to_string(present) + " object files in place of " + std::to_string(wanted);
}

std::string DatabaseModel::reopen()
{
    database_.reset();
    if (random_() % 2 == 0)
        second_.reset();
    database_ = std::make_unique<ObjectDatabase>(file().c_str(), GIO::OpenReadWrite);
    return database_->open_error().text;
}

/// The text of the object that an entry gives.
std::string DatabaseModel::expected(const Key& key) const
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

void DatabaseModel::append(const Key& key)
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
    last_step_ = "append " + key.first + key.second + " " +
                 std::to_string(static_cast<int>(entry.kind)) + " to " + entry.target.first +
                 entry.target.second;
}

void DatabaseModel::remove(const Key& key)
{
    last_step_ = "remove " + key.first + key.second;
    database_->remove_object(name_of(key));
    entries_.erase(key);
}

/// Whether a new mediator over an old one of the same name is its equal.
bool DatabaseModel::keeps_ratings(Kind former, Kind present)
{
    const auto is_reference = [](Kind kind) {
        return kind == Kind::Reference || kind == Kind::FarReference;
    };
    return (former == Kind::Internal && present == Kind::Internal) ||
           (is_reference(former) && is_reference(present));
}

void DatabaseModel::rename(const Key& from, const Key& to)
{
    last_step_ = "rename " + from.first + from.second + " to " + to.first + to.second;
    database_->rename_object(name_of(from), name_of(to));
    const auto found = entries_.find(from);
    if (found == entries_.end() || from == to)
        return;
    Entry moved = found->second;
    const auto former = entries_.find(to);
    if (moved.stars == 0 && former != entries_.end())
        moved.stars = former->second.stars;
    entries_.erase(found);
    entries_[to] = moved;
}

void DatabaseModel::copy(const Key& from, const Key& to)
{
    last_step_ = "copy " + from.first + from.second + " to " + to.first + to.second;
    database_->copy_object_to(name_of(from), *database_, name_of(to));
    const auto found = entries_.find(from);
    if (found == entries_.end() || from == to)
        return;
    Entry copied = found->second;
    const auto former = entries_.find(to);
    if (copied.stars == 0 && former != entries_.end() &&
        keeps_ratings(former->second.kind, copied.kind))
        copied.stars = former->second.stars;
    entries_[to] = copied;
}

void DatabaseModel::rate(const Key& key)
{
    last_step_ = "rate " + key.first + key.second;
    const auto found = entries_.find(key);
    ODB_Mediator* const mediator = database_->get_mediator(name_of(key));
    if (found == entries_.end() || mediator == nullptr)
        return;
    found->second.stars = static_cast<int>(random_() % 6);
    if (found->second.stars == 0)
        mediator->remove_attribute(&TestRating::metaclass_);
    else
        mediator->set_attribute(new TestRating(found->second.stars), true);
}

void DatabaseModel::rename_directory()
{
    const Path from = kPaths[1 + random_() % (kPaths.size() - 1)];
    const Path to = kPaths[1 + random_() % (kPaths.size() - 1)];
    last_step_ = "rename directory " + from + " to " + to;
    bool is_there = false;
    bool is_free = !to.starts_with(from);
    for (const auto& [key, entry] : entries_) {
        is_there = is_there || key.first.starts_with(from);
        is_free = is_free && !key.first.starts_with(to);
    }
    database_->rename(GResourceFullName(path_of_text(from), GString(), GString()),
                      GResourceFullName(path_of_text(to), GString(), GString()));
    if (!is_there || !is_free)
        return;
    std::map<Key, Entry> moved;
    for (const auto& [key, entry] : entries_)
        moved[{key.first.starts_with(from) ? to + key.first.substr(from.size()) : key.first,
               key.second}] = entry;
    entries_ = std::move(moved);
}

std::string DatabaseModel::put_by_placement(const Key& key)
{
    last_step_ = "place " + key.first + key.second;
    GObjectPlace place;
    place = new ODB_ObjectPlacement(*database_, path_of_text(key.first), GString(key.second));
    const std::string text = "placed " + std::to_string(++notes_);
    TestNote note(text.c_str());
    if (!place.put(&note, false))
        return "the placement was refused";
    Entry& entry = entries_[key];
    if (entry.kind == Kind::Internal || entry.kind == Kind::External)
        entry.note = text;  // a reference writes nothing
    return {};
}

std::string DatabaseModel::check(const Key& key)
{
    ObjectDatabase& asked = second_ != nullptr && random_() % 2 == 0 ? *second_ : *database_;
    ODB_Mediator* const mediator = asked.get_mediator(name_of(key));
    const auto found = entries_.find(key);
    const std::string name = key.first + key.second;
    if ((mediator != nullptr) != (found != entries_.end()))
        return name + (mediator == nullptr ? " is missing" : " should not be there");
    if (mediator == nullptr)
        return {};
    if (!(mediator->get_DB_resname() == name_of(key)))
        return name + " has another name";
    const Kind kind = found->second.kind;
    if (mediator->is_reference() != (kind == Kind::Reference || kind == Kind::FarReference))
        return name + " is of another kind";
    const std::unique_ptr<GStreamable> object(asked.get_object(name_of(key)));
    const auto* const note = zmr::class_cast<TestNote>(object.get());
    const std::string text = note == nullptr ? "(none)" : note->note().text;
    if (text != expected(key))
        return name + " gives " + text + " in place of " + expected(key);
    const std::unique_ptr<ODB_ObjectAttribute> rating(
        mediator->get_attribute(&TestRating::metaclass_));
    const int stars = rating == nullptr ? 0 : static_cast<TestRating&>(*rating).stars;
    if (stars != found->second.stars)
        return name + " has " + std::to_string(stars) + " stars in place of " +
               std::to_string(found->second.stars);
    return {};
}
