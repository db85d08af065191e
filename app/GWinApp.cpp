#include "app/GWinApp.h"

#include "app/GAccelerators.h"
#include "app/IdleTurn.h"
#include "platform/AfxOle.h"
#include "platform/AfxResources.h"
#include "platform/AfxState.h"
#include "platform/FaultGuard.h"
#include "platform/FaultTranslation.h"

#include "foundation/GException.h"
#include "foundation/GModuleHooks.h"
#include "foundation/SuspendedDestruction.h"
#include "responder/GIdler.h"
#include "settings/GHelp.h"
#include "settings/LibraryIds.h"
#include "settings/MessageFlags.h"
#include "settings/MsgBox.h"

#include <clocale>
#include <utility>

IMPLEMENT_DYNAMIC(GWinApp, CWinApp)

BEGIN_MESSAGE_MAP(GWinApp, CWinApp)
END_MESSAGE_MAP()

namespace {

[[noreturn]] void throw_out_of_memory()
{
    throw OutOfMemory_Exception();
}

unsigned load_text(unsigned id, char* buffer, unsigned size, void*)
{
    return static_cast<unsigned>(AfxLoadString(id, buffer, size));
}

void sleep_until_input()
{
    // Input that was seen already, but not taken, is input too.
    ::MsgWaitForMultipleObjectsEx(0, nullptr, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
}

/// Once for the process: what GString is told, it keeps.
void find_texts_of_resources()
{
    static const bool told = [] {
        GString::AddLoadStringFunc(&load_text, nullptr);
        return true;
    }();
    static_cast<void>(told);
}

}  // namespace

GWinApp::GWinApp() : CWinApp(nullptr)
{
    // Texts by the user's customs, but numbers as files and formats have them.
    std::setlocale(LC_ALL, "");
    std::setlocale(LC_NUMERIC, "C");
    former_new_handler_ = GSetNewHandler(&throw_out_of_memory);
    find_texts_of_resources();
    message_hook_ =
        ::SetWindowsHookExA(WH_GETMESSAGE, &GWinApp::MsgBoxHook, nullptr, ::GetCurrentThreadId());
}

GWinApp::~GWinApp()
{
    if (message_hook_ != nullptr)
        ::UnhookWindowsHookEx(message_hook_);
    leave_main_window();
    GSetNewHandler(former_new_handler_);
}

BOOL GWinApp::InitInstance()
{
    if (!AfxOleInit()) {
        AfxMessageBox("OLE initialization failed");
        return FALSE;
    }
    AfxEnableControlContainer();
    Enable3dControls();
    GHelp::Initialize();
    SuspendedDestruction::Enable(true);
    return CWinApp::InitInstance();
}

int GWinApp::Run()
{
    AfxSetFaultTranslator(&GWinApp::SeTranslatorFunc);
    m_msgCur = MSG{};
    for (;;) {
        try {
            return zmr::guarded([this] { return CWinApp::Run(); });
        } catch (const GLibraryException& failure) {
            MsgBox::message_box(failure.message_text.text, zmr::kMessageReport);
        }
        if (m_msgCur.message == WM_QUIT)  // it came from the very end, which is not begun anew
            return static_cast<int>(m_msgCur.wParam);
        if (std::exchange(idle_work_failed_, false))
            sleep_until_input();
    }
}

BOOL GWinApp::PreTranslateMessage(MSG* message)
{
    return GAccelerators::Translate(message) || CWinApp::PreTranslateMessage(message);
}

BOOL GWinApp::OnIdle(LONG count)
{
    SuspendedDestruction::DestroyAll();
    if (zmr::idle_turn(count) == zmr::IdleTurn::wait) {
        CWinApp::OnIdle(1);      // temporary objects
        zmr::rethrow_pending();  // of what others sent during the last sleep
        sleep_until_input();
        return TRUE;
    }
    watch_main_window();
    try {
        GIdler::CallAllIdleFunctions();
        CWinApp::OnIdle(count);
    } catch (...) {
        idle_work_failed_ = true;
        throw;
    }
    return TRUE;
}

int GWinApp::ExitInstance()
{
    SuspendedDestruction::Enable(false);  // frees what waits, while the modules have its code
    GHelp::Terminate();
    try {
        AfxOleTerm(FALSE);
        modules_.empty();
    } catch (...) {
        // The program is over; nobody is there to be told.
    }
    return CWinApp::ExitInstance();
}

void GWinApp::SeTranslatorFunc(unsigned int, EXCEPTION_POINTERS*)
{
    GString text;
    text.loadString(ZMR_IDS_FAULT);
    throw GLibraryException(text.text);
}
