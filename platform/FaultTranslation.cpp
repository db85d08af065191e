#include "platform/FaultTranslation.h"

#include "platform/FaultGuard.h"
#include "platform/ThreadState.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <exception>
#include <utility>

// A fault is not thrown where the system tells of it: there the stack holds frames that no
// exception passes. Instead the faulting thread is sent on at an entry of ours, as if the faulting
// instruction had called it, and there the translator throws.

extern "C" {
/// Where a thread goes on behind its fault. Aligns the stack, which a fault may leave in any state,
/// and has a frame that the unwinder knows.
void zmr_fault_entry();
/// Called by it. Throws; never returns.
[[noreturn]] void zmr_throw_fault();
}

// clang-format off
asm(".text\n"
    ".globl zmr_fault_entry\n"
    ".def zmr_fault_entry; .scl 2; .type 32; .endef\n"
    ".seh_proc zmr_fault_entry\n"
    "zmr_fault_entry:\n"
    "  pushq %rbp\n"
    "  .seh_pushreg %rbp\n"
    "  movq %rsp, %rbp\n"
    "  .seh_setframe %rbp, 0\n"
    "  .seh_endprologue\n"
    "  andq $-16, %rsp\n"
    "  subq $32, %rsp\n"
    "  call zmr_throw_fault\n"
    "  nop\n"  // the unwinder looks one byte in front of the return address
    "  ud2\n"
    "  .seh_endproc\n");
// clang-format on

namespace {

constexpr DWORD kDirectionFlag = 0x400;
constexpr std::size_t kRoomToThrow = 64 * 1024;  ///< The unwinder's own frames are large.
constexpr ULONG kRoomToTell = 32 * 1024;         ///< Of an overflow of the stack.
constexpr ULONG_PTR kExecuting = 8;              ///< What an access violation tried.

/// Whether a thread whose stack stands at `top` can still throw. The calling thread.
bool has_room_to_throw(std::uintptr_t top)
{
    MEMORY_BASIC_INFORMATION stack{};
    if (::VirtualQuery(&stack, &stack, sizeof stack) == 0)
        return false;
    const auto* const tib = reinterpret_cast<const NT_TIB*>(::NtCurrentTeb());
    const auto lowest = reinterpret_cast<std::uintptr_t>(stack.AllocationBase);
    return top >= lowest + kRoomToThrow && top < reinterpret_cast<std::uintptr_t>(tib->StackBase);
}

/// The folder of the system, with all that lies below it.
struct SystemFolder {
    SystemFolder() : length(::GetSystemWindowsDirectoryW(path, kPathSize)) {}

    static constexpr UINT kPathSize = MAX_PATH;
    wchar_t path[kPathSize] = {};
    UINT length;
};

const SystemFolder& system_folder()
{
    static const SystemFolder folder;
    return folder;
}

/// Code of the program, its libraries and modules. The C library counts as theirs: what it faults
/// on are their pointers.
bool is_own_code(DWORD64 address)
{
    HMODULE module = nullptr;
    constexpr DWORD kHow =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!::GetModuleHandleExW(kHow, reinterpret_cast<LPCWSTR>(address), &module))
        return false;
    constexpr DWORD kLongest = 1024;
    wchar_t path[kLongest];
    const DWORD length = ::GetModuleFileNameW(module, path, kLongest);
    const SystemFolder& folder = system_folder();
    if (length <= folder.length || path[folder.length] != L'\\' ||
        ::_wcsnicmp(path, folder.path, folder.length) != 0)
        return true;
    const wchar_t* const name = std::wcsrchr(path, L'\\') + 1;
    return ::_wcsicmp(name, L"msvcrt.dll") == 0 || ::_wcsicmp(name, L"ucrtbase.dll") == 0;
}

/// A call or jump to where no code is: the processor stands there already.
bool is_jump_to_nowhere(const EXCEPTION_RECORD& record, const CONTEXT& context)
{
    return record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && record.NumberParameters >= 2 &&
           (record.ExceptionInformation[0] == kExecuting ||
            record.ExceptionInformation[1] == context.Rip);
}

/// The state of a thread whose fault can be translated; null where that cannot be.
zmr::ThreadState* translating_thread(const EXCEPTION_POINTERS& pointers)
{
    const EXCEPTION_RECORD& record = *pointers.ExceptionRecord;
    if (!zmr::is_processor_fault(record.ExceptionCode) ||
        (record.ExceptionFlags & EXCEPTION_NONCONTINUABLE) != 0)
        return nullptr;
    zmr::ThreadState* const state = zmr::ThreadState::known();
    if (state == nullptr || state->fault_translator == nullptr)
        return nullptr;
    if (!has_room_to_throw(pointers.ContextRecord->Rsp))
        return nullptr;
    return state;
}

/// Has the thread go on at the entry.
void redirect(zmr::ThreadState& state, EXCEPTION_POINTERS& pointers)
{
    CONTEXT& context = *pointers.ContextRecord;
    state.fault_record = *pointers.ExceptionRecord;
    state.fault_context = context;
    // The unwinder looks for the handlers of the byte in front of a return address: here that has
    // to be the faulting instruction. A call to nowhere has pushed its return address already.
    if (!is_jump_to_nowhere(*pointers.ExceptionRecord, context)) {
        context.Rsp -= sizeof(DWORD64);
        *reinterpret_cast<DWORD64*>(context.Rsp) = context.Rip + 1;
    }
    context.Rip = reinterpret_cast<DWORD64>(&zmr_fault_entry);
    context.EFlags &= ~kDirectionFlag;
}

/// Ends the program with the system's code for an overflow of the stack. Left to the system, a
/// thread without the room for what comes next may just vanish, with all locks that it holds.
[[noreturn]] void end_without_stack()
{
    constexpr char kText[] = "The stack of a thread is full: the program ends.\n";
    DWORD written = 0;
    ::WriteFile(::GetStdHandle(STD_ERROR_HANDLE), kText, sizeof kText - 1, &written, nullptr);
    ::TerminateProcess(::GetCurrentProcess(), static_cast<UINT>(EXCEPTION_STACK_OVERFLOW));
    std::abort();
}

/// Asked before the frames on the stack are.
LONG CALLBACK on_exception(EXCEPTION_POINTERS* pointers)
{
    if (pointers->ExceptionRecord->ExceptionCode == EXCEPTION_STACK_OVERFLOW &&
        zmr::translates_faults())
        end_without_stack();
    zmr::ThreadState* const state = translating_thread(*pointers);
    if (state == nullptr)
        return EXCEPTION_CONTINUE_SEARCH;
    DWORD64 place = pointers->ContextRecord->Rip;
    if (is_jump_to_nowhere(*pointers->ExceptionRecord, *pointers->ContextRecord))
        place = *reinterpret_cast<const DWORD64*>(pointers->ContextRecord->Rsp);
    const DWORD kept = ::GetLastError();
    const bool own = is_own_code(place);
    ::SetLastError(kept);
    if (!own)
        return EXCEPTION_CONTINUE_SEARCH;
    redirect(*state, *pointers);
    return EXCEPTION_CONTINUE_EXECUTION;
}

LONG WINAPI on_unhandled(EXCEPTION_POINTERS* pointers);

/// The handlers of the process, as long as this library is loaded.
class Handlers {
public:
    Handlers()
        : vectored_(::AddVectoredExceptionHandler(0, &on_exception)),
          former_filter_(::SetUnhandledExceptionFilter(&on_unhandled))
    {
        static_cast<void>(system_folder());
    }
    ~Handlers()
    {
        ::RemoveVectoredExceptionHandler(vectored_);
        const LPTOP_LEVEL_EXCEPTION_FILTER last = ::SetUnhandledExceptionFilter(former_filter_);
        if (last != &on_unhandled)
            ::SetUnhandledExceptionFilter(last);  // somebody came later, and stays
    }
    Handlers(const Handlers&) = delete;
    Handlers& operator=(const Handlers&) = delete;

    [[nodiscard]] LPTOP_LEVEL_EXCEPTION_FILTER former_filter() const { return former_filter_; }

private:
    PVOID vectored_;
    LPTOP_LEVEL_EXCEPTION_FILTER former_filter_;
};

const Handlers& handlers()
{
    static const Handlers only;
    return only;
}

/// Asked when no frame on the stack dealt with it: for faults in code of the system.
LONG WINAPI on_unhandled(EXCEPTION_POINTERS* pointers)
{
    if (zmr::ThreadState* const state = translating_thread(*pointers)) {
        redirect(*state, *pointers);
        return EXCEPTION_CONTINUE_EXECUTION;
    }
    const LPTOP_LEVEL_EXCEPTION_FILTER former = handlers().former_filter();
    return former != nullptr ? former(pointers) : EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

void zmr_throw_fault()
{
    zmr::ThreadState& state = zmr::ThreadState::current();
    EXCEPTION_POINTERS pointers{&state.fault_record, &state.fault_context};
    try {
        state.fault_translator(state.fault_record.ExceptionCode, &pointers);
    } catch (...) {
        // Kept, so that it is known again when it turns out that it cannot be thrown from here.
        state.last_fault = std::current_exception();
        throw;
    }
    std::terminate();  // a translator must throw
}

bool zmr::is_processor_fault(DWORD code)
{
    switch (code) {
        case EXCEPTION_ACCESS_VIOLATION:
        case EXCEPTION_IN_PAGE_ERROR:
        case EXCEPTION_DATATYPE_MISALIGNMENT:
        case EXCEPTION_ARRAY_BOUNDS_EXCEEDED:
        case EXCEPTION_FLT_DENORMAL_OPERAND:
        case EXCEPTION_FLT_DIVIDE_BY_ZERO:
        case EXCEPTION_FLT_INEXACT_RESULT:
        case EXCEPTION_FLT_INVALID_OPERATION:
        case EXCEPTION_FLT_OVERFLOW:
        case EXCEPTION_FLT_STACK_CHECK:
        case EXCEPTION_FLT_UNDERFLOW:
        case EXCEPTION_INT_DIVIDE_BY_ZERO:
        case EXCEPTION_INT_OVERFLOW:
        case EXCEPTION_ILLEGAL_INSTRUCTION:
        case EXCEPTION_PRIV_INSTRUCTION:
            return true;
        default:
            return false;
    }
}

FaultTranslator AfxSetFaultTranslator(FaultTranslator translator)
{
    if (translator != nullptr) {
        static_cast<void>(handlers());
        zmr::install_fault_guard();
        ULONG room = kRoomToTell;
        ::SetThreadStackGuarantee(&room);
    }
    return std::exchange(zmr::ThreadState::current().fault_translator, translator);
}
