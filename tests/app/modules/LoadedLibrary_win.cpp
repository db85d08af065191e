#include "tests/app/modules/LoadedLibrary.h"

#include "tests/support/ResourceLedger.h"

#include <windows.h>

#include <psapi.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

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

void LoadedLibrary::HoldWhatItNeeds(const char* file)
{
    const LoadedLibrary library(file);
    wchar_t system[MAX_PATH];
    const UINT length = ::GetSystemDirectoryW(system, MAX_PATH);
    std::vector<HMODULE> modules(1000);
    DWORD bytes = 0;
    ASSERT_TRUE(::EnumProcessModules(::GetCurrentProcess(), modules.data(),
                                     static_cast<DWORD>(modules.size() * sizeof(HMODULE)), &bytes));
    modules.resize(std::min(modules.size(), bytes / sizeof(HMODULE)));
    for (const HMODULE module : modules) {
        wchar_t name[MAX_PATH];
        if (::GetModuleFileNameW(module, name, MAX_PATH) > length &&
            ::_wcsnicmp(name, system, length) == 0)
            static_cast<void>(::LoadLibraryW(name));
    }
}

void* LoadedLibrary::find_symbol(const char* name) const
{
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(handle_), name));
}

std::string what_grows(const std::function<void()>& action, int turns, int bytes_per_turn)
{
    return what_leaks(action, turns, bytes_per_turn);
}
