#include "OperationWorld.h"

#include "AllocationFaults.h"
#include "SeenLibrary.h"
#include "foundation/GStringCollection.h"
#include "foundation/mpstream.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_AttributesArray.h"
#include "odb/ODB_ClassFilter.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_FiltersContainer.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_ObjectPlacement.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ODB_RegularExpressionFilter.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "store/GObjectPlace.h"
#include "store/GResourceIterators.h"
#include "store/ResourceFileServer.h"

#include <vector>

namespace {

const GResourcePath kRoot;

GString text(const char* value)
{
    return GString(value);
}

GResourceFullName mediator_of(const GResourcePath& path, const char* name)
{
    return {path, text(name), ObjectDatabase::MediatorResourceType};
}

/// Stores an object by a mediator that the caller made: it is the caller's again when that throws
/// and no library holds it.
void add(ObjectDatabase& database, const GResourcePath& path, const char* name,
         const std::string& note, ODB_Mediator* mediator)
{
    try {
        TestNote object(note.c_str());
        database.append_object(&object, path, text(name), mediator);
    } catch (...) {
        const AllocationFaults::Pause pause;
        ODB_MediatorsArray held;
        database.get_cached_mediators(GResourcePath(), held, true);
        bool is_held = false;
        for (long i = 0; i < held.count; ++i)
            is_held = is_held || &held.at(i) == mediator;
        if (!is_held)
            GStreamable::Destroy(mediator);
        throw;
    }
}

void set_icon(ObjectDatabase& database, const char* name, int width)
{
    if (ODB_Mediator* const mediator = database.get_mediator(text(name)))
        mediator->set_icon(test_picture(width).release());
}

template <typename Attribute>
void set_attribute(ObjectDatabase& database, const char* name, Attribute&& attribute)
{
    if (ODB_Mediator* const mediator = database.get_mediator(text(name)))
        mediator->set_attribute(&attribute, false);
}

GObjectPlace place_of(const ObjectDatabase& database, const char* name)
{
    GObjectPlace place;
    place = new ODB_ObjectPlacement(database, kRoot, text(name));
    return place;
}

void read_all(ObjectDatabase& database)
{
    ODB_MediatorsArray contents;
    database.get_contents(kRoot, contents, true);
    for (long i = 0; i < contents.count; ++i)
        static_cast<void>(describe_entry(contents.at(i)));
}

const WorldOperation kOperations[] = {
    {"OpenToRead",
     [](OperationWorld& world) {
         world.close();
         const ObjectDatabase database(OperationWorld::File("main.odb").c_str(), GIO::OpenRead);
     }},
    {"OpenToWrite",
     [](OperationWorld& world) {
         world.close();
         const ObjectDatabase database(OperationWorld::File("main.odb").c_str(),
                                       GIO::OpenReadWrite);
     }},
    {"MakeLibrary",
     [](OperationWorld&) {
         ObjectDatabase made(OperationWorld::File("made.odb").c_str(), GIO::OpenReadWrite);
         add(made, kRoot, "first", "one", nullptr);
     }},
    {"FurtherClient",
     [](OperationWorld& world) {
         ObjectDatabase client(*world.main);
         ObjectDatabase assigned;
         assigned = client;
         static_cast<void>(assigned.get_mediator(text("lamp")));
     }},
    {"OpenByStream",
     [](OperationWorld& world) {
         ompstream out;
         world.main->write(out);
         impstream in(out.bytes());
         ObjectDatabase client;
         client.read(in);
     }},
    {"AppendNew",
     [](OperationWorld& world) { add(*world.main, kRoot, "new", "a new one", nullptr); }},
    {"AppendInNewDirectory",
     [](OperationWorld& world) {
         add(*world.main, path_of({"deep", "er"}), "new", "a new one", nullptr);
     }},
    {"AppendLarge",
     [](OperationWorld& world) { add(*world.main, kRoot, "new", test_noise(200000), nullptr); }},
    {"AppendCompressed",
     [](OperationWorld& world) {
         add(*world.main, kRoot, "new", std::string(20000, 'c'), nullptr);
     }},
    {"AppendOver",
     [](OperationWorld& world) { add(*world.main, kRoot, "lamp", "another lamp", nullptr); }},
    {"AppendManyInAScope",
     [](OperationWorld& world) {
         const ResourceFile::CommitScope scope(*world.main);
         for (const char* name : {"s1", "s2", "s3"})
             add(*world.main, kRoot, name, name, nullptr);
     }},
    {"AppendExternal",
     [](OperationWorld& world) {
         add(*world.main, kRoot, "new", "a new one", new ODB_ExternalObject("new.lob"));
     }},
    {"AppendExternalInLOBJS",
     [](OperationWorld& world) {
         add(*world.main, kRoot, "new", "a new one",
             new ODB_ExternalObject(static_cast<const char*>(nullptr)));
     }},
    {"AppendReference",
     [](OperationWorld& world) {
         add(*world.main, kRoot, "new", "",
             new ODB_ReferenceToObject(*world.main, mediator_of(kRoot, "lamp")));
     }},
    {"AppendReferenceAway",
     [](OperationWorld& world) {
         add(*world.main, kRoot, "new", "",
             new ODB_ReferenceToObject(*world.other, mediator_of(kRoot, "far")));
     }},
    {"GetObject",
     [](OperationWorld& world) {
         static_cast<void>(OdbTest::note_of(*world.main, "lamp"));
         static_cast<void>(OdbTest::note_of(*world.main, "big"));
     }},
    {"GetExternalObject",
     [](OperationWorld& world) { static_cast<void>(OdbTest::note_of(*world.main, "ext")); }},
    {"GetObjectByReference",
     [](OperationWorld& world) {
         static_cast<void>(OdbTest::note_of(*world.main, "near"));
         static_cast<void>(OdbTest::note_of(*world.main, "away"));
     }},
    {"GetMediator",
     [](OperationWorld& world) { static_cast<void>(world.main->get_mediator(text("lamp"))); }},
    {"RemoveInternal", [](OperationWorld& world) { world.main->remove_object(text("lamp")); }},
    {"RemoveLarge", [](OperationWorld& world) { world.main->remove_object(text("big")); }},
    {"RemoveExternal", [](OperationWorld& world) { world.main->remove_object(text("ext")); }},
    {"RemoveReference", [](OperationWorld& world) { world.main->remove_object(text("away")); }},
    {"RenameInternal",
     [](OperationWorld& world) {
         world.main->rename_object(kRoot, text("lamp"), path_of({"e"}), text("moved"));
     }},
    {"RenameOver",
     [](OperationWorld& world) { world.main->rename_object(text("lamp"), text("big")); }},
    {"RenameOverExternal",
     [](OperationWorld& world) { world.main->rename_object(text("lamp"), text("ext")); }},
    {"RenameExternal",
     [](OperationWorld& world) { world.main->rename_object(text("ext"), text("moved")); }},
    {"RenameDirectory",
     [](OperationWorld& world) {
         world.main->rename(GResourceFullName(path_of({"d"}), GString(), GString()),
                            GResourceFullName(path_of({"e", "f"}), GString(), GString()));
     }},
    {"CopyInternal",
     [](OperationWorld& world) {
         world.main->copy_object_to(text("lamp"), *world.main, text("copy"));
     }},
    {"CopyLargeOut",
     [](OperationWorld& world) {
         world.main->copy_object_to(text("big"), *world.other, text("copy"));
     }},
    {"CopyExternal",
     [](OperationWorld& world) {
         world.main->copy_object_to(text("ext"), *world.main, text("copy"));
     }},
    {"CopyReference",
     [](OperationWorld& world) {
         world.main->copy_object_to(text("near"), *world.main, text("copy"));
     }},
    {"CopyLibrary", [](OperationWorld& world) { world.other->copy_to(*world.main); }},
    {"SetIcon", [](OperationWorld& world) { set_icon(*world.main, "big", 9); }},
    {"SetIconAgain", [](OperationWorld& world) { set_icon(*world.main, "lamp", 40); }},
    {"SetIconByReference", [](OperationWorld& world) { set_icon(*world.main, "near", 12); }},
    {"GetIcon",
     [](OperationWorld& world) {
         for (const char* name : {"lamp", "near", "big"})
             if (ODB_Mediator* const mediator = world.main->get_mediator(text(name)))
                 static_cast<void>(mediator->get_icon());
     }},
    {"SetAttribute",
     [](OperationWorld& world) { set_attribute(*world.main, "big", TestRating(4)); }},
    {"SetAttributeAgain",
     [](OperationWorld& world) { set_attribute(*world.main, "lamp", TestRating(1)); }},
    {"SetDescription",
     [](OperationWorld& world) {
         set_attribute(*world.main, "lamp", ODB_TextDescriptionAttribute("words"));
     }},
    {"GetAttributes",
     [](OperationWorld& world) {
         ODB_AttributesArray attributes;
         if (ODB_Mediator* const mediator = world.main->get_mediator(text("lamp")))
             mediator->get_attributes(attributes);
     }},
    {"RemoveAttribute",
     [](OperationWorld& world) {
         if (ODB_Mediator* const mediator = world.main->get_mediator(text("lamp")))
             mediator->remove_attribute(&TestRating::metaclass_);
     }},
    {"AddPicture",
     [](OperationWorld& world) {
         ODB_Mediator* const mediator = world.main->get_mediator(text("lamp"));
         const std::unique_ptr<ODB_ObjectAttribute> attribute(
             mediator == nullptr ? nullptr
                                 : mediator->get_attribute(&ODB_PixelMapAttribute::metaclass_));
         if (auto* const pictures = zmr::class_cast<ODB_PixelMapAttribute>(attribute.get()))
             pictures->add_map("back", test_picture(7).get());
     }},
    {"Modified",
     [](OperationWorld& world) {
         if (ODB_Mediator* const mediator = world.main->get_mediator(text("lamp")))
             mediator->modified();
     }},
    {"Contents",
     [](OperationWorld& world) {
         ODB_MediatorsArray contents;
         world.main->get_contents(kRoot, contents, true);
     }},
    {"Names",
     [](OperationWorld& world) {
         GStringCollection names;
         world.main->get_names(kRoot, names, true);
     }},
    {"CachedMediators",
     [](OperationWorld& world) {
         static_cast<void>(world.main->get_mediator(text("lamp")));
         ODB_MediatorsArray cached;
         world.main->get_cached_mediators(kRoot, cached, true);
     }},
    {"ReadAll", [](OperationWorld& world) { read_all(*world.main); }},
    {"Filters",
     [](OperationWorld& world) {
         ODB_FiltersContainer filters;
         filters.insert(std::make_unique<ODB_ClassFilter>("TestNote", static_cast<unsigned char>(1))
                            .release());
         filters.insert(std::make_unique<ODB_RegularExpressionFilter>("[a-m].*").release());
         ODB_MediatorsArray contents;
         world.main->get_contents(kRoot, contents, true);
         contents.apply_filter(filters);
     }},
    {"DefaultMediator",
     [](OperationWorld& world) {
         static_cast<void>(world.main->get_default_mediator());
         world.main->set_default_mediator(&ODB_ExternalObject::metaclass_);
     }},
    {"PlacementPuts",
     [](OperationWorld& world) {
         TestNote note("by a placement");
         static_cast<void>(place_of(*world.main, "new").put(&note, false));
     }},
    {"PlacementGets",
     [](OperationWorld& world) {
         const std::unique_ptr<GObject> object(place_of(*world.main, "lamp").get(false));
     }},
    {"PlacementCopies",
     [](OperationWorld& world) {
         static_cast<void>(place_of(*world.main, "ext").copy_to(place_of(*world.other, "copy")));
     }},
    {"PlacementRemoves",
     [](OperationWorld& world) { static_cast<void>(place_of(*world.main, "ext").remove()); }},
    {"RawStreamIn",
     [](OperationWorld& world) {
         const std::string bytes = test_noise(150000);
         impstream in(
             std::span(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
         world.main->copy_from(GResourceFullName(kRoot, text("lamp"), text("raw")), in, -1, 0);
     }},
    {"ExtractTo",
     [](OperationWorld& world) {
         ompstream out;
         const GResourceFullName big(kRoot, text("big"),
                                     ODB_InternalObject::GetDefaultResourceType());
         static_cast<void>(world.main->extract_to(out, big, false));
     }},
    {"ServerStream",
     [](OperationWorld& world) {
         const GResourceFullName big(kRoot, text("big"),
                                     ODB_InternalObject::GetDefaultResourceType());
         const ResourceFileBlock block = world.main->get_resource_block(big);
         iopstream& in = world.main->server->get_stream();
         in.seekg(static_cast<long>(block.offset), GIO::SeekBegin);
         std::vector<unsigned char> bytes(1000);
         static_cast<void>(in.readBytes(bytes.data(), 1000));
     }},
    {"Flush",
     [](OperationWorld& world) {
         add(*world.main, kRoot, "new", "flushed", nullptr);
         world.main->flush();
     }},
    {"Pack",
     [](OperationWorld& world) {
         world.main->remove_object(text("big"));
         world.main->pack();
     }},
    {"Verify",
     [](OperationWorld& world) {
         static_cast<void>(world.main->verify([](const ResourceFile::Damage&) {}));
     }},
    {"Empty", [](OperationWorld& world) { world.other->empty(); }},
    {"CloseAndOpen",
     [](OperationWorld& world) {
         add(*world.main, kRoot, "new", "kept by close", nullptr);
         world.close();
         world.open();
         read_all(*world.main);
     }},
};

}  // namespace

std::span<const WorldOperation> world_operations()
{
    return kOperations;
}

std::string OperationWorld::File(const char* name)
{
    static const TemporaryFolder folder;
    return folder.file(name);
}

void OperationWorld::Prepare()
{
    ObjectDatabase other(File("other.odb").c_str(), GIO::OpenReadWrite);
    add(other, kRoot, "far", "a far one", nullptr);
    ObjectDatabase main(File("main.odb").c_str(), GIO::OpenReadWrite);
    add(main, kRoot, "lamp", "a lamp", nullptr);
    set_icon(main, "lamp", 33);
    set_attribute(main, "lamp", TestRating(3));
    set_attribute(main, "lamp", ODB_PixelMapAttribute());
    add(main, kRoot, "big", test_noise(9000), nullptr);
    add(main, kRoot, "ext", "in a file", new ODB_ExternalObject("ext.lob"));
    add(main, path_of({"d"}), "below", "in a directory", nullptr);
    add(main, kRoot, "near", "", new ODB_ReferenceToObject(main, mediator_of(kRoot, "lamp")));
    add(main, kRoot, "away", "", new ODB_ReferenceToObject(other, mediator_of(kRoot, "far")));
    static_cast<void>(main.get_default_mediator());
}

void OperationWorld::open()
{
    main = std::make_unique<ObjectDatabase>(File("main.odb").c_str(), GIO::OpenReadWrite);
    other = std::make_unique<ObjectDatabase>(File("other.odb").c_str(), GIO::OpenReadWrite);
}

void OperationWorld::close()
{
    main.reset();
    other.reset();
}
