#pragma once

#include <cstdint>

namespace zmr {

/// What a thread asks the main window's thread by, when it wants a message box: the address of one
/// of these goes with the message, and the thread waits for its answer.
struct BoxRequest {
    const char* text;
    std::uint32_t type;
    std::uint32_t help;
    std::int32_t result = 2;  ///< IDCANCEL, when nobody answers.
};

/// The wParam of WM_NULL that says that lParam is the address of a BoxRequest.
inline constexpr unsigned kBoxRequest = 1001;

}  // namespace zmr
