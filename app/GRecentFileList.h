#pragma once

#include "platform/CRecentFileList.h"

/// The recent files, kept through RegistryManager::get(): entry number i of the section is the name
/// in place i, counted from 1.
class ZMR_GV_API GRecentFileList : public CRecentFileList {
public:
    using CRecentFileList::CRecentFileList;

    void ReadList() override;
    /// Takes the place of what the section holds. Empty places have a number and no entry.
    void WriteList() override;
};
