// A host as an outside engineer writes it: derives a class from the library's, builds it by the
// name that stands in files, and keeps an object in a library file.
#include "OutsideLamp.h"

#include "foundation/GMetaClass.h"
#include "odb/ObjectDatabase.h"

#include <cstdio>
#include <filesystem>
#include <memory>

namespace {

int failures = 0;

void expect(bool holds, const char* what)
{
    if (holds)
        return;
    std::printf("does not hold: %s\n", what);
    ++failures;
}

void build_by_name()
{
    const GMetaClass* found = GMetaClass::FindByName("OutsideLamp");
    expect(found == &OutsideLamp::metaclass_, "the class is found by its name");
    if (found == nullptr)
        return;
    const std::unique_ptr<GRTTIObject> object(found->buildObject());
    expect(object != nullptr, "an object is built by name");
    const auto* lamp = zmr::class_cast<OutsideLamp>(object.get());
    expect(lamp != nullptr, "the object casts to its class");
    expect(lamp != nullptr && lamp->brightness() == 75, "its constructor ran");
    expect(zmr::class_cast<GStreamable>(object.get()) != nullptr, "it casts to the library's base");
    expect(found->isKindOf(&GObject::metaclass_) == &GObject::metaclass_,
           "the library's classes are its bases");
}

void keep_in_a_library()
{
    const char* const file = "outside_host.zlib";
    std::filesystem::remove(file);
    {
        const OutsideLamp lamp(42);
        ObjectDatabase library(file, GIO::OpenReadWrite);
        library.append_object(&lamp, "desk lamp", nullptr);
        expect(library.object_exists("desk lamp"), "the object is there once it is stored");
        library.close();
    }
    ObjectDatabase library(file, GIO::OpenRead);
    GStreamable* const object = library.get_object("desk lamp");
    const auto* lamp = zmr::class_cast<OutsideLamp>(object);
    expect(lamp != nullptr, "the object is read back in its class");
    expect(lamp != nullptr && lamp->brightness() == 42, "it is the one that was stored");
    GStreamable::Destroy(object);
}

}  // namespace

int main()
{
    build_by_name();
    keep_in_a_library();

    std::printf("%s\n", failures == 0 ? "The host works." : "The host does not work.");
    return failures == 0 ? 0 : 1;
}
