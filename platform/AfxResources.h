#pragma once

#include "platform/CObject.h"
#include "platform/CString.h"
#include "platform/Windows.h"

#include <vector>

/// A module that has told its resources by AfxInitExtensionModule. A static object of the module,
/// which stays as long as it is loaded.
struct AFX_EXTENSION_MODULE {
    BOOL bInitialized;
    HMODULE hModule;
    HMODULE hResource;
};

/// Fills the record; call it at the module's attach, and then make a CDynLinkLibrary of it. FALSE
/// when `module` is null.
ZMR_GV_API BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& record, HMODULE module);
/// Takes the module's links out of the chain; call it at the module's detach.
ZMR_GV_API void AfxTermExtensionModule(AFX_EXTENSION_MODULE& record, BOOL all = FALSE);

/// A link of the chain of modules whose resources the whole program finds. Made with new; the chain
/// owns it, and AfxTermExtensionModule frees it.
class ZMR_GV_API CDynLinkLibrary : public CObject {
    DECLARE_DYNAMIC(CDynLinkLibrary)

public:
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& record);
    ~CDynLinkLibrary() override;

    HMODULE m_hModule;
    HMODULE m_hResource;
};

/// The module that has the resource: the resource handle's first, then the extension modules, the
/// last registered first, then the library itself. The resource handle when nobody has it.
[[nodiscard]] ZMR_GV_API HINSTANCE AfxFindResourceHandle(LPCTSTR name, LPCTSTR type);
/// Copies text number `id`, found along the same chain, cut to `size` bytes. Its length, 0 when
/// there is none.
ZMR_GV_API int AfxLoadString(UINT id, LPSTR text, UINT size = 256);
/// Part number `part`, counted from 0, of a text whose parts are divided by `divider`. FALSE when
/// there are fewer.
ZMR_GV_API BOOL AfxExtractSubString(CString& part_text, LPCTSTR text, int part,
                                    char divider = '\n');

namespace zmr {

/// The modules in the order in which resources are looked for.
[[nodiscard]] std::vector<HINSTANCE> resource_modules();

}  // namespace zmr
