#pragma once

#include "platform/Export.h"

#include <cstdint>

// What a message box is asked for, and how it is told to the system.
namespace zmr {

inline constexpr unsigned long kMessageError = 0x001;
inline constexpr unsigned long kMessageInformation = 0x002;
/// Changes nothing; who reports a failure passes it too.
inline constexpr unsigned long kMessageFailure = 0x004;
inline constexpr unsigned long kMessageSecondIsDefault = 0x008;
inline constexpr unsigned long kMessageThirdIsDefault = 0x010;
inline constexpr unsigned long kMessageYesNo = 0x100;
inline constexpr unsigned long kMessageOk = 0x400;
inline constexpr unsigned long kMessageCancel = 0x800;
/// What a failure is reported with.
inline constexpr unsigned long kMessageReport = kMessageError | kMessageFailure | kMessageOk;

inline constexpr unsigned long kAnswerOk = 1;
inline constexpr unsigned long kAnswerCancel = 2;
inline constexpr unsigned long kAnswerYes = 6;
inline constexpr unsigned long kAnswerNo = 7;

/// How a box looks. `type` is the system's word of buttons, icon, default button and modality.
struct MessageLook {
    const char* caption;  ///< Of static life; shown where there is no application to name it.
    std::uint32_t type;
};

/// The look that a word of flags asks for. Unknown bits change nothing.
[[nodiscard]] ZMR_GV_API MessageLook message_look(unsigned long flags);

/// The answer of the family of boxes to the system's: OK, Yes and No stay, all else is Cancel.
[[nodiscard]] ZMR_GV_API unsigned long message_answer(int system_answer);

}  // namespace zmr
