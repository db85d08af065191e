// A host as an outside engineer writes it: derives a class from the library's, and builds it by the
// name that stands in files.
#include "foundation/GMetaClass.h"
#include "foundation/GStreamable.h"

#include <cstdio>
#include <memory>

class OutsideLamp : public GStreamable {
    G_DECLARE_CLASS(OutsideLamp)

public:
    [[nodiscard]] int brightness() const { return brightness_; }

private:
    int brightness_ = 75;
};

G_DEFINE_CLASS(OutsideLamp, GStreamable);

namespace {

int failures = 0;

void expect(bool holds, const char* what)
{
    if (holds)
        return;
    std::printf("does not hold: %s\n", what);
    ++failures;
}

}  // namespace

int main()
{
    const GMetaClass* found = GMetaClass::FindByName("OutsideLamp");
    expect(found == &OutsideLamp::metaclass_, "the class is found by its name");
    if (found == nullptr)
        return 1;

    const std::unique_ptr<GRTTIObject> object(found->buildObject());
    expect(object != nullptr, "an object is built by name");
    const auto* lamp = zmr::class_cast<OutsideLamp>(object.get());
    expect(lamp != nullptr, "the object casts to its class");
    expect(lamp != nullptr && lamp->brightness() == 75, "its constructor ran");
    expect(zmr::class_cast<GStreamable>(object.get()) != nullptr, "it casts to the library's base");
    expect(found->isKindOf(&GObject::metaclass_) == &GObject::metaclass_,
           "the library's classes are its bases");

    std::printf("%s\n", failures == 0 ? "The host works." : "The host does not work.");
    return failures == 0 ? 0 : 1;
}
