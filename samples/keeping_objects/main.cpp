// keeping_objects FOLDER: what docs/keeping-objects.md shows, from opening a library to threads, on
// libraries that it makes in FOLDER. Each step checks what it says; the program fails when one does
// not hold.
#include "Chair.h"
#include "graphics/PixelMap.h"
#include "graphics/PixelMapTools.h"
#include "odb/ODB_ClassFilter.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_FiltersContainer.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_MovieAttribute.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ODB_RegularExpressionFilter.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "odb/ObjectDatabase.h"
#include "odb/ObjectImport.h"
#include "store/ResourceFileServer.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

namespace {

void check(bool holds, const char* what)
{
    if (!holds)
        throw std::runtime_error(what);
}

// [open]
/// True when the library can be written; else tells the user why not.
bool open_to_write(ObjectDatabase& library, const std::string& file)
{
    library.open(file.c_str(), GIO::OpenReadWrite);
    if (library.server != nullptr)
        return true;
    std::cerr << library.open_error().text << "\n";  // missing, damaged, or in use by whom
    return false;
}
// [/open]

// [import]
/// Puts a picture or model into the library; else tells the user why not.
bool add_file(ObjectDatabase& library, const std::string& file, const GResourceFullName& name)
{
    const zmr::ImportedObject imported = zmr::import_object(file);
    if (imported.object != nullptr && zmr::append_with_icon(library, *imported.object, name))
        return true;
    std::cerr << file << ": "
              << (imported.object != nullptr ? "it could not be stored" : imported.reason) << "\n";
    return false;
}
// [/import]

void import_files(ObjectDatabase& library, const std::string& folder)
{
    const std::string picture = folder + "/cloth.bmp";
    const PixelMap cloth(32, 32, AbstractImage::MapFormat(6), nullptr);
    check(PixelMapTools::SaveToFile(&cloth, picture.c_str(), true), "the picture is written");
    const GString name("cloth");
    check(add_file(library, picture, GResourceFullName(GResourcePath(), name, GString())),
          "the picture is in the library");
    check(library.get_mediator(name)->has_icon(), "it has an icon");
    const std::string poem = folder + "/poem.txt";
    std::ofstream(poem) << "no picture";
    check(zmr::import_object(poem).reason == "no registered format reads it", "a poem is none");
    library.remove_object(name);
}

void store_and_load(ObjectDatabase& library)
{
    // [store]
    Chair oak("oak", 4);
    library.append_object(&oak, GString("kitchen chair"), nullptr);

    GResourcePath garden;
    garden += GString("outdoors");
    garden += GString("garden");
    Chair teak("teak", 3);
    library.append_object(&teak, garden, GString("stool"), nullptr);
    // [/store]

    // [load]
    const std::unique_ptr<GStreamable> loaded(library.get_object(garden, GString("stool")));
    const auto* const stool = dynamic_cast<const Chair*>(loaded.get());
    // [/load]
    check(stool != nullptr && stool->wood == "teak" && stool->legs == 3, "the stool is loaded");
    check(library.get_object(GString("table")) == nullptr, "what is not there is null");
}

void list(ObjectDatabase& library)
{
    // [list]
    ODB_MediatorsArray contents;
    library.get_contents(GResourcePath(), contents, true);
    for (long i = 0; i < contents.count; ++i) {
        const ODB_Mediator& mediator = contents.at(i);
        std::cout << mediator.get_DB_resname().get_readable_form().text
                  << mediator.get_DB_key().text << ": " << mediator.get_object_class_name().text
                  << "\n";
    }
    // [/list]
    check(contents.count == 2, "both are listed");
}

void change(ObjectDatabase& library)
{
    // [change]
    Chair painted("oak, painted", 4);
    ODB_Mediator* const mediator = library.get_mediator(GString("kitchen chair"));
    library.append_object(&painted, GString("kitchen chair"), mediator);
    library.rename_object(GString("kitchen chair"), GString("painted chair"));
    library.copy_object_to(GString("painted chair"), library, GString("spare chair"));
    library.remove_object(GString("spare chair"));
    // [/change]
    check(library.object_exists(GString("painted chair")), "it has its new name");
    check(!library.object_exists(GString("spare chair")), "the copy is gone");
}

void decide_when(ObjectDatabase& library)
{
    // [scope]
    {
        const ResourceFile::CommitScope together(library);
        for (int i = 1; i <= 100; ++i) {
            const Chair chair("beech", 4);
            library.append_object(&chair, GString("hall chair " + std::to_string(i)), nullptr);
        }
    }
    library.flush();
    // [/scope]
    check(library.server->error() == 0, "all is on the disk");
}

void attributes(ObjectDatabase& library)
{
    // [attributes]
    ODB_Mediator* const chair = library.get_mediator(GString("painted chair"));
    chair->set_attribute(new ODB_TextDescriptionAttribute("From the farm."), true);

    const std::unique_ptr<ODB_ObjectAttribute> found(
        chair->get_attribute(&ODB_TextDescriptionAttribute::metaclass_));
    if (auto* const text = dynamic_cast<ODB_TextDescriptionAttribute*>(found.get()))
        text->set_text("From the farm, painted blue.");
    // [/attributes]
    const std::unique_ptr<ODB_ObjectAttribute> again(
        chair->get_attribute(&ODB_TextDescriptionAttribute::metaclass_));
    const auto* const kept = dynamic_cast<const ODB_TextDescriptionAttribute*>(again.get());
    check(kept != nullptr && kept->get_text() == "From the farm, painted blue.",
          "the text is written back");
}

void pictures(ObjectDatabase& library)
{
    ODB_Mediator* const chair = library.get_mediator(GString("painted chair"));
    // [pictures]
    chair->set_icon(new PixelMap(32, 32, AbstractImage::MapFormat(6), nullptr));
    if (const PixelMap* const icon = chair->get_icon())  // the mediator's
        std::cout << "an icon of " << icon->get_width() << " pixels\n";

    chair->set_attribute(new ODB_PixelMapAttribute, true);
    const std::unique_ptr<ODB_ObjectAttribute> found(
        chair->get_attribute(&ODB_PixelMapAttribute::metaclass_));
    if (auto* const album = dynamic_cast<ODB_PixelMapAttribute*>(found.get())) {
        PixelMap front(640, 480, AbstractImage::MapFormat(6), nullptr);
        album->add_map("front", &front);
        const std::unique_ptr<PixelMap> stored(album->get_map("front"));
        std::cout << "a picture of " << stored->get_width() << " pixels\n";
    }
    // [/pictures]
    check(chair->has_icon(), "the icon is stored");
}

void movies(ObjectDatabase& library, const std::string& avi_file)
{
    ODB_Mediator* const chair = library.get_mediator(GString("painted chair"));
    // [movies]
    chair->set_attribute(new ODB_MovieAttribute, true);
    const std::unique_ptr<ODB_ObjectAttribute> found(
        chair->get_attribute(&ODB_MovieAttribute::metaclass_));
    auto* const movie = dynamic_cast<ODB_MovieAttribute*>(found.get());
    movie->set_movie(avi_file.c_str());
    const GString name = movie->get_movie_name(true);  // to play it where it lies
    if (!movie->extract_movie((avi_file + ".copy").c_str()))
        std::cerr << "the movie could not be copied out\n";
    // [/movies]
    check(!name.is_empty(), "the movie is there");
}

void filters(ObjectDatabase& library)
{
    // [filters]
    ODB_FiltersContainer wanted;
    wanted.insert(new ODB_ClassFilter(&Chair::metaclass_, 0));
    wanted.insert(new ODB_RegularExpressionFilter("hall chair [0-9]+"));

    ODB_MediatorsArray chairs;
    library.get_contents(GResourcePath(), chairs, true);
    chairs.apply_filter(wanted);
    // [/filters]
    check(chairs.count == 100, "the hall's chairs are found");
}

void external_objects(ObjectDatabase& library)
{
    // [external]
    Chair throne("gold", 4);
    library.append_object(&throne, GString("throne"), new ODB_ExternalObject("throne.lob"));

    auto* const mediator =
        dynamic_cast<ODB_ExternalObject*>(library.get_mediator(GString("throne")));
    if (!mediator->get_filename().exists())
        std::cerr << "the throne could not be written\n";
    // [/external]
    const std::unique_ptr<GStreamable> loaded(library.get_object(GString("throne")));
    check(loaded != nullptr, "the throne is read from its file");
}

void references(ObjectDatabase& library, const std::string& other_file)
{
    // [references]
    const GResourceFullName throne(GResourcePath(), GString("throne"),
                                   ObjectDatabase::MediatorResourceType);
    ObjectDatabase favourites(other_file.c_str(), GIO::OpenReadWrite);
    favourites.append_object(nullptr, GString("best seat"),
                             new ODB_ReferenceToObject(library, throne));

    const std::unique_ptr<GStreamable> seat(favourites.get_object(GString("best seat")));
    if (seat == nullptr)
        std::cerr << "the throne is gone, or its library\n";
    // [/references]
    check(seat != nullptr, "the reference gives the throne");
}

// [errors]
/// Stores an object and makes sure that it is on the disk.
bool keep(ObjectDatabase& library, const Chair& chair, const char* name)
{
    library.append_object(&chair, GString(name), nullptr);
    library.flush();
    if (!library.is_writable())
        std::cerr << "not kept: the library is not open for writing\n";
    else if (library.server->error() != 0)
        std::cerr << "not kept: " << library.server->error_text().text << "\n";
    else
        return true;
    return false;
}
// [/errors]

void errors(ObjectDatabase& library, const std::string& file)
{
    check(keep(library, Chair("pine", 4), "bench"), "the bench is kept");
    ObjectDatabase reader(file.c_str(), GIO::OpenRead);
    check(!keep(reader, Chair("pine", 4), "second bench"), "who only reads keeps nothing");
    // [damage]
    const bool is_whole = library.verify([](const ResourceFile::Damage& damage) {
        std::cerr << damage.name.name.text << ": " << damage.reason << "\n";
    });
    // [/damage]
    check(is_whole, "the library is whole");
}

void threads(const std::string& file)
{
    // [threads]
    long loaded = 0;
    std::thread worker([&file, &loaded] {
        ObjectDatabase library(file.c_str(), GIO::OpenRead);
        for (int i = 1; i <= 100; ++i) {
            const GResourceFullName name(GResourcePath(),
                                         GString("hall chair " + std::to_string(i)),
                                         ObjectDatabase::MediatorResourceType);
            const std::unique_ptr<GStreamable> chair(library.get_object(name));
            loaded += chair != nullptr ? 1 : 0;
        }
    });
    worker.join();
    // [/threads]
    check(loaded == 100, "the worker has loaded all");
}

void run(const std::string& folder)
{
    const std::string file = folder + "/furniture.odb";
    ObjectDatabase library;
    check(open_to_write(library, file), "the library is opened");
    import_files(library, folder);
    store_and_load(library);
    list(library);
    change(library);
    decide_when(library);
    attributes(library);
    pictures(library);
    const std::string avi_file = folder + "/spin.avi";
    std::ofstream(avi_file, std::ios::binary) << "RIFF, and the frames of a movie";
    movies(library, avi_file);
    filters(library);
    external_objects(library);
    references(library, folder + "/favourites.odb");
    errors(library, file);
    library.close();
    threads(file);
}

}  // namespace

int main(int count, char** words)
{
    if (count != 2) {
        std::cerr << "usage: keeping_objects FOLDER\n";
        return 2;
    }
    std::error_code error;
    if (!std::filesystem::is_empty(words[1], error) || error) {
        std::cerr << words[1] << ": it is no empty folder\n";
        return 2;
    }
    try {
        run(words[1]);
    } catch (const std::runtime_error& failure) {
        std::cerr << "it does not hold that " << failure.what() << "\n";
        return 1;
    }
    std::cout << "all as the page says\n";
    return 0;
}
