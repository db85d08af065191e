#include "scene_editor/EntryList.h"

#include "scene_editor/SceneEditor.h"
#include "scene_editor/core/Badges.h"
#include "scene_editor/core/BuiltInPictures.h"
#include "scene_editor/core/PaneLayout.h"
#include "scene_editor/core/PreviewTexts.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int kIconAt96 = 32;
constexpr int kIconMarginAt96 = 3;
constexpr int kClassWidthAt96 = 110;
constexpr int kDescriptionWidthAt96 = 160;

// The image list: what is not a row's own icon, then the slots of the cache.
// An entry without an icon has one for each editor::Holding.
enum Image { kBlankImage, kDirectoryImage, kEntryImage, kFirstSlot = kEntryImage + 4 };
constexpr int kSlots = 256;  // some screens full

constexpr UINT kManyRows = 256;

// Whether the keys that are held now add to the selection.
bool keeps_selection()
{
    return ::GetKeyState(VK_SHIFT) < 0 || ::GetKeyState(VK_CONTROL) < 0;
}

constexpr UINT kSelected = LVIS_SELECTED | LVIS_FOCUSED;

// Copies as much of `text` as there is room for, without half a character.
void copy_text(std::string_view text, char* out, int room)
{
    if (out == nullptr || room <= 0)
        return;
    std::size_t length = std::min(text.size(), static_cast<std::size_t>(room) - 1);
    while (length < text.size() && length > 0 &&
           (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
        --length;
    std::memcpy(out, text.data(), length);
    out[length] = '\0';
}

}  // namespace

BEGIN_MESSAGE_MAP(EntryList, CListCtrl)
    ON_NOTIFY_REFLECT(LVN_GETDISPINFOA, &EntryList::OnGetDispInfo)
    ON_NOTIFY_REFLECT(LVN_ODFINDITEMA, &EntryList::OnFindItem)
    ON_WM_NCLBUTTONDOWN()
    ON_WM_LBUTTONDOWN()
    ON_WM_KEYDOWN()
END_MESSAGE_MAP()

EntryList::EntryList() : icons_(kSlots) {}

BOOL EntryList::create(CWnd& parent, UINT id, int dpi)
{
    zmr::load_common_controls();
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | LVS_REPORT |
                        LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_EDITLABELS | LVS_SHAREIMAGELISTS |
                        LVS_NOSORTHEADER;
    if (!CreateEx(WS_EX_CLIENTEDGE, WC_LISTVIEW, "", style, RECT{}, &parent, id))
        return FALSE;
    SetExtendedStyle(LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP);
    const int icon_px = editor::scaled(kIconAt96, dpi);
    if (!images_.create(icon_px, editor::scaled(kIconMarginAt96, dpi), kFirstSlot + kSlots))
        return FALSE;
    images_.set(kDirectoryImage, editor::directory_picture(icon_px));
    for (int holding = 0; holding < kFirstSlot - kEntryImage; ++holding) {
        images_.set(kEntryImage + holding,
                    editor::with_badge(editor::entry_picture(icon_px),
                                       static_cast<editor::Holding>(holding), icon_px));
    }
    SetImageList(&images_.list(), LVSIL_SMALL);
    class_width_px_ = editor::scaled(kClassWidthAt96, dpi);
    description_width_px_ = editor::scaled(kDescriptionWidthAt96, dpi);
    return InsertColumn(0, "Name", LVCFMT_LEFT, class_width_px_) >= 0 &&
           InsertColumn(1, "Class", LVCFMT_LEFT, class_width_px_) >= 0 &&
           InsertColumn(2, "Description", LVCFMT_LEFT, description_width_px_) >= 0;
}

void EntryList::clear()
{
    rows_.clear();
    rows_.set_filter(filter_);
    icons_.clear();
    SetItemCountEx(0, 0);
    fit_columns();
}

void EntryList::append(editor::RowBatch batch)
{
    rows_.append(std::move(batch));
    SetItemCountEx(static_cast<int>(rows_.shown().size()),
                   LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
    fit_columns();
}

void EntryList::set_filter(const std::string& text)
{
    const std::optional<Id> kept = single_row();
    filter_ = text;
    if (rows_.set_filter(text))
        show_rows(kept);
}

void EntryList::rename(Id row, const std::string& name)
{
    rows_.rename(row, name);
    show_rows(row);
}

void EntryList::remove(const std::vector<Id>& rows)
{
    const int focused = GetNextItem(-1, LVNI_SELECTED);
    std::optional<Id> kept = single_row();
    if (kept && std::find(rows.begin(), rows.end(), *kept) != rows.end())
        kept.reset();
    rows_.remove(rows);
    for (const Id row : rows)
        icons_.forget(row);
    show_rows(kept);
    if (!kept && !rows_.shown().empty() && focused >= 0)
        select_only(std::min(static_cast<std::size_t>(focused), rows_.shown().size() - 1));
}

void EntryList::set_details(const editor::IconLoaded& loaded)
{
    rows_.set_details(loaded.row, loaded.holding, loaded.description);
    if (loaded.icon == nullptr)
        icons_.store_none(loaded.row);
    else if (loaded.holding == editor::Holding::Inside)
        images_.set(kFirstSlot + icons_.store(loaded.row), *loaded.icon);
    else
        images_.set(kFirstSlot + icons_.store(loaded.row),
                    editor::with_badge(*loaded.icon, loaded.holding, images_.size_px()));
    if (const auto position = rows_.position_of(loaded.row))
        RedrawItems(static_cast<int>(*position), static_cast<int>(*position));
}

void EntryList::put(const editor::EntryChanged& entry)
{
    const std::optional<Id> kept = single_row();
    const bool was_there = rows_.find(entry.name).has_value();
    const Id row = rows_.put(entry.name, entry.class_name, entry.holding);
    icons_.forget(row);
    if (!was_there)
        show_rows(kept);
    else
        Invalidate(FALSE);
}

std::vector<EntryList::Id> EntryList::rows_around_view() const
{
    const auto first = static_cast<std::size_t>(std::max(0, GetTopIndex()));
    const auto count = static_cast<std::size_t>(std::max(0, GetCountPerPage()) + 1);
    return editor::rows_around(rows_.shown(), first, count);
}

std::vector<EntryList::Id> EntryList::without_icon(std::vector<Id> rows) const
{
    std::erase_if(rows, [this](Id row) {
        return rows_.kind(row) == editor::RowKind::Directory || icons_.is_known(row);
    });
    return rows;
}

std::optional<EntryList::Id> EntryList::single_row() const
{
    // Asked in idle turns: looking for any selected row would walk over all that are not.
    const int position = GetNextItem(-1, LVNI_FOCUSED | LVNI_SELECTED);
    if (!has_position(position) || GetSelectedCount() != 1)
        return std::nullopt;
    return row_at(position);
}

std::vector<EntryList::Id> EntryList::selected_entries() const
{
    std::vector<Id> entries;
    for (int position = GetNextItem(-1, LVNI_SELECTED); has_position(position);
         position = GetNextItem(position, LVNI_SELECTED)) {
        if (rows_.kind(row_at(position)) == editor::RowKind::Entry)
            entries.push_back(row_at(position));
    }
    return entries;
}

void EntryList::select_all()
{
    SetRedraw(FALSE);  // or each row is drawn by itself
    SetItemState(-1, LVIS_SELECTED, LVIS_SELECTED);
    SetRedraw(TRUE);
}

void EntryList::select_only(std::size_t position)
{
    const int place = static_cast<int>(position);
    deselect();
    SetItemState(place, kSelected, kSelected);
    SetSelectionMark(place);
    EnsureVisible(place, FALSE);
}

void EntryList::select_start(const std::string& name)
{
    if (rows_.shown().empty())
        return;
    const auto named = std::find_if(rows_.shown().begin(), rows_.shown().end(),
                                    [&](Id row) { return rows_.name(row) == name; });
    select_only(
        named == rows_.shown().end() ? 0 : static_cast<std::size_t>(named - rows_.shown().begin()));
}

void EntryList::focus_some_row()
{
    if (rows_.shown().empty() || GetNextItem(-1, LVNI_FOCUSED) >= 0)
        return;
    select_only(0);
}

std::optional<EntryList::Id> EntryList::row_under_mouse() const
{
    CPoint point;
    ::GetCursorPos(&point);
    if (::WindowFromPoint(point) != m_hWnd)
        return std::nullopt;
    ScreenToClient(&point);
    const int position = HitTest(point);
    if (!has_position(position))
        return std::nullopt;
    return row_at(position);
}

void EntryList::fit_columns()
{
    CRect client;  // without the scroll bar
    GetClientRect(&client);
    const int room = static_cast<int>(client.Width());
    if (room <= 0)
        return;
    const int class_px = std::min(class_width_px_, room / 4);
    const int description_px = std::min(description_width_px_, room / 3);
    const int name_px = room - class_px - description_px;
    if (GetColumnWidth(2) != description_px)
        SetColumnWidth(2, description_px);
    if (GetColumnWidth(1) != class_px)
        SetColumnWidth(1, class_px);
    if (GetColumnWidth(0) != name_px)
        SetColumnWidth(0, name_px);
}

void EntryList::OnGetDispInfo(NMHDR* header, LRESULT*)
{
    LVITEMA& item = reinterpret_cast<NMLVDISPINFOA*>(header)->item;
    if (!has_position(item.iItem))
        return;
    const Id row = row_at(item.iItem);
    if ((item.mask & LVIF_TEXT) != 0) {
        if (item.iSubItem == 2) {
            copy_text(editor::in_one_line(rows_.description(row)), item.pszText, item.cchTextMax);
        } else {
            copy_text(item.iSubItem == 0 ? rows_.name(row) : rows_.class_name(row), item.pszText,
                      item.cchTextMax);
        }
    }
    if ((item.mask & LVIF_IMAGE) != 0)
        item.iImage = image_of(row);
}

void EntryList::OnFindItem(NMHDR* header, LRESULT* result)
{
    const auto& find = *reinterpret_cast<NMLVFINDITEMA*>(header);
    *result = -1;
    if ((find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0 || find.lvfi.psz == nullptr)
        return;
    const auto from = static_cast<std::size_t>(std::max(0, find.iStart));
    if (const auto found =
            rows_.find_start(find.lvfi.psz, from, (find.lvfi.flags & LVFI_WRAP) != 0))
        *result = static_cast<LRESULT>(*found);
}

void EntryList::OnNcLButtonDown(UINT hit, CPoint point)
{
    const editor::SystemLoop loop;  // a scroll bar is tracked until the button is let go
    CListCtrl::OnNcLButtonDown(hit, point);
}

void EntryList::OnLButtonDown(UINT keys, CPoint point)
{
    deselect_many();
    CListCtrl::OnLButtonDown(keys, point);
}

void EntryList::OnKeyDown(UINT key, UINT repeats, UINT flags)
{
    // The control itself walks over all rows between the ends.
    const bool is_end = key == VK_HOME || key == VK_END;
    if (is_end && !rows_.shown().empty() && !keeps_selection()) {
        select_only(key == VK_HOME ? 0 : rows_.shown().size() - 1);
        return;
    }
    if (key == VK_UP || key == VK_DOWN || key == VK_PRIOR || key == VK_NEXT)
        deselect_many();
    CListCtrl::OnKeyDown(key, repeats, flags);
}

// What the control would do itself, but drawing each row.
void EntryList::deselect_many()
{
    if (GetSelectedCount() > kManyRows && !keeps_selection())
        deselect();
}

void EntryList::deselect()
{
    // A state for all rows, and a search for a selected one, walk over every row.
    if (GetSelectedCount() == 0)
        return;
    if (const int position = GetNextItem(-1, LVNI_FOCUSED | LVNI_SELECTED);
        position >= 0 && GetSelectedCount() == 1) {
        SetItemState(position, 0, LVIS_SELECTED);
        return;
    }
    SetRedraw(FALSE);
    SetItemState(-1, 0, LVIS_SELECTED);
    SetRedraw(TRUE);
}

void EntryList::show_rows(std::optional<Id> kept)
{
    SetItemCountEx(0, 0);  // no row, no selection
    SetItemCountEx(static_cast<int>(rows_.shown().size()), 0);
    fit_columns();
    if (kept) {
        if (const auto position = rows_.position_of(*kept))
            select_only(*position);
    }
    Invalidate(FALSE);
}

int EntryList::image_of(Id row)
{
    if (rows_.kind(row) == editor::RowKind::Directory)
        return kDirectoryImage;
    const int slot = icons_.find(row);
    if (slot == editor::IconCache::kNotLoaded)
        return kBlankImage;
    return slot == editor::IconCache::kNoIcon ? kEntryImage + static_cast<int>(rows_.holding(row))
                                              : kFirstSlot + slot;
}
