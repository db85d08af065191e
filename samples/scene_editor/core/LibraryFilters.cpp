#include "scene_editor/core/LibraryFilters.h"

#include "odb/ODB_ClassFilter.h"
#include "odb/ODB_FiltersContainer.h"
#include "odb/ODB_RegularExpressionFilter.h"
#include "scene_editor/core/EntryRows.h"
#include "store/GResourceIterators.h"
#include "store/ResourceFile.h"

#include <algorithm>

namespace editor {

namespace {

// Saved filters lie in the root, under their names and this type.
constexpr const char* kFilterType = "scene editor's filter";

GResourceFullName resource_of(const std::string& name)
{
    return {GResourcePath(), GString(std::string_view(name)), GString(kFilterType)};
}

bool is_letter(char letter)
{
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

}  // namespace

zmr::OwnedObject<ODB_ContentsFilter> make_filter(const EntryFilter& filter)
{
    auto* const all = new ODB_FiltersContainer;
    zmr::OwnedObject<ODB_ContentsFilter> owned(all);
    if (!filter.class_name.empty()) {
        all->insert(new ODB_ClassFilter(filter.class_name.c_str(),
                                        static_cast<unsigned char>(filter.with_bases)));
    }
    if (!filter.expression.empty())
        all->insert(new ODB_RegularExpressionFilter(filter.expression.c_str()));
    return owned;
}

std::optional<EntryFilter> filter_of(ODB_ContentsFilter& filter)
{
    const auto* const all = dynamic_cast<const ODB_FiltersContainer*>(&filter);
    if (all == nullptr)
        return std::nullopt;
    EntryFilter result;
    for (long i = 0; i < all->count; ++i) {
        const ODB_ContentsFilter& part = all->at(i);
        if (const auto* const by_class = dynamic_cast<const ODB_ClassFilter*>(&part)) {
            result.class_name = by_class->get_class_name().view();
            result.with_bases = by_class->get_related() != 0;
        } else if (const auto* const by_name =
                       dynamic_cast<const ODB_RegularExpressionFilter*>(&part)) {
            result.expression = by_name->get_expression().pattern().view();
        } else {
            return std::nullopt;
        }
    }
    return result;
}

std::vector<SavedFilter> saved_filters(ResourceFile& library)
{
    std::vector<SavedFilter> saved;
    const GResourceFullName pattern = resource_of({});
    for (GResourceIterator it(library, pattern); it.index >= 0; --it) {
        const std::string name(it.element().view());
        const zmr::OwnedObject<> object(library.get(resource_of(name), false));
        auto* const filter = zmr::class_cast<ODB_ContentsFilter>(object.get());
        if (filter == nullptr)
            continue;
        if (const std::optional<EntryFilter> known = filter_of(*filter))
            saved.push_back({name, *known});
    }
    std::sort(saved.begin(), saved.end(), [](const SavedFilter& a, const SavedFilter& b) {
        return name_before(a.name, b.name);
    });
    return saved;
}

void save_filter(ResourceFile& library, const SavedFilter& saved)
{
    const zmr::OwnedObject<ODB_ContentsFilter> filter = make_filter(saved.filter);
    library.put(filter.get(), resource_of(saved.name), false);
}

void remove_filter(ResourceFile& library, const std::string& name)
{
    library.remove(resource_of(name));
}

FilterLine parse_filter_line(std::string_view typed)
{
    if (!typed.starts_with('/'))
        return {std::string(typed), {}, true};
    typed.remove_prefix(1);
    if (typed.ends_with('/'))
        typed.remove_suffix(1);
    FilterLine line{{}, std::string(typed), true};
    line.is_valid = line.expression.empty() || RegularExpression(line.expression.c_str()).valid();
    return line;
}

std::string filter_line(const std::string& expression)
{
    return expression.empty() ? std::string() : "/" + expression + "/";
}

std::string expression_for(std::string_view text)
{
    constexpr std::string_view kMeaning = "\\^$.|?*+()[]{}/-";
    std::string expression = ".*";
    for (const char letter : text) {
        if (is_letter(letter)) {
            const char other = static_cast<char>(letter ^ ('a' ^ 'A'));
            expression += {'[', letter, other, ']'};
            continue;
        }
        if (kMeaning.find(letter) != std::string_view::npos)
            expression += '\\';
        expression += letter;
    }
    return expression + ".*";
}

std::vector<FilterChoice> filter_choices(const std::vector<std::string>& classes,
                                         const std::vector<SavedFilter>& saved)
{
    std::vector<FilterChoice> choices{{"All entries", {}, false}};
    std::vector<std::string> sorted = classes;
    std::sort(sorted.begin(), sorted.end(), name_before);
    for (const std::string& name : sorted) {
        if (name.empty())
            continue;
        choices.push_back({name, {name, false, {}}, false});
        choices.push_back({name + " and its bases", {name, true, {}}, false});
    }
    for (const SavedFilter& filter : saved)
        choices.push_back({"Filter: " + filter.name, filter.filter, true});
    return choices;
}

}  // namespace editor
