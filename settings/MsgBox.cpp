#include "settings/MsgBox.h"

#include "foundation/GString.h"
#include "platform/CWinApp.h"
#include "platform/SystemMessageBox.h"
#include "settings/MessageFlags.h"

namespace {

constexpr const char* kBlankedBytes = "\x03";

template <class... Source>
unsigned long show_formatted(unsigned long flags, std::va_list arguments, Source... format)
{
    GString text;
    text.vformat(format..., arguments);
    return MsgBox::message_box(text.text, flags);
}

}  // namespace

unsigned long MsgBox::message_box(const char* text, unsigned long flags)
{
    const zmr::MessageLook look = zmr::message_look(flags);
    GString shown(text);
    shown.translate(kBlankedBytes, " ");
    // The application has its own caption.
    const int answer = AfxGetApp() != nullptr
                           ? AfxMessageBox(shown.text, look.type, 0)
                           : zmr::system_message_box(nullptr, shown.text, look.caption, look.type);
    return zmr::message_answer(answer);
}

unsigned long MsgBox::message_box(unsigned long flags, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const unsigned long answer = show_formatted(flags, arguments, format);
    va_end(arguments);
    return answer;
}

unsigned long message_box(unsigned long flags, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const unsigned long answer = show_formatted(flags, arguments, format);
    va_end(arguments);
    return answer;
}

unsigned long message_box(unsigned int stringId, unsigned long flags)
{
    GString text;
    text.loadString(stringId);
    return MsgBox::message_box(text.text, flags);
}

unsigned long GMessageBox(unsigned long flags, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const unsigned long answer = show_formatted(flags, arguments, format);
    va_end(arguments);
    return answer;
}

unsigned long GMessageBox(unsigned long flags, unsigned int formatId, ...)
{
    std::va_list arguments;
    va_start(arguments, formatId);
    const unsigned long answer = show_formatted(flags, arguments, formatId);
    va_end(arguments);
    return answer;
}

unsigned long GMessageBox(unsigned long flags, HINSTANCE module, unsigned int formatId, ...)
{
    std::va_list arguments;
    va_start(arguments, formatId);
    const unsigned long answer = show_formatted(flags, arguments, module, formatId);
    va_end(arguments);
    return answer;
}
