// Two libraries full of entries out of arbitrary bytes: mediators of every class, of any version,
// with any names of files and entries in them, so that they refer to each other, to themselves and
// to nothing. Both are listed, read, copied, renamed, overwritten, packed and emptied. At the end
// nobody may hold either of them open.
//
// The input is a list of entries: a byte with the library (bit 0) and the class (bits 1 to 3), one
// with the name (bits 0 to 2), the directory (3 and 4) and the type (5 to 7), the length of what
// the object reads, and that.
#include "MemoryFile.h"
#include "foundation/mpstream.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_AttributesArray.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_InternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_ObjectPlacement.h"
#include "odb/ODB_Options.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ObjectDatabase.h"
#include "store/LibraryFile.h"
#include "store/StoreFiles.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

namespace {

// No such directory is on the disk: nothing is made there.
constexpr const char* kFiles[] = {"/z/main.odb", "/z/other.odb"};
constexpr const char* kClasses[] = {
    "ODB_InternalObject",  "ODB_ExternalObject", "ODB_ReferenceToObject", "ODB_ReferenceToObject",
    "ODB_ObjectPlacement", "ODB_Options",        "ODB_UnknownAttribute",  nullptr};
constexpr const char* kPaths[][2] = {{"", ""}, {"a", ""}, {"a", "x"}, {"b", ""}};

const GString& type_of(unsigned number)
{
    static const GString types[] = {ObjectDatabase::MediatorResourceType,
                                    ObjectDatabase::MediatorResourceType,
                                    ObjectDatabase::MediatorResourceType,
                                    ObjectDatabase::MediatorResourceType,
                                    ODB_InternalObject::GetDefaultResourceType(),
                                    ObjectDatabase::ODB_IconResourceType,
                                    GString(".ODB options"),
                                    GString("ODB_UnknownAttribute")};
    return types[number % std::size(types)];
}

GString name_of(unsigned number)
{
    return GString("n" + std::to_string(number % 8));
}

void check(bool condition)
{
    if (!condition)
        std::abort();
}

/// Makes both libraries and puts the input's entries into them as they are.
void fill(MemoryFileSystem& files, const std::uint8_t* data, std::size_t size)
{
    zmr::LibraryFile libraries[2] = {zmr::LibraryFile(files), zmr::LibraryFile(files)};
    for (std::size_t i = 0; i < 2; ++i)
        check(libraries[i].open(kFiles[i], zmr::LibraryAccess::Write).status ==
              zmr::LibraryOpenStatus::Ok);
    for (int entries = 0; size >= 3 && entries < 64; ++entries) {
        const unsigned kind = data[0];
        const unsigned place = data[1];
        const std::size_t length = std::min<std::size_t>(data[2], size - 3);
        const char* const class_name = kClasses[kind >> 1 & 7];
        ompstream out;
        if (class_name != nullptr) {
            out.writeByte(2);
            out.writeString(class_name);
        }
        out.writeBytes(data + 3, static_cast<long>(length));
        zmr::LibraryPath path;
        for (const char* const level : kPaths[place >> 3 & 3])
            if (*level != '\0')
                check(path.append(level));
        static_cast<void>(libraries[kind & 1].put(
            path, name_of(place).view(), type_of(place >> 5).view(), zmr::ContentKind::Streamable,
            class_name == nullptr ? "" : class_name, std::as_bytes(out.bytes())));
        data += 3 + length;
        size -= 3 + length;
    }
    for (zmr::LibraryFile& library : libraries)
        check(library.close());
}

void use_object(GStreamable* object)
{
    if (auto* const placement = zmr::class_cast<ODB_ObjectPlacement>(object)) {
        GString text;
        placement->get_readable_form(text);
        GStreamable::Destroy(zmr::class_cast<GStreamable>(placement->get_object(false)));
        static_cast<void>(placement->get_object_class_id());
        ODB_Options written;
        static_cast<void>(placement->put_object(&written, false));
    }
    GStreamable::Destroy(object);
}

void use_mediator(ODB_Mediator& mediator)
{
    static_cast<void>(mediator.get_icon());
    static_cast<void>(mediator.has_icon());
    mediator.unload_icon();
    ODB_AttributesArray attributes;
    mediator.get_attributes(attributes);
    if (const auto* const reference = zmr::class_cast<ODB_ReferenceToObject>(&mediator))
        static_cast<void>(reference->get_referenced_DB_filename());
    if (const auto* const external = zmr::class_cast<ODB_ExternalObject>(&mediator))
        static_cast<void>(external->relative_filename());
    mediator.modified();
}

void read_all(ObjectDatabase& database)
{
    ODB_MediatorsArray contents;
    database.get_contents(GResourcePath(), contents, true);
    for (long i = 0; i < contents.count; ++i) {
        const GResourceFullName name = contents.at(i).get_DB_resname();
        use_object(database.get_object(name));
    }
    for (long i = 0; i < contents.count; ++i)
        use_mediator(contents.at(i));
    static_cast<void>(database.get_default_mediator());
}

void change(ObjectDatabase& main, ObjectDatabase& other)
{
    for (unsigned i = 0; i < 8; ++i) {
        const GString name = name_of(i);
        main.copy_object_to(name, other, name_of(i + 1));
        other.rename_object(name, name_of(i + 3));
        if (ODB_Mediator* const mediator = main.get_mediator(name))
            mediator->set_icon(new PixelMap(1, 1, AbstractImage::MapFormat(6), nullptr));
    }
    ODB_Options object;
    main.append_object(&object, name_of(0), nullptr);
    main.append_object(&object, name_of(1),
                       new ODB_ExternalObject(static_cast<const char*>(nullptr)));
    main.append_object(&object, name_of(2), main.get_mediator(name_of(2)));
    main.remove_object(name_of(3));
    GResourcePath a;
    a += GString("a");
    GResourcePath c;
    c += GString("c");
    main.rename(GResourceFullName(a, GString(), GString()),
                GResourceFullName(c, GString(), GString()));
    main.copy_to(other);
}

void use_both(const std::uint8_t* data, std::size_t size)
{
    ObjectDatabase main(kFiles[0], GIO::OpenReadWrite);
    read_all(main);
    ObjectDatabase other(kFiles[1], size % 2 == 0 ? GIO::OpenReadWrite : GIO::OpenRead);
    read_all(other);
    change(main, other);
    if (size % 3 == 0)
        main.close();
    read_all(other);
    if (size > 0 && data[size - 1] % 2 == 0)
        other.pack();
    other.empty();
    if (main.server != nullptr)
        read_all(main);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    MemoryFileSystem files;
    const zmr::StoreFilesInPlace in_place(files);
    fill(files, data, size);
    use_both(data, size);
    check(files.open_devices() == 0);
    return 0;
}
