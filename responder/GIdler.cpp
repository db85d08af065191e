#include "responder/GIdler.h"

#include "foundation/GLock.h"
#include "foundation/GSortedCollection.h"
#include "foundation/Immortal.h"

#include <atomic>
#include <memory>

namespace {

/// The registered idlers, by address. Not owned.
class IdlerList final : public GSortedCollection {
public:
    IdlerList() : GSortedCollection(0, 4, 0) {}
};

/// Null while no idler is registered. Written under the lock; read without it only for that test.
constinit std::atomic<IdlerList*> g_idlers = nullptr;

/// Modules that unload at the end of the process still take their idlers out.
GCriticalSection& idler_lock()
{
    static zmr::Immortal<GCriticalSection> lock;
    return *lock;
}

/// The list is there exactly while it holds something. Under the lock.
void drop_empty_list()
{
    IdlerList* idlers = g_idlers;
    if (idlers == nullptr || idlers->count > 0)
        return;
    g_idlers = nullptr;
    delete idlers;
}

}  // namespace

GIdler::~GIdler()
{
    if (g_idlers.load(std::memory_order_acquire) != nullptr)
        allow_idle(false);
}

void GIdler::allow_idle(bool on)
{
    if (!on && g_idlers.load(std::memory_order_acquire) == nullptr)
        return;
    const GSingleLock lock(idler_lock());
    if (on) {
        if (IdlerList* idlers = g_idlers) {
            idlers->v_insert(this);
            return;
        }
        auto first = std::make_unique<IdlerList>();
        first->v_insert(this);
        g_idlers = first.release();
        return;
    }
    if (IdlerList* idlers = g_idlers)
        idlers->v_remove(this);
    drop_empty_list();
}

bool GIdler::allow_idle() const
{
    if (g_idlers.load(std::memory_order_acquire) == nullptr)
        return false;
    const GSingleLock lock(idler_lock());
    const IdlerList* idlers = g_idlers;
    return idlers != nullptr && idlers->v_index_of(this) != -1;
}

void GIdler::CallAllIdleFunctions()
{
    if (g_idlers.load(std::memory_order_acquire) == nullptr)
        return;
    const GSingleLock lock(idler_lock());
    const IdlerList* at_start = g_idlers;
    if (at_start == nullptr)
        return;
    for (long index = at_start->count - 1; index >= 0; --index) {
        // Idlers may have come and gone, and the list with them.
        const IdlerList* idlers = g_idlers;
        if (idlers != nullptr && index < idlers->count)
            static_cast<GIdler*>(idlers->items[index])->idle();
    }
}
