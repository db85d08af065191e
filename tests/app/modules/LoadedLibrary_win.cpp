#include "tests/app/modules/LoadedLibrary.h"

#include "tests/support/ResourceLedger.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace {

/// The full name as the loader takes it. The build's folders have names in ASCII.
std::wstring wide_name(const char* file)
{
    const std::string name(file);
    const std::wstring wide(name.begin(), name.end());
    std::wstring full(MAX_PATH, L'\0');
    full.resize(::GetFullPathNameW(wide.c_str(), MAX_PATH, full.data(), nullptr));
    return full;
}

}  // namespace

LoadedLibrary::LoadedLibrary(const char* file)
    : handle_(::LoadLibraryExW(wide_name(file).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH))
{
    EXPECT_NE(handle_, nullptr) << ::GetLastError();
}

LoadedLibrary::~LoadedLibrary()
{
    if (handle_ != nullptr)
        ::FreeLibrary(static_cast<HMODULE>(handle_));
}

bool LoadedLibrary::IsLoaded(const char* file)
{
    return ::GetModuleHandleW(wide_name(file).c_str()) != nullptr;
}

bool LoadedLibrary::CanLibraryEnd()
{
    return true;
}

std::string what_grows(const std::function<void()>& action, int turns)
{
    return what_leaks(action, turns);
}
