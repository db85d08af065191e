#include "app/ModuleFile.h"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <string>

namespace zmr {
namespace {

[[nodiscard]] GFile file_of_program()
{
    std::string path(256, '\0');
    for (;;) {
        const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
        if (length < 0)
            return {};
        if (static_cast<std::size_t>(length) < path.size()) {
            path.resize(static_cast<std::size_t>(length));
            return GString(path);
        }
        path.resize(2 * path.size());
    }
}

}  // namespace

GFile file_of_module(HINSTANCE module)
{
    if (module == nullptr)
        return file_of_program();
    const link_map* map = nullptr;
    if (::dlinfo(module, RTLD_DI_LINKMAP, &map) != 0)
        return {};
    if (*map->l_name == '\0')  // the program itself has no name there
        return file_of_program();
    GFile file(map->l_name);
    file.expand();
    return file;
}

}  // namespace zmr
