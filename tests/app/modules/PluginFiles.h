#pragma once

#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GMetaClass.h"
#include "foundation/GModuleHooks.h"
#include "foundation/GStreamable.h"
#include "foundation/TGCollection.h"
#include "tests/app/ModuleTree.h"
#include "tests/app/modules/plugins/PluginExport.h"

#include <string>
#include <utility>
#include <vector>

using Modules = TGCollection<GDynamicLinkLibrary>;

/// A tree into which the plug-ins' files are copied.
class PluginTree : public ModuleTree {
public:
    void copy(const char* library, const std::string& name) const
    {
        std::filesystem::create_directories(path_of(name).parent_path());
        std::filesystem::copy_file(std::filesystem::path(library), path_of(name));
    }
    void copy_first(const std::string& name) const { copy(ZMR_FIRST_PLUGIN, name); }
    /// With what it needs beside it.
    void copy_second(const std::string& name) const
    {
        copy(ZMR_SECOND_PLUGIN, name);
        const std::filesystem::path support(ZMR_PLUGIN_SUPPORT);
        std::filesystem::copy_file(support, path_of(name).replace_filename(support.filename()),
                                   std::filesystem::copy_options::overwrite_existing);
    }
};

/// An exported function of a plug-in as a `Function`; null when it has none.
template <class Function>
[[nodiscard]] Function function_of(const GDynamicLinkLibrary& library, const char* name)
{
    return reinterpret_cast<Function>(library.find_symbol(name));
}

/// Whether there is a class of that name now.
[[nodiscard]] inline bool class_is_there(const char* name)
{
    return GMetaClass::FindByName(name) != nullptr;
}

/// The plug-ins whose ends were told since the last call, in their order.
inline std::vector<std::string> ended_plugins;
inline void note_end(const char* name)
{
    ended_plugins.emplace_back(name);
}
[[nodiscard]] inline std::vector<std::string> take_ended()
{
    return std::exchange(ended_plugins, {});
}
