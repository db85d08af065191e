#include "odb/NamesText.h"

namespace zmr {

namespace {

bool holds_behind_start(std::string_view text, std::string_view marker)
{
    const std::size_t at = text.find(marker);
    return at != std::string_view::npos && at > 0;
}

CString trimmed(std::string_view text)
{
    CString result(text);
    result.TrimRight();
    result.TrimLeft();
    return result;
}

}  // namespace

bool NamesText::add(std::string_view text)
{
    const bool is_name = holds_behind_start(text, kNameMarker);
    const bool is_category = holds_behind_start(text, kCategoryMarker);
    if (is_name) {
        names_.append(" ");
        names_.append(text);
    }
    if (is_category)
        categories_.append(text);
    return is_name || is_category;
}

CString NamesText::user_name_for(std::string_view class_name)
{
    const std::size_t at = names_.find(class_name, 0);
    if (at == std::string_view::npos)
        return CString(class_name);
    const std::string_view rest = names_.text().substr(at + class_name.size() + kNameMarker.size());
    return trimmed(rest.substr(0, rest.find(')')));  // without one, the rest
}

CString NamesText::category_name_for(std::string_view name)
{
    std::size_t at = categories_.find(name, 0);
    if (at == std::string_view::npos)
        at = categories_.find(name, 1);
    if (at == std::string_view::npos)
        return {};
    const std::string_view text = categories_.text();
    const std::size_t end = text.find(kCategoryMarker, at + 1);
    if (end == std::string_view::npos)
        return {};
    const std::size_t semicolon = text.find(';', end);
    if (semicolon == std::string_view::npos)
        return {};
    const std::size_t start = end + kCategoryMarker.size();
    return trimmed(text.substr(start, semicolon - start));
}

}  // namespace zmr
