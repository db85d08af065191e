#include "PluginExport.h"

#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GException.h"
#include "foundation/GObjectFileFormat.h"
#include "foundation/ModuleObjects.h"
#include "store/RegularExpression.h"

// A plug-in with a class that counts its objects and a file format.

namespace {

EndListener end_listener = nullptr;

class FirstThing : public GStreamable {
    G_DECLARE_CLASS(FirstThing)

private:
    [[no_unique_address]] zmr::CountedObject<FirstThing> counted_;
};

G_DEFINE_CLASS(FirstThing, GStreamable);

/// Knows files with the extension "first", and no others.
class FirstFormat final : public GObjectFileFormat {
public:
    FirstFormat() { Register(*this); }
    ~FirstFormat() override
    {
        if (end_listener != nullptr)
            end_listener("first");
    }
    unsigned char write_object(const char*, GStreamable*) const override { return 0; }
    GStreamable* read_object(const char* file) const override
    {
        return knows(file) ? new FirstThing : nullptr;
    }
    GString read_object_class_name(const char* file) override
    {
        return knows(file) ? FirstThing::metaclass_.name : "";
    }

private:
    static bool knows(const char* file) { return GString(file).view().ends_with(".first"); }
};

FirstFormat first_format;

}  // namespace

PLUGIN_EXPORT void plugin_tell_end(EndListener listener);
PLUGIN_EXPORT GStreamable* plugin_make();
PLUGIN_EXPORT const char* plugin_use_library();

void plugin_tell_end(EndListener listener)
{
    end_listener = listener;
}

GStreamable* plugin_make()
{
    return new FirstThing;
}

const char* plugin_use_library()
{
    FirstThing thing;
    GStreamable* const copied = thing.clone(true);
    if (copied == nullptr)
        return "no copy";
    GStreamable::destroy(copied);
    if (GDynamicLinkLibrary("./no such library", 0).module != nullptr)
        return "what is missing was loaded";
    if (GDynamicLinkLibrary::LastError().is_empty())
        return "no reason";
    if (!(RegularExpression("a+") == "aaa"))
        return "no match";
    try {
        throw GStreamException("thrown");
    } catch (const GException&) {
        return "";
    }
}
