#include "platform/StringTable.h"

#include "platform/AfxResources.h"
#include "platform/WideText.h"
#include "platform/Windows.h"

namespace zmr {
namespace {

bool load_from(HINSTANCE module, UINT id, std::string& text)
{
    // With a size of 0 the call gives the address of the text in the table itself.
    const wchar_t* start = nullptr;
    const int length = ::LoadStringW(module, id, reinterpret_cast<LPWSTR>(&start), 0);
    if (length <= 0 || start == nullptr)
        return false;
    text = to_utf8({start, static_cast<std::size_t>(length)});
    return true;
}

}  // namespace

bool find_system_string(UINT id, std::string& text)
{
    for (const HINSTANCE module : resource_modules())
        if (load_from(module, id, text))
            return true;
    return false;
}

}  // namespace zmr
