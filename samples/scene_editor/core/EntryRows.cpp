#include "scene_editor/core/EntryRows.h"

#include <algorithm>
#include <cstring>

namespace editor {

namespace {

char folded_letter(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

std::string folded(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), folded_letter);
    return result;
}

bool name_before(std::string_view a, std::string_view b)
{
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto left = static_cast<unsigned char>(folded_letter(a[i]));
        const auto right = static_cast<unsigned char>(folded_letter(b[i]));
        if (left != right)
            return left < right;
    }
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

void RowBatch::add(std::string_view name, std::string_view class_name, RowKind kind,
                   Holding holding)
{
    const std::size_t name_at = text_.size();
    text_.append(name);
    text_.append(name);
    std::transform(text_.end() - static_cast<std::ptrdiff_t>(name.size()), text_.end(),
                   text_.end() - static_cast<std::ptrdiff_t>(name.size()), folded_letter);
    records_.push_back({name_at, static_cast<std::uint32_t>(name.size()),
                        class_index_of(class_name), kind, holding});
}

std::uint16_t RowBatch::class_index_of(std::string_view class_name)
{
    // The classes of a directory are few, and neighbours are mostly of one class.
    if (!records_.empty() && class_names_[records_.back().class_index] == class_name)
        return records_.back().class_index;
    auto found = std::find(class_names_.begin(), class_names_.end(), class_name);
    if (found == class_names_.end() && class_names_.size() < UINT16_MAX)
        found = class_names_.emplace(found, class_name);
    if (found == class_names_.end())
        --found;  // more classes than any program has: the last one stands for the rest
    return static_cast<std::uint16_t>(found - class_names_.begin());
}

void EntryRows::clear()
{
    *this = EntryRows();
}

void EntryRows::append(RowBatch batch)
{
    std::vector<std::uint16_t> class_index;
    for (const std::string& class_name : batch.class_names_)
        class_index.push_back(class_index_of(class_name));
    match_classes();

    const std::string& text = texts_.emplace_back(std::move(batch.text_));
    for (const RowBatch::Record& record : batch.records_) {
        const std::string_view both = std::string_view(text).substr(record.name_at);
        const auto id = static_cast<Id>(rows_.size());
        rows_.push_back({both.substr(0, record.length), both.substr(record.length, record.length),
                         class_index[record.class_index], record.kind, record.holding, true});
        order_.push_back(id);
        entries_ += record.kind == RowKind::Entry ? 1 : 0;
        if (passes(id))
            shown_.push_back(id);
    }
}

bool EntryRows::set_filter(std::string_view text)
{
    std::string wanted = folded(text);
    if (wanted == filter_)
        return false;
    const bool narrows = wanted.find(filter_) != std::string::npos;
    filter_ = std::move(wanted);
    match_classes();
    if (narrows)
        show_from(std::vector<Id>(std::move(shown_)));
    else
        show_from(order_);
    return true;
}

std::optional<std::size_t> EntryRows::position_of(Id id) const
{
    if (id >= rows_.size() || !rows_[id].is_there)
        return std::nullopt;
    const auto place = std::lower_bound(shown_.begin(), shown_.end(), id,
                                        [this](Id a, Id b) { return before(a, b); });
    if (place == shown_.end() || *place != id)
        return std::nullopt;
    return static_cast<std::size_t>(place - shown_.begin());
}

std::optional<std::size_t> EntryRows::find_start(std::string_view text, std::size_t from,
                                                 bool wrap) const
{
    const std::string start = folded(text);
    const auto search = [&](std::size_t first, std::size_t last) -> std::optional<std::size_t> {
        for (std::size_t place = first; place < last; ++place) {
            if (rows_[shown_[place]].folded.starts_with(start))
                return place;
        }
        return std::nullopt;
    };
    const std::size_t begin = std::min(from, shown_.size());
    const std::optional<std::size_t> found = search(begin, shown_.size());
    return found || !wrap ? found : search(0, begin);
}

std::string_view EntryRows::description(Id id) const
{
    const auto found = descriptions_.find(id);
    return found != descriptions_.end() ? std::string_view(found->second) : std::string_view();
}

void EntryRows::set_details(Id id, Holding holding, std::string_view description)
{
    if (id >= rows_.size() || !rows_[id].is_there)
        return;
    rows_[id].holding = holding;
    if (description.empty())
        descriptions_.erase(id);
    else
        descriptions_.insert_or_assign(id, std::string(description));
}

std::optional<EntryRows::Id> EntryRows::find(std::string_view name) const
{
    const std::string folded_name = folded(name);
    const auto place =
        std::lower_bound(order_.begin(), order_.end(), name, [&](Id id, std::string_view wanted) {
            const Row& row = rows_[id];
            if (row.kind != RowKind::Entry)
                return true;
            const int order = row.folded.compare(folded_name);
            return order != 0 ? order < 0 : row.name < wanted;
        });
    if (place == order_.end() || rows_[*place].name != name)
        return std::nullopt;
    return *place;
}

EntryRows::Id EntryRows::put(std::string_view name, std::string_view class_name, Holding holding)
{
    const std::optional<Id> found = find(name);
    const Id id = found ? *found : add_row(name, RowKind::Entry);
    rows_[id].class_index = class_index_of(class_name);
    rows_[id].holding = holding;
    descriptions_.erase(id);
    match_classes();
    if (!found) {
        const auto earlier = [this](Id a, Id b) { return before(a, b); };
        order_.insert(std::lower_bound(order_.begin(), order_.end(), id, earlier), id);
        ++entries_;
    }
    show_from(order_);
    return id;
}

EntryRows::Id EntryRows::add_row(std::string_view name, RowKind kind)
{
    std::string& text = texts_.emplace_back(name);
    text += folded(name);
    const std::string_view both = text;
    rows_.push_back(
        {both.substr(0, name.size()), both.substr(name.size()), 0, kind, Holding::Inside, true});
    return static_cast<Id>(rows_.size() - 1);
}

void EntryRows::rename(Id id, std::string_view name)
{
    if (id >= rows_.size() || !rows_[id].is_there)
        return;
    std::string& text = texts_.emplace_back(name);
    text += folded(name);
    const std::string_view both = text;

    std::erase(order_, id);
    rows_[id].name = both.substr(0, name.size());
    rows_[id].folded = both.substr(name.size());
    const auto earlier = [this](Id a, Id b) { return before(a, b); };
    order_.insert(std::lower_bound(order_.begin(), order_.end(), id, earlier), id);
    show_from(order_);
}

void EntryRows::remove(const std::vector<Id>& ids)
{
    for (const Id id : ids) {
        if (id >= rows_.size() || !rows_[id].is_there)
            continue;
        rows_[id].is_there = false;
        entries_ -= rows_[id].kind == RowKind::Entry ? 1 : 0;
    }
    std::erase_if(order_, [this](Id id) { return !rows_[id].is_there; });
    show_from(order_);
}

std::uint16_t EntryRows::class_index_of(std::string_view class_name)
{
    auto found = std::find(class_names_.begin(), class_names_.end(), class_name);
    if (found == class_names_.end() && class_names_.size() < UINT16_MAX)
        found = class_names_.emplace(found, class_name);
    if (found == class_names_.end())
        --found;
    return static_cast<std::uint16_t>(found - class_names_.begin());
}

bool EntryRows::passes(Id id) const
{
    if (filter_.empty())
        return true;
    const Row& row = rows_[id];
    return class_matches_[row.class_index] || row.folded.find(filter_) != std::string_view::npos;
}

bool EntryRows::before(Id a, Id b) const
{
    const Row& left = rows_[a];
    const Row& right = rows_[b];
    if (left.kind != right.kind)
        return left.kind < right.kind;
    if (const int order = left.folded.compare(right.folded); order != 0)
        return order < 0;
    return left.name < right.name;
}

void EntryRows::match_classes()
{
    class_matches_.assign(class_names_.size(), false);
    for (std::size_t i = 0; i < class_names_.size() && !filter_.empty(); ++i)
        class_matches_[i] = folded(class_names_[i]).find(filter_) != std::string::npos;
}

void EntryRows::show_from(const std::vector<Id>& candidates)
{
    std::vector<Id> passing;
    passing.reserve(candidates.size());
    for (const Id id : candidates) {
        if (passes(id))
            passing.push_back(id);
    }
    shown_ = std::move(passing);
}

}  // namespace editor
