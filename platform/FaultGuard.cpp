#include "platform/FaultGuard.h"

#include "platform/ThreadState.h"

#include <cxxabi.h>

#include <csetjmp>
#include <cstdlib>
#include <exception>

namespace zmr {

/// A place to come back to.
struct FaultGuard {
    jmp_buf place;
    FaultGuard* outer;
};

}  // namespace zmr

namespace {

/// What the C++ run-time library keeps for each thread: its layout is part of the binary interface.
struct ExceptionGlobals {
    void* caught;
    unsigned uncaught;
};

ExceptionGlobals& exception_globals()
{
    return *reinterpret_cast<ExceptionGlobals*>(abi::__cxa_get_globals());
}

/// The run-time library's part of leaving frames without unwinding them: the handlers in them end.
void end_handlers_since(const ExceptionGlobals& former)
{
    while (exception_globals().caught != nullptr && exception_globals().caught != former.caught)
        abi::__cxa_end_catch();
    exception_globals().uncaught = former.uncaught;
}

std::terminate_handler former_terminate = nullptr;

/// Where a fault's exception arrives that cannot be unwound.
[[noreturn]] void on_terminate()
{
    if (zmr::ThreadState* const state = zmr::ThreadState::known();
        state != nullptr && state->fault_guard != nullptr && state->last_fault != nullptr &&
        std::current_exception() == state->last_fault)
        std::longjmp(state->fault_guard->place, 1);
    if (former_terminate != nullptr)
        former_terminate();
    std::abort();
}

/// The handler of the process, as long as this library is loaded.
class TerminateHandler {
public:
    TerminateHandler() { former_terminate = std::set_terminate(&on_terminate); }
    ~TerminateHandler()
    {
        if (std::get_terminate() == &on_terminate)
            std::set_terminate(former_terminate);
    }
    TerminateHandler(const TerminateHandler&) = delete;
    TerminateHandler& operator=(const TerminateHandler&) = delete;
};

/// A function of its own, so that its frame has the destructor and the one with the jump has none.
__attribute__((noinline)) void call_in(zmr::ThreadState& state, zmr::FaultGuard& guard,
                                       void (*body)(void*), void* argument)
{
    struct Leave {
        zmr::ThreadState& state;
        zmr::FaultGuard* outer;
        ~Leave() { state.fault_guard = outer; }
    };
    guard.outer = state.fault_guard;
    state.fault_guard = &guard;
    const Leave leave{state, guard.outer};
    body(argument);
}

}  // namespace

__attribute__((noinline)) bool zmr::run_guarded(void (*body)(void*), void* argument)
{
    ThreadState& state = ThreadState::current();
    FaultGuard guard;
    const ExceptionGlobals former = exception_globals();
    // Frames of the system between here and a fault may have put themselves in the thread's list.
    auto* volatile tib = reinterpret_cast<NT_TIB*>(::NtCurrentTeb());
    auto* volatile frames = tib->ExceptionList;
    // Without a frame the jump restores the registers and unwinds nothing.
    if (::_setjmp(guard.place, nullptr) == 0) {
        call_in(state, guard, body, argument);
        return true;
    }
    tib->ExceptionList = frames;
    ThreadState& left = ThreadState::current();
    left.fault_guard = left.fault_guard->outer;
    end_handlers_since(former);
    return false;
}

void zmr::throw_last_fault()
{
    std::rethrow_exception(ThreadState::current().last_fault);
}

bool zmr::translates_faults() noexcept
{
    const ThreadState* const state = ThreadState::known();
    return state != nullptr && state->fault_translator != nullptr;
}

void zmr::install_fault_guard()
{
    static const TerminateHandler only;
}
