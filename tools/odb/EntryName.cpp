#include "tools/odb/EntryName.h"

namespace odb {

GResourcePath EntryName::as_directory() const
{
    GResourcePath directory = path;
    if (!name.is_empty())
        directory += name;
    return directory;
}

std::string EntryName::text() const
{
    std::string text = directory_text(path);
    if (!text.empty())
        text += '/';
    text += name.view();
    return text;
}

EntryName parse_entry(std::string_view text)
{
    EntryName entry;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('/'), text.size());
        if (end > 0) {
            if (!entry.name.is_empty())
                entry.path += entry.name;
            entry.name = GString(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return entry;
}

GResourcePath parse_directory(std::string_view text)
{
    return parse_entry(text).as_directory();
}

std::string directory_text(const GResourcePath& path)
{
    std::string text;
    for (int i = 0; i < path.count; ++i) {
        if (i > 0)
            text += '/';
        text += path[i].view();
    }
    return text;
}

}  // namespace odb
