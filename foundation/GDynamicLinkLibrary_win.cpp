#include "foundation/GDynamicLinkLibrary.h"

#include "foundation/PathSyntax.h"

#include "platform/WideText.h"
#include "platform/Windows.h"

#include <algorithm>

namespace {

thread_local DWORD last_error = ERROR_SUCCESS;

/// No message box of the system for a damaged file or an absent disk, while this lives.
class QuietErrors {
public:
    QuietErrors()
    {
        ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &former_);
    }
    ~QuietErrors() { ::SetThreadErrorMode(former_, nullptr); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

private:
    DWORD former_ = 0;
};

}  // namespace

void GDynamicLinkLibrary::Free(HINSTANCE library)
{
    ::FreeLibrary(library);
}

bool GDynamicLinkLibrary::load(const char* name, int)
{
    unload();
    std::wstring wide;
    if (name == nullptr || *name == '\0' || !zmr::to_wide_path(name, wide)) {
        last_error = ERROR_INVALID_NAME;
        return false;
    }
    std::replace(wide.begin(), wide.end(), L'/', L'\\');
    // What a library with a full path needs is looked for beside it first.
    const std::size_t root = zmr::root_length(name);
    const DWORD search = root > 2 ? LOAD_WITH_ALTERED_SEARCH_PATH : 0;
    const QuietErrors quiet;
    module = ::LoadLibraryExW(wide.c_str(), nullptr, search);
    if (module == nullptr)
        last_error = ::GetLastError();
    return module != nullptr;
}

void* GDynamicLinkLibrary::find_symbol(const char* name) const
{
    if (module == nullptr || name == nullptr)
        return nullptr;
    return reinterpret_cast<void*>(::GetProcAddress(module, name));
}

GString GDynamicLinkLibrary::LastError()
{
    if (last_error == ERROR_SUCCESS)
        return GString();
    wchar_t buffer[512];
    DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                         last_error, 0, buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
    while (length > 0 && buffer[length - 1] <= L' ')
        --length;
    if (length == 0)
        return GString(("error " + std::to_string(last_error)).c_str());
    return GString(zmr::to_utf8(std::wstring_view(buffer, length)));
}
