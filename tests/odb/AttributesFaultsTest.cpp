// Attributes, pictures and movies on a file system that stops, fails and loses power at every
// operation: after each, what opens again is the state before the change or the one after it.

#include "../store/FaultyFileSystem.h"
#include "TestObjects.h"
#include "graphics/PixelMap.h"
#include "odb/MovieReader.h"
#include "odb/ODB_AttributesArray.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_MovieAttribute.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "store/GResourceIterators.h"
#include "store/StoreFiles.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace {

/// What a user sees of a library: for each entry its object, and the value of each attribute,
/// picture and movie; and every resource that belongs to no entry.
using Seen = std::map<std::string, std::string>;

/// The library is in memory, the movies' source files are in a real folder.
const TemporaryFolder& folder()
{
    static const TemporaryFolder made;
    return made;
}

std::string library_file()
{
    return folder().file("library.odb");
}

/// A file of `size` bytes that all depend on `seed`.
std::string movie_file(std::size_t size, unsigned seed)
{
    const std::string name = folder().file("movie" + std::to_string(seed));
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i)
        bytes += static_cast<char>(i * 31 + i / 251 + seed);
    std::ofstream(name, std::ios::binary) << bytes;
    return name;
}

/// The movie as its length and a sum over all bytes; "(damaged)" when it can't be read.
std::string movie_facts(const ODB_MovieAttribute& attribute)
{
    const auto movie = zmr::MovieReader::Open(attribute.get_movie_name(true).text);
    if (movie == nullptr)
        return {};
    std::string bytes(movie->length(), '\0');
    if (movie->read(0, bytes.data(), movie->length()) != movie->length())
        return "(damaged)";
    std::size_t sum = 0;
    for (const char byte : bytes)
        sum = sum * 131 + static_cast<unsigned char>(byte);
    return std::to_string(bytes.size()) + " " + std::to_string(sum);
}

void see_attributes(ODB_Mediator& mediator, const std::string& name, Seen& seen)
{
    ODB_AttributesArray attributes;
    mediator.get_attributes(attributes);
    for (long i = 0; i < attributes.count; ++i) {
        ODB_ObjectAttribute& attribute = attributes.at(i);
        std::string value = "there";
        if (const auto* const rating = zmr::class_cast<TestRating>(&attribute))
            value = std::to_string(rating->stars);
        else if (const auto* const text = zmr::class_cast<ODB_TextDescriptionAttribute>(&attribute))
            value = text->get_text().text;
        seen[name + " " + attribute.getClassName()] = value;
    }
}

void see_media(ODB_Mediator& mediator, const std::string& name, Seen& seen)
{
    ODB_PixelMapAttribute pictures;
    mediator.set_attribute(&pictures, false);  // the library is open for reading: attaches only
    GStringCollection names;
    pictures.get_names(names);
    for (long i = 0; i < names.count; ++i) {
        const std::unique_ptr<PixelMap> map(pictures.get_map(names.at(i)));
        seen[name + " picture " + names.at(i)] =
            map == nullptr ? "(damaged)" : std::to_string(map->get_width());
    }
    ODB_MovieAttribute movie;
    mediator.set_attribute(&movie, false);
    const std::string facts = movie_facts(movie);
    if (!facts.empty())
        seen[name + " movie"] = facts;
}

Seen see()
{
    Seen seen;
    ObjectDatabase database(library_file().c_str(), GIO::OpenRead);
    if (database.server == nullptr)
        return {{"unreadable", database.open_error().text}};
    ODB_MediatorsArray contents;
    database.get_contents(contents, false);
    for (long i = 0; i < contents.count; ++i) {
        const std::string name = contents.at(i).get_DB_key().text;
        seen[name] = OdbTest::note_of(database, name.c_str());
        see_attributes(contents.at(i), name, seen);
        see_media(contents.at(i), name, seen);
    }
    for (GResourceTypeIterator type(database); type.index >= 0; --type) {
        const GResourceFullName pattern(GResourcePath(), GString(), type.element());
        for (GResourceIterator name(database, pattern); name.index >= 0; --name) {
            if (!database.object_exists(name.element()))
                seen[std::string("left over ") + name.element().text + " " + type.element().text] =
                    "";
        }
    }
    return seen;
}

ODB_Mediator& entry(ObjectDatabase& database, const char* name)
{
    return *database.get_mediator(GString(name));
}

template <class Attribute>
void with(ObjectDatabase& database, const char* name, const std::function<void(Attribute&)>& change)
{
    const std::unique_ptr<ODB_ObjectAttribute> stored(
        entry(database, name).get_attribute(&Attribute::metaclass_));
    auto* const attribute = zmr::class_cast<Attribute>(stored.get());
    ASSERT_NE(attribute, nullptr);
    change(*attribute);
}

void add_map(ODB_PixelMapAttribute& pictures, const char* name, int width)
{
    PixelMap map(width, 40, AbstractImage::Format32, nullptr);
    pictures.add_map(name, &map);
}

/// The state that every change starts from: an entry with all, and one with nothing.
void prepare(zmr::FaultyFileSystem& files)
{
    const zmr::StoreFilesInPlace in_place(files);
    ObjectDatabase database(library_file().c_str(), GIO::OpenReadWrite);
    for (const char* const name : {"bare", "lamp"}) {
        TestNote note(name);
        database.append_object(&note, GString(name), nullptr);
    }
    ODB_Mediator& lamp = entry(database, "lamp");
    lamp.set_attribute(new TestRating(3), true);
    lamp.set_attribute(new ODB_TextDescriptionAttribute("A lamp"), true);
    ODB_PixelMapAttribute pictures;
    lamp.set_attribute(&pictures, false);
    add_map(pictures, "front", 30);
    add_map(pictures, "back", 31);
    ODB_MovieAttribute movie;
    lamp.set_attribute(&movie, false);
    movie.set_movie(movie_file(150'000, 1).c_str());
}

struct NamedChange {
    const char* name;
    std::function<void(ObjectDatabase&)> change;
};

void PrintTo(const NamedChange& change, std::ostream* out)
{
    *out << change.name;
}

const NamedChange kChanges[] = {
    {"SetAttribute",
     [](ObjectDatabase& database) {
         entry(database, "bare").set_attribute(new TestRating(5), true);
     }},
    {"SetAttributeInPlaceOfAnOldOne",
     [](ObjectDatabase& database) {
         entry(database, "lamp").set_attribute(new TestRating(5), true);
     }},
    {"SetALongText",
     [](ObjectDatabase& database) {
         with<ODB_TextDescriptionAttribute>(
             database, "lamp", [](auto& text) { text.set_text(std::string(20'000, 'x').c_str()); });
     }},
    {"RemoveAttribute",
     [](ObjectDatabase& database) {
         entry(database, "lamp").remove_attribute(&TestRating::metaclass_);
     }},
    {"AddMap",
     [](ObjectDatabase& database) {
         with<ODB_PixelMapAttribute>(database, "lamp",
                                     [](auto& pictures) { add_map(pictures, "side", 32); });
     }},
    {"AddMapInPlaceOfAnOldOne",
     [](ObjectDatabase& database) {
         with<ODB_PixelMapAttribute>(database, "lamp",
                                     [](auto& pictures) { add_map(pictures, "front", 90); });
     }},
    {"RemoveMap",
     [](ObjectDatabase& database) {
         with<ODB_PixelMapAttribute>(database, "lamp",
                                     [](auto& pictures) { pictures.remove_map("front"); });
     }},
    {"SetMovie",
     [](ObjectDatabase& database) {
         ODB_MovieAttribute movie;
         const ResourceFile::CommitScope scope(database);
         entry(database, "bare").set_attribute(&movie, false);
         movie.set_movie(movie_file(200'000, 2).c_str());
     }},
    {"SetMovieInPlaceOfAnOldOne",
     [](ObjectDatabase& database) {
         with<ODB_MovieAttribute>(database, "lamp", [](auto& movie) {
             movie.set_movie(movie_file(200'000, 2).c_str());
         });
     }},
    {"RemoveMovie",
     [](ObjectDatabase& database) {
         with<ODB_MovieAttribute>(database, "lamp", [](auto& movie) { movie.set_movie(nullptr); });
     }},
    {"RemoveEntryWithAll",
     [](ObjectDatabase& database) { database.remove_object(GString("lamp")); }},
    {"RenameEntryWithAll",
     [](ObjectDatabase& database) { database.rename_object(GString("lamp"), GString("light")); }},
    {"CopyEntryWithAll",
     [](ObjectDatabase& database) {
         database.copy_object_to(GString("lamp"), database, GString("copy"));
     }},
};

class AttributesFaults : public testing::TestWithParam<NamedChange> {
protected:
    static void run(const NamedChange& change)
    {
        ObjectDatabase database(library_file().c_str(), GIO::OpenReadWrite);
        if (database.server == nullptr)
            return;  // stopped as it was opened
        ASSERT_TRUE(database.object_exists(GString("lamp")));
        change.change(database);
    }
};

enum class End { PowerLoss, Kill, DiskFull, Denied, DiskStaysFull };

}  // namespace

TEST_P(AttributesFaults, StoppedAnywhere_LibraryIsAsBeforeOrAsAfter)
{
    zmr::FaultyFileSystem start;
    prepare(start);
    Seen before;
    Seen after;
    std::uint64_t count = 0;
    {
        zmr::FaultyFileSystem whole = start.copy();
        const zmr::StoreFilesInPlace in_place(whole);
        before = see();
        ASSERT_EQ(before.size(), 9u) << testing::PrintToString(before);
        run(GetParam());
        count = whole.operations();
        after = see();
        ASSERT_NE(after, before);
    }
    ASSERT_GT(count, 2u);

    std::uint32_t seed = 1;
    for (std::uint64_t at = 1; at <= count + 1; ++at) {
        for (const End end : {End::PowerLoss, End::PowerLoss, End::PowerLoss, End::PowerLoss,
                              End::Kill, End::DiskFull, End::Denied, End::DiskStaysFull}) {
            ++seed;
            SCOPED_TRACE(testing::Message() << "operation " << at << " of " << count << ", end "
                                            << static_cast<int>(end) << ", seed " << seed);
            zmr::FaultyFileSystem files = start.copy();
            const zmr::StoreFilesInPlace in_place(files);
            const bool stops = end == End::PowerLoss || end == End::Kill;
            if (stops)
                files.stop_at(at, seed);
            else
                files.fail_at(at,
                              end == End::Denied ? zmr::FileErrorKind::AccessDenied
                                                 : zmr::FileErrorKind::DiskFull,
                              end == End::DiskStaysFull);
            run(GetParam());
            if (end == End::PowerLoss)
                files.lose_power(seed);
            else
                files.end_process();

            const Seen seen = see();
            ASSERT_TRUE(seen == before || seen == after) << testing::PrintToString(seen);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Changes, AttributesFaults, testing::ValuesIn(kChanges),
                         [](const auto& one) { return std::string(one.param.name); });
