#pragma once

#include "foundation/OwnedObject.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class ODB_ContentsFilter;
class ResourceFile;

namespace editor {

/// Which entries of a library are wanted: those of a class whose name an expression matches as a
/// whole. An empty text asks for nothing. Directories are always wanted.
struct EntryFilter {
    std::string class_name;
    bool with_bases = false;  ///< Also entries of the bases of that class.
    std::string expression;   ///< ECMAScript, case counting.

    [[nodiscard]] bool is_empty() const { return class_name.empty() && expression.empty(); }
    bool operator==(const EntryFilter&) const = default;
};

/// The library's own filter for it: one that wants what all its parts want.
[[nodiscard]] zmr::OwnedObject<ODB_ContentsFilter> make_filter(const EntryFilter& filter);
/// The way back; nothing for a filter of another form.
[[nodiscard]] std::optional<EntryFilter> filter_of(ODB_ContentsFilter& filter);

/// A filter under a name, kept in the library file itself, so that it goes where the library goes.
struct SavedFilter {
    std::string name;
    EntryFilter filter;
    bool operator==(const SavedFilter&) const = default;
};
/// All of them, by name. One that can't be read is left out.
[[nodiscard]] std::vector<SavedFilter> saved_filters(ResourceFile& library);
/// In place of one of that name; the library must be open for changes.
void save_filter(ResourceFile& library, const SavedFilter& saved);
void remove_filter(ResourceFile& library, const std::string& name);

/// What a line that filters asks for: a text that begins with a slash is an expression, without the
/// slash and one at its end; any other is looked for in names and classes.
struct FilterLine {
    std::string text;
    std::string expression;
    bool is_valid = true;  ///< The expression can be used.
    bool operator==(const FilterLine&) const = default;
};
[[nodiscard]] FilterLine parse_filter_line(std::string_view typed);
/// The line that asks for the expression; empty for none.
[[nodiscard]] std::string filter_line(const std::string& expression);
/// An expression that matches the names with `text` in them, in letters of either case.
[[nodiscard]] std::string expression_for(std::string_view text);

/// One line of a list that offers filters.
struct FilterChoice {
    std::string label;
    EntryFilter filter;
    bool is_saved = false;
    bool operator==(const FilterChoice&) const = default;
};
/// All entries, then the classes by name, and for each that has them its bases too, then the saved
/// filters.
[[nodiscard]] std::vector<FilterChoice> filter_choices(const std::vector<std::string>& classes,
                                                       const std::vector<SavedFilter>& saved);

}  // namespace editor
