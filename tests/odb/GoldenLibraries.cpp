#include "GoldenLibraries.h"

#include "SeenLibrary.h"
#include "TestObjects.h"
#include "foundation/GFile.h"
#include "foundation/mpstream.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "store/LibraryFormat.h"
#include "store/StoreFiles.h"

#include <memory>

namespace {

const GResourcePath kRoot;

void add(ObjectDatabase& database, const GResourcePath& path, const char* name,
         const std::string& note, ODB_Mediator* mediator = nullptr)
{
    const TestNote object(note.c_str());
    database.append_object(&object, path, GString(name), mediator);
}

/// Commits all that `fill` does at once, so that it does not matter how long it takes.
void write(const std::string& file, const std::function<void(ObjectDatabase&)>& fill)
{
    ObjectDatabase database(file.c_str(), GIO::OpenReadWrite);
    const ResourceFile::CommitScope scope(database);
    fill(database);
}

void write_objects(const std::string& file)
{
    write(file, [](ObjectDatabase& database) {
        add(database, kRoot, "chair", "four legs");
        add(database, kRoot, "table", "");
        add(database, path_of({"rooms"}), "hall", "wide");
        add(database, path_of({"rooms", "upper"}), "attic", "dark");
        add(database, path_of({"rooms", "upper"}), "chair", "another of that name");
        static_cast<void>(database.get_default_mediator());
    });
}

void write_pictures(const std::string& file)
{
    write(file, [](ObjectDatabase& database) {
        add(database, kRoot, "lamp", "with all");
        ODB_Mediator& lamp = *database.get_mediator(GString("lamp"));
        lamp.set_icon(test_picture(32).release());
        TestRating rating(4);
        lamp.set_attribute(&rating, false);
        ODB_TextDescriptionAttribute words("A lamp of brass.");
        lamp.set_attribute(&words, false);
        ODB_PixelMapAttribute pictures;
        lamp.set_attribute(&pictures, false);
        pictures.add_map("front", test_picture(16).get());
        pictures.add_map("back", test_picture(8).get());
        add(database, kRoot, "plain", "with none");
    });
}

void write_references(const std::string& file)
{
    write(file, [](ObjectDatabase& database) {
        add(database, path_of({"originals"}), "vase", "of clay");
        database.get_mediator(path_of({"originals"}), GString("vase"))
            ->set_icon(test_picture(20).release());
        const auto refer = [&database](const char* name, const GResourcePath& path,
                                       const char* target) {
            const GResourceFullName place(path, GString(target),
                                          ObjectDatabase::MediatorResourceType);
            add(database, kRoot, name, "", new ODB_ReferenceToObject(database, place));
        };
        refer("first", path_of({"originals"}), "vase");
        refer("second", kRoot, "first");
        refer("to nothing", kRoot, "absent");
    });
}

void write_externals(const std::string& file)
{
    write(file, [](ObjectDatabase& database) {
        add(database, kRoot, "small", "in a file", new ODB_ExternalObject("small.lob"));
        add(database, kRoot, "long", std::string(5000, 'l'), new ODB_ExternalObject("long.lob"));
        add(database, kRoot, "inside", "in the library");
    });
}

void write_contents(const std::string& file)
{
    write(file, [](ObjectDatabase& database) {
        add(database, kRoot, "in the index", "short");
        add(database, kRoot, "noise", test_noise(3000));
        add(database, kRoot, "compressed", std::string(100000, 'c') + test_noise(700));
        const std::string raw = test_noise(2500);
        impstream in(std::span(reinterpret_cast<const unsigned char*>(raw.data()), raw.size()));
        database.copy_from(GResourceFullName(kRoot, GString("noise"), GString("raw")), in, -1, 0);
    });
}

/// Several commits, whose space is given up and taken again.
void write_changes(const std::string& file)
{
    ObjectDatabase database(file.c_str(), GIO::OpenReadWrite);
    const auto commit = [&database](const std::function<void()>& change) {
        {
            const ResourceFile::CommitScope scope(database);
            change();
        }
        database.flush();
    };
    commit([&] {
        for (const char* name : {"one", "two", "three"})
            add(database, kRoot, name, test_noise(1500));
    });
    commit([&] { database.remove_object(GString("two")); });
    commit([&] {
        database.rename_object(kRoot, GString("three"), path_of({"moved"}), GString("third"));
    });
    commit([&] {
        database.rename(GResourceFullName(path_of({"moved"}), GString(), GString()),
                        GResourceFullName(path_of({"kept"}), GString(), GString()));
    });
    commit([&] { add(database, kRoot, "one", "written anew"); });
    commit(
        [&] { database.copy_object_to(kRoot, GString("one"), database, kRoot, GString("copy")); });
    database.pack();
    commit([&] { add(database, kRoot, "last", "behind the packing"); });
}

const GoldenLibrary kLibraries[] = {
    {"objects", {"objects.odb"}, &write_objects},
    {"pictures", {"pictures.odb"}, &write_pictures},
    {"references", {"references.odb"}, &write_references},
    {"externals", {"externals.odb", "small.lob", "long.lob"}, &write_externals},
    {"contents", {"contents.odb"}, &write_contents},
    {"changes", {"changes.odb"}, &write_changes},
};

}  // namespace

std::span<const GoldenLibrary> golden_libraries()
{
    return kLibraries;
}

std::string golden_file(const std::string& name)
{
    static const TemporaryFolder folder;
    GFile file(folder.file(name).c_str());
    file.expand();  // as the store names it, with this system's separators
    return file.text;
}

std::vector<std::string> write_golden(const GoldenLibrary& library)
{
    zmr::FaultyFileSystem files;
    {
        const zmr::StoreFilesInPlace in_place(files);
        library.write(golden_file(library.files.front()));
    }
    std::vector<std::string> written;
    for (const char* const name : library.files)
        written.push_back(files.bytes(golden_file(name)));
    written.front().replace(zmr::kOwnerPosition, zmr::kSectorBytes, zmr::kSectorBytes, '\0');
    return written;
}
