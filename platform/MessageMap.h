#pragma once

#include "platform/Export.h"
#include "platform/Windows.h"

#include <tuple>
#include <type_traits>
#include <utility>

class CCmdTarget;
class CCmdUI;

/// What a row of a message map is given, and what it gives back.
struct AFX_MESSAGE_CALL {
    WPARAM wparam = 0;
    LPARAM lparam = 0;
    UINT id = 0;              ///< Of commands, control and other notifications.
    NMHDR* header = nullptr;  ///< Of WM_NOTIFY.
    CCmdUI* state = nullptr;  ///< Of command updates.
    LRESULT result = 0;       ///< The window procedure's answer.
};

/// A row of a message map: which message, and the routine that hands it to the handler.
struct AFX_MSGMAP_ENTRY {
    UINT nMessage;           ///< 0 ends a table.
    UINT nCode;              ///< Notification code, or one of the CN_ values.
    UINT nID;                ///< The first control or command,
    UINT nLastID;            ///< and the last.
    const UINT* registered;  ///< For a message that has its number from RegisterWindowMessage.
    /// Calls the handler on `target`. False when the handler says that it did not deal with it.
    bool (*call)(CCmdTarget* target, AFX_MESSAGE_CALL& message);
};

/// A class's rows, and its base's map. The last row has message 0.
struct AFX_MSGMAP {
    const AFX_MSGMAP* (*base)();  ///< Null at the root.
    const AFX_MSGMAP_ENTRY* entries;
};

inline constexpr UINT WM_REFLECT_BASE = 0xBC00;  ///< Added to a message that the child sees first.
inline constexpr UINT CN_COMMAND = 0;            ///< The code of a command from a menu or a key.
inline constexpr UINT CN_UPDATE_COMMAND_UI = 0xFFFFFFFF;

namespace zmr {

/// What kind of thing the search through message maps looks for.
struct MessageKey {
    UINT message;
    UINT code;
    UINT id;
};

/// The row that serves the key, the nearest class first; null when there is none. Linear in the
/// rows of the class and its bases.
[[nodiscard]] ZMR_GV_API const AFX_MSGMAP_ENTRY* find_entry(const AFX_MSGMAP* map,
                                                            const MessageKey& key);

/// The class of a member function pointer.
template <class Pointer>
struct MemberOf;
template <class Result, class Class, class... Arguments>
struct MemberOf<Result (Class::*)(Arguments...)> {
    using Owner = Class;
    using Returned = Result;
};
template <class Result, class Class, class... Arguments>
struct MemberOf<Result (Class::*)(Arguments...) const> : MemberOf<Result (Class::*)(Arguments...)> {
};

template <auto Handler, class... Arguments>
decltype(auto) call_handler(CCmdTarget* target, Arguments&&... arguments)
{
    using Owner = typename MemberOf<decltype(Handler)>::Owner;
    return (static_cast<Owner*>(target)->*Handler)(std::forward<Arguments>(arguments)...);
}

/// The row's routine for a window message: `Crack` takes the message apart into a tuple of what the
/// handler is given. The handler's value, if any, is the message's answer.
template <auto Handler, auto Crack>
bool window_row(CCmdTarget* target, AFX_MESSAGE_CALL& message)
{
    std::apply(
        [&](auto&&... arguments) {
            using Returned = typename MemberOf<decltype(Handler)>::Returned;
            if constexpr (std::is_void_v<Returned>) {
                call_handler<Handler>(target, arguments...);
                message.result = 0;
            } else if constexpr (std::is_pointer_v<Returned>) {
                message.result =
                    reinterpret_cast<LRESULT>(call_handler<Handler>(target, arguments...));
            } else {
                message.result = static_cast<LRESULT>(call_handler<Handler>(target, arguments...));
            }
        },
        Crack(message.wparam, message.lparam));
    return true;
}

template <auto Handler>
bool command_row(CCmdTarget* target, AFX_MESSAGE_CALL&)
{
    call_handler<Handler>(target);
    return true;
}
template <auto Handler>
bool command_range_row(CCmdTarget* target, AFX_MESSAGE_CALL& message)
{
    call_handler<Handler>(target, message.id);
    return true;
}
/// The handler's FALSE sends the command further on its route.
template <auto Handler>
bool command_ex_row(CCmdTarget* target, AFX_MESSAGE_CALL& message)
{
    return call_handler<Handler>(target, message.id) != 0;
}
template <auto Handler>
bool update_row(CCmdTarget* target, AFX_MESSAGE_CALL& message)
{
    call_handler<Handler>(target, message.state);
    return true;
}
template <auto Handler>
bool notify_row(CCmdTarget* target, AFX_MESSAGE_CALL& message)
{
    call_handler<Handler>(target, message.header, &message.result);
    return true;
}
template <auto Handler>
bool notify_range_row(CCmdTarget* target, AFX_MESSAGE_CALL& message)
{
    call_handler<Handler>(target, message.id, message.header, &message.result);
    return true;
}
template <auto Handler>
bool notify_ex_row(CCmdTarget* target, AFX_MESSAGE_CALL& message)
{
    return call_handler<Handler>(target, message.id, message.header, &message.result) != 0;
}
/// For a notification or control message that came back to its sender.
template <auto Handler>
bool notify_reflect_ex_row(CCmdTarget* target, AFX_MESSAGE_CALL& message)
{
    return call_handler<Handler>(target, message.header, &message.result) != 0;
}
template <auto Handler>
bool control_reflect_ex_row(CCmdTarget* target, AFX_MESSAGE_CALL&)
{
    return call_handler<Handler>(target) != 0;
}

}  // namespace zmr

#define afx_msg

/// In the class; what follows is protected.
#define DECLARE_MESSAGE_MAP()                                   \
protected:                                                      \
    [[nodiscard]] static const AFX_MSGMAP* GetThisMessageMap(); \
    [[nodiscard]] const AFX_MSGMAP* GetMessageMap() const override;

/// In the class's source, before the rows and behind them.
#define BEGIN_MESSAGE_MAP(class_name, base_name)                     \
    const AFX_MSGMAP* class_name::GetMessageMap() const              \
    {                                                                \
        return GetThisMessageMap();                                  \
    }                                                                \
    const AFX_MSGMAP* class_name::GetThisMessageMap()                \
    {                                                                \
        using ThisClass [[maybe_unused]] = class_name;               \
        constexpr auto zmr_base_map = &base_name::GetThisMessageMap; \
        static const AFX_MSGMAP_ENTRY entries[] = {
#define END_MESSAGE_MAP()                                  \
    {                                                      \
        0, 0, 0, 0, nullptr, nullptr                       \
    }                                                      \
    }                                                      \
    ;                                                      \
    static const AFX_MSGMAP map = {zmr_base_map, entries}; \
    return &map;                                           \
    }

// Handlers are named as &Class::Function.
#define ON_MESSAGE(message, handler) \
    {message, 0, 0, 0, nullptr, &zmr::window_row<handler, &zmr::crack::whole>},
#define ON_REGISTERED_MESSAGE(variable, handler) \
    {0xC000, 0, 0, 0, &(variable), &zmr::window_row<handler, &zmr::crack::whole>},
#define ON_COMMAND(id, handler) \
    {WM_COMMAND, CN_COMMAND, id, id, nullptr, &zmr::command_row<handler>},
#define ON_COMMAND_RANGE(first, last, handler) \
    {WM_COMMAND, CN_COMMAND, first, last, nullptr, &zmr::command_range_row<handler>},
#define ON_COMMAND_EX(id, handler) \
    {WM_COMMAND, CN_COMMAND, id, id, nullptr, &zmr::command_ex_row<handler>},
#define ON_CONTROL(code, id, handler) \
    {WM_COMMAND, static_cast<WORD>(code), id, id, nullptr, &zmr::command_row<handler>},
#define ON_CONTROL_RANGE(code, first, last, handler) \
    {WM_COMMAND, static_cast<WORD>(code), first, last, nullptr, &zmr::command_range_row<handler>},
#define ON_CONTROL_REFLECT(code, handler)                                  \
    {WM_COMMAND + WM_REFLECT_BASE, static_cast<WORD>(code), 0, 0, nullptr, \
     &zmr::command_row<handler>},
#define ON_CONTROL_REFLECT_EX(code, handler)                                       \
    {WM_COMMAND + WM_REFLECT_BASE,         static_cast<WORD>(code), 0, 0, nullptr, \
     &zmr::control_reflect_ex_row<handler>},
#define ON_NOTIFY(code, id, handler) \
    {WM_NOTIFY, static_cast<UINT>(code), id, id, nullptr, &zmr::notify_row<handler>},
#define ON_NOTIFY_RANGE(code, first, last, handler) \
    {WM_NOTIFY, static_cast<UINT>(code), first, last, nullptr, &zmr::notify_range_row<handler>},
#define ON_NOTIFY_EX(code, id, handler) \
    {WM_NOTIFY, static_cast<UINT>(code), id, id, nullptr, &zmr::notify_ex_row<handler>},
#define ON_NOTIFY_EX_RANGE(code, first, last, handler) \
    {WM_NOTIFY, static_cast<UINT>(code), first, last, nullptr, &zmr::notify_ex_row<handler>},
#define ON_NOTIFY_REFLECT(code, handler)                                  \
    {WM_NOTIFY + WM_REFLECT_BASE, static_cast<UINT>(code), 0, 0, nullptr, \
     &zmr::notify_row<handler>},
#define ON_NOTIFY_REFLECT_EX(code, handler)                                       \
    {WM_NOTIFY + WM_REFLECT_BASE,         static_cast<UINT>(code), 0, 0, nullptr, \
     &zmr::notify_reflect_ex_row<handler>},
#define ON_UPDATE_COMMAND_UI(id, handler) \
    {WM_COMMAND, CN_UPDATE_COMMAND_UI, id, id, nullptr, &zmr::update_row<handler>},
#define ON_UPDATE_COMMAND_UI_RANGE(first, last, handler) \
    {WM_COMMAND, CN_UPDATE_COMMAND_UI, first, last, nullptr, &zmr::update_row<handler>},
#define ON_BN_CLICKED(id, handler) ON_CONTROL(BN_CLICKED, id, handler)
#define ON_EN_CHANGE(id, handler) ON_CONTROL(EN_CHANGE, id, handler)
#define ON_EN_KILLFOCUS(id, handler) ON_CONTROL(EN_KILLFOCUS, id, handler)
#define ON_LBN_SELCHANGE(id, handler) ON_CONTROL(LBN_SELCHANGE, id, handler)
#define ON_CBN_SELCHANGE(id, handler) ON_CONTROL(CBN_SELCHANGE, id, handler)
