#include "scene_editor/core/NamesUpdate.h"

namespace editor {

NamesUpdate update_for(const EntryRows& rows, const NamesChanged& changed)
{
    NamesUpdate update;
    for (const std::string& name : changed.gone) {
        if (const auto row = rows.find(name))
            update.gone.push_back(*row);
    }
    for (const std::string& name : changed.come) {
        if (!rows.find(name))
            update.to_look_at.push_back(name);
    }
    if (update.to_look_at.size() > kMostPutOneByOne)
        return {true, {}, {}};
    return update;
}

}  // namespace editor
