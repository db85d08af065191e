#include "app/ModuleFile.h"

#include "platform/WideText.h"
#include "platform/Windows.h"

#include <string>

GFile zmr::file_of_module(HINSTANCE module)
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            ::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            return {};
        if (length < path.size()) {  // as long as the room: cut off
            path.resize(length);
            return GString(to_utf8(path));
        }
        path.resize(2 * path.size());
    }
}
