#include "platform/AfxResources.h"

#include "platform/AfxState.h"
#include "platform/ByteText.h"
#include "platform/ModuleState.h"
#include "platform/StringTable.h"

#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

IMPLEMENT_DYNAMIC(CDynLinkLibrary, CObject)

namespace {

/// The extension modules, in the order of their registration. Never freed: modules take themselves
/// out at their own end, which may come after this library's.
struct Chain {
    std::mutex lock;
    std::vector<CDynLinkLibrary*> links;
};

Chain& chain()
{
    static Chain* const only = new Chain;
    return *only;
}

}  // namespace

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& record, HMODULE module)
{
    if (module == nullptr)
        return FALSE;
    record = {TRUE, module, module};
    return TRUE;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& record, BOOL)
{
    std::vector<std::unique_ptr<CDynLinkLibrary>> ended;
    {
        const std::lock_guard guard(chain().lock);
        for (CDynLinkLibrary* const link : chain().links)
            if (link->m_hModule == record.hModule)
                ended.emplace_back(link);
    }
    record.bInitialized = FALSE;
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& record)
    : m_hModule(record.hModule), m_hResource(record.hResource)
{
    const std::lock_guard guard(chain().lock);
    chain().links.push_back(this);
}

CDynLinkLibrary::~CDynLinkLibrary()
{
    const std::lock_guard guard(chain().lock);
    std::erase(chain().links, this);
}

std::vector<HINSTANCE> zmr::resource_modules()
{
    std::vector<HINSTANCE> modules{AfxGetResourceHandle()};
    {
        const std::lock_guard guard(chain().lock);
        for (std::size_t i = chain().links.size(); i-- > 0;)
            modules.push_back(chain().links[i]->m_hResource);
    }
    modules.push_back(own_module());
    return modules;
}

HINSTANCE AfxFindResourceHandle(LPCTSTR name, LPCTSTR type)
{
    const std::vector<HINSTANCE> modules = zmr::resource_modules();
    for (const HINSTANCE module : modules)
        if (::FindResource(module, name, type) != nullptr)
            return module;
    return modules.front();
}

int AfxLoadString(UINT id, LPSTR text, UINT size)
{
    std::string found;
    if (!zmr::find_string(id, found)) {
        if (text != nullptr && size > 0)
            *text = '\0';
        return 0;
    }
    return static_cast<int>(zmr::copy_cut(text, size, found));
}

BOOL AfxExtractSubString(CString& part_text, LPCTSTR text, int part, char divider)
{
    std::string_view rest = text != nullptr ? text : "";
    part_text.Empty();
    if (text == nullptr || part < 0)
        return FALSE;
    for (; part > 0; --part) {
        const std::size_t end = rest.find(divider);
        if (end == std::string_view::npos)
            return FALSE;
        rest.remove_prefix(end + 1);
    }
    part_text = CString(rest.substr(0, rest.find(divider)));
    return TRUE;
}
