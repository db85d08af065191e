#include "settings/SettingsBatch.h"

#include "settings/IniStore.h"
#include "settings/SettingsPlace.h"

namespace zmr {

SettingsBatch::SettingsBatch(RegistryManager& manager)
    : manager_(&manager),
      registry_key_(manager.place_.registry_key),
      profile_name_(manager.place_.profile_name)
{
    if (manager.batch_ != nullptr)
        return;
    const std::string file = settings_file(registry_key_.get(), profile_name_.get());
    if (file.empty())
        return;
    store_ = std::make_shared<IniStore>(FileSystemDevice::Real(), file);
    store_->begin();
    manager.batch_ = this;
}

SettingsBatch::~SettingsBatch()
{
    static_cast<void>(commit());  // who wants to know has called it
}

bool SettingsBatch::commit()
{
    if (store_ == nullptr)
        return true;
    manager_->batch_ = nullptr;
    const auto store = std::move(store_);
    return store->commit();
}

}  // namespace zmr
