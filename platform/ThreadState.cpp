#include "platform/ThreadState.h"

#include "platform/CDC.h"
#include "platform/CGdiObject.h"
#include "platform/CImageList.h"
#include "platform/CMenu.h"
#include "platform/CWnd.h"

namespace zmr {
namespace {

/// A slot whose value is freed at the end of each thread and when the library goes. A thread_local
/// with a destructor would keep the library from being unloaded.
class Slot {
public:
    Slot() : index_(::FlsAlloc(&Slot::free_state)) {}
    ~Slot() { ::FlsFree(index_); }
    Slot(const Slot&) = delete;
    Slot& operator=(const Slot&) = delete;

    [[nodiscard]] ThreadState* get() const
    {
        return static_cast<ThreadState*>(::FlsGetValue(index_));
    }
    void set(ThreadState* state) const { ::FlsSetValue(index_, state); }

private:
    static void WINAPI free_state(void* state) { delete static_cast<ThreadState*>(state); }

    DWORD index_;
};

Slot& slot()
{
    static Slot only;
    return only;
}

}  // namespace

ThreadState::ThreadState() = default;

ThreadState::~ThreadState()
{
    temporary_locks = 0;
    drop_temporaries();
}

ThreadState& ThreadState::current()
{
    const Slot& states = slot();
    if (ThreadState* const known = states.get())
        return *known;
    auto made = std::make_unique<ThreadState>();
    states.set(made.get());
    return *made.release();
}

ThreadState* ThreadState::known() noexcept
{
    const DWORD kept = ::GetLastError();
    ThreadState* const state = slot().get();
    ::SetLastError(kept);
    return state;
}

void ThreadState::drop_temporaries()
{
    if (temporary_locks > 0)
        return;
    // Device contexts last selected drawing objects; windows come last, as menus and contexts are
    // theirs.
    device_contexts.drop_temporaries<&CDC::m_hDC>();
    drawing_objects.drop_temporaries<&CGdiObject::m_hObject>();
    image_lists.drop_temporaries<&CImageList::m_hImageList>();
    menus.drop_temporaries<&CMenu::m_hMenu>();
    windows.drop_temporaries<&CWnd::m_hWnd>();
}

}  // namespace zmr
