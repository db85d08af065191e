// The check of a whole file.

#include "store/ResourceFile.h"
#include "store/ResourceFileServer.h"

bool ResourceFile::verify(const std::function<void(const Damage&)>& report,
                          const std::function<bool(std::uint64_t, std::uint64_t)>& progress)
{
    if (server == nullptr)
        return false;
    const GSingleLock locked(server->lock);
    return server->library_.verify(
        [&report](const zmr::LibraryDamage& met) {
            Damage damage;
            damage.name = GResourceFullName(GResourcePath::FromLibrary(met.name.path),
                                            GString(met.name.name), GString(met.name.type));
            damage.reason = met.text;
            report(damage);
        },
        progress);
}
