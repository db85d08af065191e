#include "platform/CRecentFileList.h"

#include "platform/CCmdUI.h"
#include "platform/CMenu.h"
#include "platform/RecentFileText.h"
#include "platform/WideText.h"

#include <algorithm>
#include <string>

namespace {

/// A folder or file of the system's, by a call that tells the needed size when it is too small.
template <class Call>
std::string text_of(Call call)
{
    std::wstring wide(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = call(static_cast<DWORD>(wide.size()), wide.data());
        if (length < wide.size()) {
            wide.resize(length);
            return zmr::to_utf8(wide);
        }
        wide.resize(length);
    }
}

/// The name itself when the system cannot make it full.
std::string full_name(LPCTSTR path)
{
    std::wstring wide;
    if (!zmr::to_wide(path, wide))
        return path;
    std::string full = text_of([&wide](DWORD size, wchar_t* target) {
        return ::GetFullPathNameW(wide.c_str(), size, target, nullptr);
    });
    return full.empty() ? path : full;
}

}  // namespace

CRecentFileList::CRecentFileList(UINT start, LPCTSTR section, LPCTSTR entry_format, int size,
                                 int display_length)
    : names_(static_cast<std::size_t>(std::max(size, 0))),
      m_nSize(static_cast<int>(names_.size())),
      m_arrNames(names_.data()),
      m_strSectionName(section),
      m_strEntryFormat(entry_format),
      m_nStart(start),
      m_nMaxDisplayLength(display_length)
{
}

CRecentFileList::~CRecentFileList() = default;

void CRecentFileList::Add(LPCTSTR path)
{
    if (path == nullptr || *path == '\0' || names_.empty())
        return;
    const std::string full = full_name(path);
    const auto same = std::find_if(names_.begin(), names_.end(), [&full](const CString& name) {
        return name.CompareNoCase(full.c_str()) == 0;
    });
    const auto end = same != names_.end() ? same + 1 : names_.end();
    std::rotate(names_.begin(), end - 1, end);
    names_.front() = CString(full);
}

void CRecentFileList::Remove(int index)
{
    if (index < 0 || index >= m_nSize)
        return;
    names_[static_cast<std::size_t>(index)].Empty();
    std::rotate(names_.begin() + index, names_.begin() + index + 1, names_.end());
}

void CRecentFileList::RemoveName(const CString& name)
{
    const auto place = std::find(names_.begin(), names_.end(), name);
    if (place != names_.end())
        Remove(static_cast<int>(place - names_.begin()));
}

BOOL CRecentFileList::GetDisplayName(CString& name, int index, LPCTSTR current_folder,
                                     int current_length, BOOL at_least_name) const
{
    if (index < 0 || index >= m_nSize || m_arrNames[index].IsEmpty())
        return FALSE;
    const CString folder(current_folder, std::max(current_length, 0));
    name = CString(
        zmr::recent_file_text(m_arrNames[index].view(), folder.view(), m_nMaxDisplayLength,
                              at_least_name ? zmr::LastName::Always : zmr::LastName::MayBeLeftOut));
    return !name.IsEmpty();
}

void CRecentFileList::UpdateMenu(CCmdUI* state)
{
    CMenu* const menu = state->m_pMenu;
    if (m_strOriginal.IsEmpty() && menu != nullptr)
        menu->GetMenuString(state->m_nID, m_strOriginal, MF_BYCOMMAND);
    const UINT first = state->m_nID;
    const bool is_empty = IndexOfItem(0) < 0;
    // The first item of the menu stays where there are no files: it is what this is called for.
    if (menu != nullptr)
        for (int i = is_empty ? 1 : 0; i < m_nSize; ++i)
            menu->DeleteMenu(first + static_cast<UINT>(i), MF_BYCOMMAND);
    if (is_empty) {
        if (!m_strOriginal.IsEmpty())
            state->SetText(m_strOriginal);
        state->Enable(FALSE);
        return;
    }
    if (menu == nullptr)
        return;

    const std::string folder =
        text_of([](DWORD size, wchar_t* target) { return ::GetCurrentDirectoryW(size, target); });
    CString name;
    int order = 0;
    for (int i = 0; i < m_nSize; ++i) {
        if (m_arrNames[i].IsEmpty())
            continue;
        if (!GetDisplayName(name, i, folder.c_str(), static_cast<int>(folder.size())))
            name = m_arrNames[i];
        const std::string item =
            zmr::recent_file_item(static_cast<int>(m_nStart) + order + 1, name.view());
        menu->InsertMenu(state->m_nIndex++, MF_STRING | MF_BYPOSITION,
                         first + static_cast<UINT>(order++), item.c_str());
    }
    --state->m_nIndex;  // to the last one
    state->m_nIndexMax = static_cast<UINT>(menu->GetMenuItemCount());
    state->m_bEnableChanged = TRUE;  // all of the added ones are enabled
}

int CRecentFileList::IndexOfItem(int order) const
{
    for (int i = 0; i < m_nSize && order >= 0; ++i)
        if (!m_arrNames[i].IsEmpty() && order-- == 0)
            return i;
    return -1;
}
