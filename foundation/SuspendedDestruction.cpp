#include "foundation/SuspendedDestruction.h"

#include "foundation/GObject.h"
#include "foundation/Immortal.h"

#include <exception>
#include <mutex>
#include <vector>

namespace {

/// The objects that wait, in the order of their coming. An entry is null once its object is gone;
/// `first` is the next one to free.
struct Waiting {
    std::mutex mutex;
    std::vector<GObject*> objects;
    std::size_t first = 0;
    std::atomic<bool> any = false;
};

/// Made at the first use: a mutex is not constant-initialised everywhere.
[[nodiscard]] Waiting& waiting()
{
    static zmr::Immortal<Waiting> objects;
    return *objects;
}

}  // namespace

constinit std::atomic<bool> SuspendedDestruction::enabled_ = false;

void SuspendedDestruction::Enable(unsigned char enable)
{
    {
        const std::lock_guard lock(waiting().mutex);
        enabled_ = enable != 0;
    }
    if (enable == 0)
        DestroyAll();
}

bool SuspendedDestruction::Add(GObject* object)
{
    Waiting& all = waiting();
    const std::lock_guard lock(all.mutex);
    if (!enabled_)
        return false;
    try {
        all.objects.push_back(object);
    } catch (const std::exception&) {  // bad_alloc, or what the application's new-handler throws
        return false;                  // with no memory to wait in, it is freed at once
    }
    object->waiting_index_ = all.objects.size() - 1;
    object->object_flags_ |= GObject::kWaiting;
    all.any = true;
    return true;
}

void SuspendedDestruction::Forget(GObject* object)
{
    const std::lock_guard lock(waiting().mutex);
    waiting().objects[object->waiting_index_] = nullptr;
}

void SuspendedDestruction::DestroyAll()
{
    Waiting& all = waiting();
    if (!all.any.load(std::memory_order_relaxed))
        return;
    // One at a time: a destructor may destroy more, delete one that waits, or come back here.
    std::unique_lock lock(all.mutex);
    while (all.first < all.objects.size()) {
        GObject* object = all.objects[all.first++];
        if (object == nullptr)
            continue;
        object->pointers_ = nullptr;
        object->object_flags_ =
            static_cast<unsigned char>(object->object_flags_ & ~GObject::kWaiting);
        lock.unlock();
        delete object;
        lock.lock();
    }
    all.objects.clear();
    all.first = 0;
    all.any = false;
}
