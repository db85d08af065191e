#include "app/GRecentFileList.h"

#include "app/RecentEntries.h"

#include <cstddef>
#include <span>

void GRecentFileList::ReadList()
{
    zmr::read_recent_entries(*RegistryManager::get(), m_strSectionName, m_strEntryFormat,
                             {m_arrNames, static_cast<std::size_t>(m_nSize)});
}

void GRecentFileList::WriteList()
{
    // A list that is not kept is no reason to stop anybody.
    static_cast<void>(zmr::write_recent_entries(*RegistryManager::get(), m_strSectionName,
                                                m_strEntryFormat,
                                                {m_arrNames, static_cast<std::size_t>(m_nSize)}));
}
