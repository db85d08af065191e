#include "scene_editor/FileChoice.h"

#include "scene_editor/SceneEditor.h"

#include <commdlg.h>

#include <array>
#include <string_view>

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
        request.Flags |= OFN_PATHMUSTEXIST | (what == For::Saving ? OFN_OVERWRITEPROMPT : 0);
        if (::GetSaveFileNameA(&request) == FALSE)
            return std::nullopt;
    }
    return name.data();
}

std::vector<std::string> FileChoice::ask_for_several(HWND owner) const
{
    std::vector<char> names(65536);
    OPENFILENAMEA request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = owner;
    request.lpstrFilter = filter;
    request.lpstrFile = names.data();
    request.nMaxFile = static_cast<DWORD>(names.size());
    request.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_FILEMUSTEXIST |
                    OFN_ALLOWMULTISELECT;
    const editor::SystemLoop loop;
    if (::GetOpenFileNameA(&request) == FALSE)
        return {};
    // One full name, or a folder and then the names in it.
    std::vector<std::string> files;
    const std::string first = names.data();
    const char* next = names.data() + first.size() + 1;
    if (*next == '\0')
        return {first};
    for (; *next != '\0'; next += std::string_view(next).size() + 1)
        files.push_back(first + "\\" + next);
    return files;
}
