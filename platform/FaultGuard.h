#pragma once

#include "platform/Export.h"

#include <optional>
#include <type_traits>
#include <utility>

namespace zmr {

/// The second net below AfxSetFaultTranslator: calls `body(argument)` and gives true. A fault of
/// this thread that no exception can leave - because a destructor, a noexcept function or one that
/// the compiler takes for such stands in its way - ends the call at once and gives false; what lay
/// in between is left as it stood, its destructors not run. Normal exceptions pass as ever.
/// Some 60 ns.
[[nodiscard]] ZMR_GV_API bool run_guarded(void (*body)(void*), void* argument);
/// Throws what the translator made of the calling thread's last fault.
[[noreturn]] ZMR_GV_API void throw_last_fault();
/// True while the calling thread's faults are translated.
[[nodiscard]] ZMR_GV_API bool translates_faults() noexcept;

/// What `body` gives; a fault inside of it that cannot be unwound is thrown from here. For calls
/// that exceptions of every kind come out of anyway: window procedures, callbacks, loops, threads.
template <class Body>
std::invoke_result_t<const Body&> guarded(const Body& body)
{
    using Result = std::invoke_result_t<const Body&>;
    if (!translates_faults())
        return body();
    if constexpr (std::is_void_v<Result>) {
        if (!run_guarded([](void* call) { (*static_cast<const Body*>(call))(); },
                         const_cast<Body*>(&body)))
            throw_last_fault();
    } else {
        struct Call {
            const Body& body;
            std::optional<Result> result;
        } call{body, std::nullopt};
        if (!run_guarded(
                [](void* of) {
                    Call& made = *static_cast<Call*>(of);
                    made.result.emplace(made.body());
                },
                &call))
            throw_last_fault();
        return *std::move(call.result);
    }
}

/// Installs the net, once for the process.
void install_fault_guard();

}  // namespace zmr
