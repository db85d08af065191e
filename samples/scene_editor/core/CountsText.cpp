#include "scene_editor/core/CountsText.h"

namespace editor {

namespace {

std::string counted(std::size_t number, const char* one, const char* many)
{
    return with_thousands(number) + " " + (number == 1 ? one : many);
}

}  // namespace

std::string with_thousands(std::size_t number)
{
    std::string digits = std::to_string(number);
    for (std::size_t place = digits.size(); place > 3;) {
        place -= 3;
        digits.insert(place, 1, ',');
    }
    return digits;
}

std::string counts_text(const RowCounts& counts)
{
    std::string text;
    if (counts.is_filtered) {
        text = with_thousands(counts.shown) + " of " +
               with_thousands(counts.directories + counts.entries) + " shown";
    } else {
        if (counts.directories > 0)
            text = counted(counts.directories, "directory", "directories");
        if (counts.directories > 0 && counts.entries > 0)
            text += ", ";
        if (counts.directories == 0 || counts.entries > 0)
            text += counted(counts.entries, "entry", "entries");
    }
    if (!counts.is_complete)
        text += " so far";
    if (counts.selected > 0)
        text += ", " + with_thousands(counts.selected) + " selected";
    return text;
}

}  // namespace editor
