#pragma once

#include "platform/Export.h"
#include "platform/Windows.h"

/// Makes an exception of a processor fault, and throws it. `pointers` are the fault's record and
/// the registers at its place, valid during the call. One that returns ends the program.
using FaultTranslator = void (*)(unsigned int code, EXCEPTION_POINTERS* pointers);

/// From here on the calling thread's processor faults - reads and writes outside the memory, calls
/// to nowhere, divisions by zero, illegal instructions - are given to `translator`, whose exception
/// leaves the faulting function as if it had been thrown at the faulting place; null ends it.
/// Returns the former one.
///
/// Faults of the program, its libraries and modules are translated at once; those in code of the
/// system only when nothing there deals with them, because parts of it probe memory that way, and
/// not below a callback of the system, which swallows them. Never translated: an overflow of the
/// stack, which leaves no room to throw. What cannot be thrown out of (a destructor, a noexcept
/// function, a call that the compiler takes for one that throws nothing) is taken up by the nearest
/// zmr::guarded call, or ends the program where there is none.
/// All code that a fault may leave is compiled with -fnon-call-exceptions
/// -fno-delete-dead-exceptions. docs/application.md tells more.
ZMR_GV_API FaultTranslator AfxSetFaultTranslator(FaultTranslator translator);

namespace zmr {

/// True for faults of the processor that can be translated; the codes of the system's exceptions.
[[nodiscard]] bool is_processor_fault(DWORD code);

}  // namespace zmr
