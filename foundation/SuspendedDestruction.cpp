#include "foundation/SuspendedDestruction.h"

#include "foundation/GObject.h"
#include "foundation/Immortal.h"

#include <atomic>
#include <mutex>
#include <new>
#include <vector>

namespace {

/// The objects that wait, in the order of their coming. An entry is null once its object is gone;
/// `first` is the next one to free.
struct Waiting {
    std::mutex mutex;
    std::vector<GObject*> objects;
    std::size_t first = 0;
    std::atomic<bool> any = false;
    std::atomic<bool> enabled = false;
};

constinit zmr::Immortal<Waiting> g_waiting;

}  // namespace

void SuspendedDestruction::Enable(unsigned char enable)
{
    {
        const std::lock_guard lock(g_waiting->mutex);
        g_waiting->enabled = enable != 0;
    }
    if (enable == 0)
        DestroyAll();
}

bool SuspendedDestruction::IsEnabled()
{
    return g_waiting->enabled;
}

bool SuspendedDestruction::Add(GObject* object)
{
    if (!g_waiting->enabled)
        return false;
    const std::lock_guard lock(g_waiting->mutex);
    if (!g_waiting->enabled)
        return false;
    try {
        g_waiting->objects.push_back(object);
    } catch (const std::bad_alloc&) {
        return false;  // with no memory to wait in, it is freed at once
    }
    object->waiting_index_ = g_waiting->objects.size() - 1;
    object->object_flags_ |= GObject::kWaiting;
    g_waiting->any = true;
    return true;
}

void SuspendedDestruction::Forget(GObject* object)
{
    const std::lock_guard lock(g_waiting->mutex);
    g_waiting->objects[object->waiting_index_] = nullptr;
}

void SuspendedDestruction::DestroyAll()
{
    if (!g_waiting->any.load(std::memory_order_relaxed))
        return;
    // One at a time: a destructor may destroy more, delete one that waits, or come back here.
    std::unique_lock lock(g_waiting->mutex);
    while (g_waiting->first < g_waiting->objects.size()) {
        GObject* object = g_waiting->objects[g_waiting->first++];
        if (object == nullptr)
            continue;
        object->pointers_ = nullptr;
        object->object_flags_ =
            static_cast<unsigned char>(object->object_flags_ & ~GObject::kWaiting);
        lock.unlock();
        delete object;
        lock.lock();
    }
    g_waiting->objects.clear();
    g_waiting->first = 0;
    g_waiting->any = false;
}
