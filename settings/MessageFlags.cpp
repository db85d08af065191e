#include "settings/MessageFlags.h"

namespace {

// The system's words, which the portable lane has no header for.
constexpr std::uint32_t kTaskModal = 0x2000;
constexpr std::uint32_t kIconStop = 0x10;
constexpr std::uint32_t kIconQuestion = 0x20;
constexpr std::uint32_t kIconWarning = 0x30;
constexpr std::uint32_t kIconInformation = 0x40;
constexpr std::uint32_t kButtonsOkCancel = 1;
constexpr std::uint32_t kButtonsYesNoCancel = 3;
constexpr std::uint32_t kButtonsYesNo = 4;
constexpr std::uint32_t kSecondIsDefault = 0x100;
constexpr std::uint32_t kThirdIsDefault = 0x200;

zmr::MessageLook kind_of(unsigned long flags)
{
    if ((flags & zmr::kMessageError) != 0)
        return {"Error", kTaskModal | kIconStop};
    if ((flags & zmr::kMessageInformation) != 0)
        return {"Information", kTaskModal | kIconInformation};
    // No word comes here: each with one of these bits has been answered above.
    if ((flags & (zmr::kMessageError | zmr::kMessageInformation)) != 0)
        return {"Confirm", kTaskModal | kIconQuestion};
    return {"Warning", kTaskModal | kIconWarning};
}

std::uint32_t buttons_of(unsigned long flags)
{
    const bool cancel = (flags & zmr::kMessageCancel) != 0;
    if ((flags & zmr::kMessageYesNo) != 0)
        return cancel ? kButtonsYesNoCancel : kButtonsYesNo;
    // Cancel alone is no choice: a lone OK.
    return cancel && (flags & zmr::kMessageOk) != 0 ? kButtonsOkCancel : 0;
}

std::uint32_t default_of(unsigned long flags)
{
    if ((flags & zmr::kMessageSecondIsDefault) != 0)
        return kSecondIsDefault;
    return (flags & zmr::kMessageThirdIsDefault) != 0 ? kThirdIsDefault : 0;
}

}  // namespace

namespace zmr {

MessageLook message_look(unsigned long flags)
{
    MessageLook look = kind_of(flags);
    look.type |= buttons_of(flags) | default_of(flags);
    return look;
}

unsigned long message_answer(int system_answer)
{
    const auto answer = static_cast<unsigned long>(system_answer);
    if (answer == kAnswerOk || answer == kAnswerYes || answer == kAnswerNo)
        return answer;
    return kAnswerCancel;
}

}  // namespace zmr
