#pragma once

#include "platform/CListCtrl.h"
#include "scene_editor/IconImages.h"
#include "scene_editor/core/EntryRows.h"
#include "scene_editor/core/IconCache.h"
#include "scene_editor/core/LibraryResults.h"

#include <optional>
#include <string>
#include <vector>

/// The rows of a directory as a table that asks for what it shows. Icons are those that were given
/// last.
class EntryList : public CListCtrl {
public:
    using Id = editor::EntryRows::Id;

    EntryList();
    BOOL create(CWnd& parent, UINT id, int dpi);

    [[nodiscard]] const editor::EntryRows& rows() const { return rows_; }
    /// Takes all rows and icons out; the filter stays.
    void clear();
    void append(editor::RowBatch batch);
    void set_filter(const std::string& text);
    void rename(Id row, const std::string& name);
    /// Where the selected row goes, the one below it is selected then.
    void remove(const std::vector<Id>& rows);

    /// The icon, null when the row has none, and the rest that it shows.
    void set_details(const editor::IconLoaded& loaded);
    /// Puts an entry in its place, or shows what it is by now; its icon is not here then.
    void put(const editor::EntryChanged& entry);
    [[nodiscard]] int icon_size_px() const { return images_.size_px(); }
    /// The rows in view and a page to either side, the most wanted first.
    [[nodiscard]] std::vector<Id> rows_around_view() const;
    /// Those among `rows` that may have an icon which is not here.
    [[nodiscard]] std::vector<Id> without_icon(std::vector<Id> rows) const;

    /// The row that is selected and has the focus, when no other is selected.
    [[nodiscard]] std::optional<Id> single_row() const;
    /// The selected rows that are entries.
    [[nodiscard]] std::vector<Id> selected_entries() const;
    void select_all();
    void select_only(std::size_t position);
    /// Selects the row of that name, else the first one.
    void select_start(const std::string& name);
    /// Gives the focus to the first row when no row has it.
    void focus_some_row();
    /// The row under the mouse.
    [[nodiscard]] std::optional<Id> row_under_mouse() const;
    /// The row at a position of the list.
    [[nodiscard]] Id row_at(int position) const
    {
        return rows_.shown()[static_cast<std::size_t>(position)];
    }
    [[nodiscard]] bool has_position(int position) const
    {
        return position >= 0 && static_cast<std::size_t>(position) < rows_.shown().size();
    }
    /// Gives the names' column what the others leave of the width.
    void fit_columns();

protected:
    DECLARE_MESSAGE_MAP()
    void OnGetDispInfo(NMHDR* header, LRESULT* result);
    void OnFindItem(NMHDR* header, LRESULT* result);
    void OnNcLButtonDown(UINT hit, CPoint point);
    void OnLButtonDown(UINT keys, CPoint point);
    void OnKeyDown(UINT key, UINT repeats, UINT flags);

private:
    void deselect();
    void deselect_many();
    void show_rows(std::optional<Id> kept);
    [[nodiscard]] int image_of(Id row);

    editor::EntryRows rows_;
    std::string filter_;
    editor::IconCache icons_;
    IconImages images_;
    int class_width_px_ = 0;
    int description_width_px_ = 0;
};
