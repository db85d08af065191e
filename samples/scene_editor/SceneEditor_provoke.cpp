#include "scene_editor/SceneEditor.h"

#include "app/GWinThread.h"
#include "foundation/GException.h"
#include "platform/CWnd.h"
#include "scene_editor/resource.h"

#include <cstring>

// The mistakes of handlers that the program has to outlive. The values are volatile, so that the
// compiler cannot see the mistakes coming.

namespace {

int* volatile g_nowhere = nullptr;
const char* volatile g_no_text = nullptr;
void (*volatile g_no_function)() = nullptr;
volatile int g_zero = 0;
volatile int g_result = 0;

void read_nowhere()
{
    g_result = *g_nowhere;
}

unsigned read_nowhere_on_a_worker(void*)
{
    read_nowhere();
    return 0;
}

/// A window that never comes to be.
class FaultyWindow : public CWnd {
protected:
    DECLARE_MESSAGE_MAP()
    int OnCreate(LPCREATESTRUCT)
    {
        read_nowhere();
        return 0;
    }
};

BEGIN_MESSAGE_MAP(FaultyWindow, CWnd)
    ON_WM_CREATE()
END_MESSAGE_MAP()

}  // namespace

void SceneEditor::OnProvoke(UINT id)
{
    switch (id) {
        case ID_PROVOKE_READ:
            read_nowhere();
            break;
        case ID_PROVOKE_WRITE:
            *g_nowhere = 1;
            break;
        case ID_PROVOKE_DIVISION:
            g_result = 1 / g_zero;
            break;
        case ID_PROVOKE_CALL:
            g_no_function();
            break;
        case ID_PROVOKE_INSTRUCTION:
            asm volatile("ud2");
            break;
        case ID_PROVOKE_TEXT:
            g_result = static_cast<int>(std::strlen(g_no_text));
            break;
        case ID_PROVOKE_IN_CREATION: {
            FaultyWindow window;
            window.CreateEx(0, nullptr, "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr);
            break;
        }
        case ID_PROVOKE_ON_WORKER: {
            auto* const worker =  // deletes itself at its end
                new GWinThread(&read_nowhere_on_a_worker, nullptr, CREATE_SUSPENDED);
            if (worker->m_hThread != nullptr)
                worker->ResumeThread();
            else
                delete worker;
            break;
        }
        default:
            throw GLibraryException("This is what an exception of a handler says.");
    }
}
