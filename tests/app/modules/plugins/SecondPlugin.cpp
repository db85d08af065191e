#include "PluginExport.h"
#include "Support.h"

#include "foundation/GStreamable.h"
#include "foundation/ModuleObjects.h"

// A plug-in that needs a library of its own.

namespace {

class SecondThing : public GStreamable {
    G_DECLARE_CLASS(SecondThing)

public:
    void write(opstream& out) override
    {
        GStreamable::write(out);
        number_ = support_number();
    }

private:
    int number_ = support_number();
    [[no_unique_address]] zmr::CountedObject<SecondThing> counted_;
};

G_DEFINE_CLASS(SecondThing, GStreamable);

struct AtEnd {
    ~AtEnd()
    {
        if (listener != nullptr)
            listener("second");
    }
    EndListener listener = nullptr;
} at_end;

}  // namespace

PLUGIN_EXPORT void plugin_tell_end(EndListener listener);
PLUGIN_EXPORT GStreamable* plugin_make();

void plugin_tell_end(EndListener listener)
{
    at_end.listener = listener;
}

GStreamable* plugin_make()
{
    return new SecondThing;
}
