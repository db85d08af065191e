#include "platform/AfxState.h"
#include "platform/CWnd.h"
#include "platform/ModuleState.h"
#include "platform/WindowProcedure.h"

#include <cstdio>
#include <map>
#include <mutex>

#include <string>

namespace {

/// The classes that this library registered. They go with it: a class whose procedure is gone with
/// its module would crash the next window of it.
class RegisteredClasses {
public:
    ~RegisteredClasses()
    {
        for (const auto& [name, module] : names_)
            ::UnregisterClass(name.c_str(), module);
    }
    /// The kept name; null when the system refuses.
    [[nodiscard]] LPCTSTR add(WNDCLASS& wanted)
    {
        const std::lock_guard guard(lock_);
        const auto known = names_.find(wanted.lpszClassName);
        if (known != names_.end())
            return known->first.c_str();
        WNDCLASS there;
        if (!::GetClassInfo(wanted.hInstance, wanted.lpszClassName, &there) &&
            ::RegisterClass(&wanted) == 0)
            return nullptr;
        return names_.emplace(wanted.lpszClassName, wanted.hInstance).first->first.c_str();
    }

private:
    std::mutex lock_;
    std::map<std::string, HINSTANCE> names_;
};

RegisteredClasses& registered()
{
    static RegisteredClasses only;
    return only;
}

}  // namespace

BOOL AfxRegisterClass(WNDCLASS* window_class)
{
    return registered().add(*window_class) != nullptr;
}

LPCTSTR AfxRegisterWndClass(UINT style, HCURSOR cursor, HBRUSH background, HICON icon)
{
    char name[96];
    std::snprintf(name, sizeof name, "Zmr:%p:%x:%p:%p:%p", static_cast<void*>(zmr::own_module()),
                  style, static_cast<void*>(cursor), static_cast<void*>(background),
                  static_cast<void*>(icon));
    WNDCLASS wanted{};
    wanted.style = style;
    wanted.lpfnWndProc = &::DefWindowProc;
    wanted.hInstance = AfxGetInstanceHandle();
    wanted.hIcon = icon;
    wanted.hCursor = cursor;
    wanted.hbrBackground = background;
    wanted.lpszClassName = name;
    return registered().add(wanted);
}

LPCTSTR zmr::default_window_class()
{
    return AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursor(nullptr, IDC_ARROW));
}
