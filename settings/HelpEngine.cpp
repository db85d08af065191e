#include "settings/HelpEngine.h"

namespace zmr {

HelpEngine::Entry HelpEngine::entry()
{
    if (entry_ == nullptr && library_.module == nullptr && library_.load(name_, 0))
        entry_ = reinterpret_cast<Entry>(
            reinterpret_cast<void*>(::GetProcAddress(library_.module, MAKEINTRESOURCEA(number_))));
    return entry_;
}

bool HelpEngine::call(HWND window, const char* file, UINT command, DWORD_PTR data)
{
    const Entry function = entry();
    return function != nullptr && function(window, file, command, data) != nullptr;
}

}  // namespace zmr
