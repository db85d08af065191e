// The process-wide registry of callbacks.

#include "store/ResourceFile.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace {

struct Registration {
    GCallBackReason reason;
    ResourceFile::Callback callback;
    void* user;
    friend bool operator==(const Registration&, const Registration&) = default;
};

struct Registry {
    std::mutex mutex;
    std::vector<Registration> registrations;
};

Registry& registry()
{
    static Registry& all = *new Registry;  // files may end after static destruction
    return all;
}

bool is_registered(const Registration& registration)
{
    const std::lock_guard guard(registry().mutex);
    const auto& all = registry().registrations;
    return std::find(all.begin(), all.end(), registration) != all.end();
}

}  // namespace

void ResourceFile::RegisterCallback(GCallBackReason reason, Callback callback, void* user)
{
    const std::lock_guard guard(registry().mutex);
    registry().registrations.push_back({reason, callback, user});
}

void ResourceFile::UnRegisterCallback(GCallBackReason reason, Callback callback, void* user)
{
    const std::lock_guard guard(registry().mutex);
    std::erase_if(registry().registrations, [=](const Registration& registration) {
        return registration.callback == callback && registration.user == user &&
               (reason == GAnyReason || registration.reason == reason);
    });
}

void ResourceFile::EvokeCallback(GCallBackReason reason, Reason_BaseInfo& info)
{
    std::vector<Registration> called;
    {
        const std::lock_guard guard(registry().mutex);
        for (const Registration& registration : registry().registrations) {
            if (registration.reason == reason)
                called.push_back(registration);
        }
    }
    for (const Registration& registration : called) {
        if (is_registered(registration))  // an earlier one may have taken it back
            registration.callback(reason, &info, registration.user);
    }
}
