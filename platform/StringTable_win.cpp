#include "platform/StringTable.h"

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

HINSTANCE module_of_this_code()
{
    HINSTANCE module = nullptr;
    constexpr DWORD kHow =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!::GetModuleHandleExA(kHow, reinterpret_cast<LPCSTR>(&module_of_this_code), &module))
        return nullptr;
    return module;
}

}  // namespace

bool find_system_string(UINT id, std::string& text)
{
    return load_from(::GetModuleHandleA(nullptr), id, text) ||
           load_from(module_of_this_code(), id, text);
}

}  // namespace zmr
