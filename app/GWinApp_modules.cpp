#include "app/GWinApp.h"

#include "app/ModuleFile.h"
#include "app/ModuleSearch.h"
#include "foundation/fpstream.h"
#include "platform/WideText.h"

#include <cstdlib>
#include <string>

namespace {

/// Puts the directories in front of the process's PATH, by which the system finds what a module
/// needs. A value beyond the system's limit leaves it as it is.
void extend_path(const zmr::ModuleSearch& search)
{
    // Both forms of the run-time library's environment and the system's own change with this one.
    const wchar_t* former = ::_wgetenv(L"PATH");
    std::wstring directories;
    if (!zmr::to_wide(search.path_value("").view(), directories))
        return;
    const std::wstring entry = L"PATH=" + directories + (former == nullptr ? L"" : former);
    static_cast<void>(::_wputenv(entry.c_str()));
}

}  // namespace

void GWinApp::load_external_modules(const char* mask, const char* subdirectory)
{
    GFile program = zmr::file_of_module(m_hInstance);
    program.just_directory();
    const zmr::ModuleSearch search(program, subdirectory, fpbase::GetRedirectionFile(), mask);
    extend_path(search);
    search.load(mask, modules_);
}
