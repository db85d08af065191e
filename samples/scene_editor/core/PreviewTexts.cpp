#include "scene_editor/core/PreviewTexts.h"

#include "scene_editor/core/CountsText.h"

#include <algorithm>

namespace editor {

namespace {

void append(std::string& text, const std::string& part)
{
    if (!text.empty() && !part.empty())
        text += ", ";
    text += part;
}

std::string pictures_text(const PreviewLoaded& preview)
{
    if (preview.pictures.empty())
        return {};
    const auto shown =
        std::find(preview.pictures.begin(), preview.pictures.end(), preview.picture_name);
    if (preview.picture_name.empty() || shown == preview.pictures.end())
        return with_thousands(preview.pictures.size()) +
               (preview.pictures.size() == 1 ? " picture" : " pictures");
    return "picture " + std::to_string(shown - preview.pictures.begin() + 1) + " of " +
           std::to_string(preview.pictures.size()) + ": " + preview.picture_name;
}

}  // namespace

PreviewTexts preview_texts(const PreviewLoaded& preview)
{
    PreviewTexts texts;
    texts.title = preview.name;
    append(texts.caption, preview.class_name);
    append(texts.caption, preview.caption);
    append(texts.more, preview.holding);
    append(texts.more, pictures_text(preview));
    append(texts.more, preview.movie.empty() ? "" : "movie");
    texts.description = preview.description;
    return texts;
}

std::string picture_after(const PreviewLoaded& preview, int by)
{
    const auto count = static_cast<int>(preview.pictures.size()) + 1;
    const auto shown =
        std::find(preview.pictures.begin(), preview.pictures.end(), preview.picture_name);
    const int at = preview.picture_name.empty() || shown == preview.pictures.end()
                       ? 0
                       : static_cast<int>(shown - preview.pictures.begin()) + 1;
    const int next = (at + by + count) % count;
    return next == 0 ? std::string() : preview.pictures[static_cast<std::size_t>(next - 1)];
}

std::string with_control_breaks(const std::string& text)
{
    std::string result;
    for (const char letter : text) {
        if (letter == '\n' && !result.ends_with('\r'))
            result += '\r';
        result += letter;
    }
    return result;
}

std::string without_control_breaks(const std::string& text)
{
    std::string result = text;
    std::erase(result, '\r');
    return result;
}

std::string in_one_line(std::string_view text)
{
    std::string result(text);
    std::erase(result, '\r');
    std::replace(result.begin(), result.end(), '\n', ' ');
    return result;
}

}  // namespace editor
