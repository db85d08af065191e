#include "app/GAccelerators.h"

#include "platform/AfxResources.h"

#include "foundation/GSortedCollection.h"

#include <utility>

namespace {

/// The live objects, by address. Who empties the list by hand destroys them; nobody does.
class AcceleratorList final : public GSortedCollection {
public:
    AcceleratorList() : GSortedCollection(0, 4, 0) {}
    void freeItem(void* item) override { delete static_cast<GAccelerators*>(item); }
};

/// Null while there is no object. Not destroyed at the library's end: objects may be statics of
/// modules that end later.
constinit AcceleratorList* g_live = nullptr;

}  // namespace

GAccelerators::GAccelerators()
{
    if (g_live == nullptr)
        g_live = new AcceleratorList;
    g_live->v_insert(this);
}

GAccelerators::~GAccelerators()
{
    g_live->v_remove(this);
    if (g_live->count == 0)
        delete std::exchange(g_live, nullptr);
}

bool GAccelerators::load(unsigned int id)
{
    return load(MAKEINTRESOURCEA(id));
}

bool GAccelerators::load(const char* name)
{
    return load(AfxFindResourceHandle(name, RT_ACCELERATOR), name);
}

bool GAccelerators::load(HINSTANCE module, unsigned int id)
{
    return load(module, MAKEINTRESOURCEA(id));
}

bool GAccelerators::load(HINSTANCE module, const char* name)
{
    table_ = ::LoadAcceleratorsA(module, name);
    return table_ != nullptr;
}

int GAccelerators::translate(MSG* message) const
{
    if (table_ == nullptr || message->hwnd != window_ || !::IsWindow(window_))
        return 0;
    return ::TranslateAcceleratorA(window_, table_, message);
}

bool GAccelerators::Translate(MSG* message)
{
    for (long index = g_live != nullptr ? g_live->count - 1 : -1; index >= 0; --index) {
        // The command of a key ends the walk, but the window asked in between may end objects.
        if (g_live == nullptr || index >= g_live->count)
            continue;
        if (static_cast<GAccelerators*>(g_live->items[index])->translate(message) != 0)
            return true;
    }
    return false;
}
