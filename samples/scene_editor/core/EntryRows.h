#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace editor {

/// What a row of the list stands for; directories come first.
enum class RowKind : std::uint8_t { Directory, Entry };

/// Where the object of an entry lies.
enum class Holding : std::uint8_t {
    Inside,     ///< In the library itself.
    Reference,  ///< With another entry, for which this one stands.
    External,   ///< In a file of its own.
    Lost,       ///< With another entry or in a file that is not there.
};

/// ASCII letters in lower case, other bytes as they are: the form in which texts are compared.
[[nodiscard]] std::string folded(std::string_view text);
/// Whether the name `a` stands before `b`: by the folded texts, equal ones by their bytes.
[[nodiscard]] bool name_before(std::string_view a, std::string_view b);

/// Rows on their way to the list, in the order in which they are to stand. Their texts lie in one
/// block, so that handing many over costs little. Movable between threads.
class RowBatch {
public:
    /// Adds a row. `class_name` may be empty.
    void add(std::string_view name, std::string_view class_name, RowKind kind,
             Holding holding = Holding::Inside);
    [[nodiscard]] std::size_t size() const { return records_.size(); }

private:
    friend class EntryRows;
    struct Record {
        std::size_t name_at;  ///< In `text_`: the name, then its folded form, equally long.
        std::uint32_t length;
        std::uint16_t class_index;
        RowKind kind;
        Holding holding;
    };

    [[nodiscard]] std::uint16_t class_index_of(std::string_view class_name);

    std::string text_;
    std::vector<Record> records_;
    std::vector<std::string> class_names_;
};

/// The rows of one directory and those of them that a filter lets through. A row is known by its
/// id, the number of rows that were appended before it, which stays its own until `clear`.
class EntryRows {
public:
    using Id = std::uint32_t;

    void clear();
    /// Appends rows that stand behind all that are there. Costs what is in the batch.
    void append(RowBatch batch);

    /// Shows the rows whose name or class holds `text`, in letters of either case; all for an empty
    /// text. A longer text around the last one looks only at what is shown. False when it is the
    /// text that is set already.
    bool set_filter(std::string_view text);
    [[nodiscard]] bool is_filtered() const { return !filter_.empty(); }

    /// The rows that are shown, in their order.
    [[nodiscard]] const std::vector<Id>& shown() const { return shown_; }
    /// Where the row stands in `shown`; nothing when it is not there. Logarithmic.
    [[nodiscard]] std::optional<std::size_t> position_of(Id id) const;
    /// The first shown row at or behind `from` whose name starts with `text`, going on from the
    /// top with `wrap`.
    [[nodiscard]] std::optional<std::size_t> find_start(std::string_view text, std::size_t from,
                                                        bool wrap) const;

    [[nodiscard]] std::string_view name(Id id) const { return rows_[id].name; }
    [[nodiscard]] std::string_view class_name(Id id) const
    {
        return class_names_[rows_[id].class_index];
    }
    [[nodiscard]] RowKind kind(Id id) const { return rows_[id].kind; }
    [[nodiscard]] Holding holding(Id id) const { return rows_[id].holding; }
    /// Empty until it is set.
    [[nodiscard]] std::string_view description(Id id) const;
    /// What was found out about a row behind its listing.
    void set_details(Id id, Holding holding, std::string_view description);
    /// The names of the classes that occur, in no order.
    [[nodiscard]] const std::vector<std::string>& class_names() const { return class_names_; }

    /// The entry of that name. Logarithmic.
    [[nodiscard]] std::optional<Id> find(std::string_view name) const;
    /// Sets class and holding of the entry of that name, which is put in its place when it is not
    /// there. The description is forgotten. Linear for a new one. No more rows may be appended
    /// after a new one: they would not stand behind it.
    Id put(std::string_view name, std::string_view class_name, Holding holding);
    /// Renames a row, which moves to its place in the order. Linear.
    void rename(Id id, std::string_view name);
    /// Takes rows out; ids that are not there are ignored. Linear.
    void remove(const std::vector<Id>& ids);

    [[nodiscard]] std::size_t entries() const { return entries_; }
    [[nodiscard]] std::size_t directories() const { return order_.size() - entries_; }

private:
    struct Row {
        std::string_view name;
        std::string_view folded;
        std::uint16_t class_index;
        RowKind kind;
        Holding holding;
        bool is_there;
    };

    [[nodiscard]] std::uint16_t class_index_of(std::string_view class_name);
    [[nodiscard]] bool passes(Id id) const;
    [[nodiscard]] bool before(Id a, Id b) const;
    void match_classes();
    void show_from(const std::vector<Id>& candidates);
    /// A row that is in no order yet.
    Id add_row(std::string_view name, RowKind kind);

    std::deque<std::string> texts_;  ///< What the rows' views lie in; never moved.
    std::vector<Row> rows_;          ///< By id.
    std::unordered_map<Id, std::string> descriptions_;
    std::vector<Id> order_;  ///< All rows that are there, in their order.
    std::vector<Id> shown_;
    std::vector<std::string> class_names_;
    std::vector<bool> class_matches_;  ///< By class: whether its name passes the filter.
    std::string filter_;               ///< Folded.
    std::size_t entries_ = 0;
};

}  // namespace editor
