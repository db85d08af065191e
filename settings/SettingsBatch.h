#pragma once

#include "settings/RegistryManager.h"

namespace zmr {

class IniStore;

/// Reads and writes of many settings at the cost of one of each, where they lie in an
/// initialisation file: between its construction and commit() the file is read once, and what is
/// written goes to the disk at commit(), all of it or, after a kill before that, none. Reads in
/// between see what was written. Where settings lie in the registry every call works as without it.
///
/// Within another batch of the same manager it does nothing by itself. The manager must outlive it.
class ZMR_GV_API SettingsBatch {
public:
    explicit SettingsBatch(RegistryManager& manager = *RegistryManager::get());
    /// Commits what is not committed.
    ~SettingsBatch();
    SettingsBatch(const SettingsBatch&) = delete;
    SettingsBatch& operator=(const SettingsBatch&) = delete;

    /// Ends the batch. False when what was written is not on the disk. Once.
    [[nodiscard]] bool commit();

private:
    friend class ::RegistryManager;

    /// Whether these are the very names that it was begun with: a short way to find its file.
    [[nodiscard]] bool is_of(const char* registry_key, const char* profile_name) const
    {
        return registry_key == registry_key_.get() && profile_name == profile_name_.get();
    }

    RegistryManager* manager_;
    std::shared_ptr<char[]> registry_key_;
    std::shared_ptr<char[]> profile_name_;
    std::shared_ptr<IniStore> store_;  ///< Null: nothing to be done.
};

}  // namespace zmr
