#include "RefusedChanges.h"

#include "SeenLibrary.h"
#include "TestObjects.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_MovieAttribute.h"
#include "odb/ODB_ObjectPlacement.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "store/GObjectPlace.h"
#include "store/ResourceFileServer.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

const GResourcePath kRoot;

GResourceFullName mediator_of(const char* name)
{
    return {kRoot, GString(name), ObjectDatabase::MediatorResourceType};
}

void add(ObjectDatabase& library, const char* name, ODB_Mediator* mediator)
{
    TestNote note(name);
    library.append_object(&note, GString(name), mediator);
}

GObjectPlace place_of(const std::string& folder, const char* library, const char* name)
{
    GObjectPlace place;
    place = new ODB_ObjectPlacement((folder + library).c_str(), kRoot, GString(name));
    return place;
}

template <typename Attribute>
void change_attribute(ObjectDatabase& library, const std::function<void(Attribute&)>& change)
{
    Attribute attribute;
    library.get_mediator(GString("lamp"))->set_attribute(&attribute, false);
    change(attribute);
}

const RefusedChange kChanges[] = {
    {"AppendInternal", [](ObjectDatabase& library, auto&) { add(library, "new", nullptr); }},
    {"AppendExternal", [](ObjectDatabase& library,
                          auto&) { add(library, "new", new ODB_ExternalObject("new.lob")); }},
    {"AppendExternalInLOBJS",
     [](ObjectDatabase& library, auto&) {
         add(library, "new", new ODB_ExternalObject(static_cast<const char*>(nullptr)));
     }},
    {"AppendReference",
     [](ObjectDatabase& library, auto&) {
         add(library, "new", new ODB_ReferenceToObject(library, mediator_of("lamp")));
     }},
    {"StoreInternalAgain",
     [](ObjectDatabase& library, auto&) {
         TestNote note("another");
         library.append_object(&note, GString("lamp"), library.get_mediator(GString("lamp")));
     }},
    {"StoreExternalAgain",
     [](ObjectDatabase& library, auto&) {
         TestNote note("another");
         library.append_object(&note, GString("outside"), library.get_mediator(GString("outside")));
     }},
    {"ExternalBecomesInternal",
     [](ObjectDatabase& library, auto&) {
         TestNote note("another");
         library.append_object(&note, GString("outside"), nullptr);
     }},
    {"RemoveInternal",
     [](ObjectDatabase& library, auto&) { library.remove_object(GString("lamp")); }},
    {"RemoveExternal",
     [](ObjectDatabase& library, auto&) { library.remove_object(GString("outside")); }},
    {"Rename", [](ObjectDatabase& library,
                  auto&) { library.rename_object(GString("lamp"), GString("light")); }},
    {"RenameOntoExternal",
     [](ObjectDatabase& library, auto&) {
         library.rename_object(GString("lamp"), GString("outside"));
     }},
    {"RenameDirectory",
     [](ObjectDatabase& library, auto&) {
         library.rename(GResourceFullName(path_of({"d"}), GString(), GString()),
                        GResourceFullName(path_of({"e"}), GString(), GString()));
     }},
    {"CopyInternal",
     [](ObjectDatabase& library, auto&) {
         library.copy_object_to(GString("lamp"), library, GString("copy"));
     }},
    {"CopyExternal",
     [](ObjectDatabase& library, auto&) {
         library.copy_object_to(GString("outside"), library, GString("copy"));
     }},
    {"CopyAllIntoIt",
     [](ObjectDatabase& library, const std::string& folder) {
         ObjectDatabase other((folder + "other.odb").c_str(), GIO::OpenRead);
         other.copy_to(library);
     }},
    {"SetIcon",
     [](ObjectDatabase& library, auto&) {
         library.get_mediator(GString("lamp"))->set_icon(test_picture(9).release());
     }},
    {"SetIconByReference",
     [](ObjectDatabase& library, auto&) {
         library.get_mediator(GString("near"))->set_icon(test_picture(9).release());
     }},
    {"RemoveAttribute",
     [](ObjectDatabase& library, auto&) {
         library.get_mediator(GString("lamp"))->remove_attribute(&TestRating::metaclass_);
     }},
    {"SetText",
     [](ObjectDatabase& library, auto&) {
         change_attribute<ODB_TextDescriptionAttribute>(
             library, [](ODB_TextDescriptionAttribute& text) { text.set_text("another"); });
     }},
    {"AddPicture",
     [](ObjectDatabase& library, auto&) {
         change_attribute<ODB_PixelMapAttribute>(library, [](ODB_PixelMapAttribute& album) {
             album.add_map("front", test_picture(9).get());
             album.remove_map("back");
         });
     }},
    {"SetMovie",
     [](ObjectDatabase& library, const std::string& folder) {
         change_attribute<ODB_MovieAttribute>(library, [&](ODB_MovieAttribute& movie) {
             movie.set_movie((folder + "other.odb").c_str());
             movie.set_movie(nullptr);
         });
     }},
    {"SetDefaultMediator",
     [](ObjectDatabase& library, auto&) {
         library.set_default_mediator(&ODB_ExternalObject::metaclass_);
     }},
    {"Empty", [](ObjectDatabase& library, auto&) { library.empty(); }},
    {"Pack", [](ObjectDatabase& library, auto&) { library.pack(); }},
    {"Flush", [](ObjectDatabase& library, auto&) { library.flush(); }},
    {"PlacementPuts",
     [](ObjectDatabase&, const std::string& folder) {
         TestNote note("another");
         static_cast<void>(place_of(folder, "library.odb", "lamp").put(&note, false));
     }},
    {"PlacementPutsIntoExternal",
     [](ObjectDatabase&, const std::string& folder) {
         TestNote note("another");
         static_cast<void>(place_of(folder, "library.odb", "outside").put(&note, false));
     }},
    {"PlacementRemoves",
     [](ObjectDatabase&, const std::string& folder) {
         static_cast<void>(place_of(folder, "library.odb", "outside").remove());
     }},
    {"PlacementCopiesIntoIt",
     [](ObjectDatabase&, const std::string& folder) {
         static_cast<void>(
             place_of(folder, "other.odb", "far").copy_to(place_of(folder, "library.odb", "copy")));
     }},
};

}  // namespace

std::span<const RefusedChange> refused_changes()
{
    return kChanges;
}

void make_library_to_refuse(const std::string& folder)
{
    ObjectDatabase other((folder + "other.odb").c_str(), GIO::OpenReadWrite);
    add(other, "far", nullptr);
    add(other, "far outside", new ODB_ExternalObject("far.lob"));
    ObjectDatabase library((folder + "library.odb").c_str(), GIO::OpenReadWrite);
    add(library, "lamp", nullptr);
    add(library, "outside", new ODB_ExternalObject("outside.lob"));
    add(library, "near", new ODB_ReferenceToObject(library, mediator_of("lamp")));
    TestNote note("deep");
    library.append_object(&note, path_of({"d"}), GString("deep"), nullptr);
    ODB_Mediator* const lamp = library.get_mediator(GString("lamp"));
    lamp->set_icon(test_picture(4).release());
    lamp->set_attribute(new TestRating(3), true);
}

std::map<std::string, std::string> files_of(const std::string& folder)
{
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        std::string bytes = "a folder";
        if (!entry.is_directory()) {
            std::ifstream in(entry.path(), std::ios::binary);
            bytes.assign(std::istreambuf_iterator<char>(in), {});
        }
        files[entry.path().generic_string()] = bytes;
    }
    return files;
}

std::string what_changes(const std::string& folder)
{
    const std::string name = folder + "library.odb";
    const auto files = files_of(folder);
    const SeenLibrary entries = see_library(name);
    for (const RefusedChange& change : refused_changes()) {
        {
            ObjectDatabase library(name.c_str(), GIO::OpenRead);
            if (library.server == nullptr)
                return std::string("it is not opened: ") + library.open_error().text;
            change.act(library, folder);
            if (library.server->error() != 0)
                return std::string(change.name) + ": " + library.server->error_text().text;
        }
        if (files_of(folder) != files)
            return std::string(change.name) + " changes the files";
        if (see_library(name) != entries)
            return std::string(change.name) + " changes what is seen";
    }
    return {};
}
