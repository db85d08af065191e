#include "scene_editor/core/LibraryPaths.h"

#include "odb/ObjectDatabase.h"

namespace editor {

GString text_of(std::string_view text)
{
    return GString(text);
}

GResourcePath resource_path(const DirectoryPath& path)
{
    GResourcePath result;
    for (const std::string& level : path)
        result += text_of(level);
    return result;
}

DirectoryPath directory_path(const GResourcePath& path)
{
    DirectoryPath result;
    for (int level = 0; level < path.count; ++level)
        result.emplace_back(path[level].view());
    return result;
}

GResourceFullName mediator_name(const DirectoryPath& path, std::string_view name)
{
    return {resource_path(path), text_of(name), ObjectDatabase::MediatorResourceType};
}

std::string in_quotes(std::string_view name)
{
    std::string text("\"");
    text += name;
    text += '"';
    return text;
}

std::string path_text(const GResourcePath& path, std::string_view name)
{
    return std::string(path.get_readable_form().view()) + std::string(name);
}

std::string numbered_name(std::string_view name, unsigned number)
{
    constexpr std::size_t kLongestExtension = 5;  // with its dot
    const std::size_t dot = name.rfind('.');
    const bool has_extension =
        dot != std::string_view::npos && dot > 0 && name.size() - dot <= kLongestExtension;
    const std::size_t end = has_extension ? dot : name.size();
    return std::string(name.substr(0, end)) + " " + std::to_string(number) +
           std::string(name.substr(end));
}

}  // namespace editor
