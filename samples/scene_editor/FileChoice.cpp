#include "scene_editor/FileChoice.h"

#include "scene_editor/SceneEditor.h"

#include <commdlg.h>

#include <array>

std::optional<std::string> FileChoice::ask(HWND owner, const std::string& suggested) const
{
    std::array<char, 4096> name{};
    if (suggested.size() < name.size())
        suggested.copy(name.data(), suggested.size());
    OPENFILENAMEA request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = owner;
    request.lpstrFilter = filter;
    request.lpstrDefExt = extension;
    request.lpstrFile = name.data();
    request.nMaxFile = static_cast<DWORD>(name.size());
    request.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    const editor::SystemLoop loop;
    if (what == For::Opening) {
        request.Flags |= OFN_FILEMUSTEXIST;
        if (::GetOpenFileNameA(&request) == FALSE)
            return std::nullopt;
    } else {
        request.Flags |= OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST;
        if (::GetSaveFileNameA(&request) == FALSE)
            return std::nullopt;
    }
    return name.data();
}
