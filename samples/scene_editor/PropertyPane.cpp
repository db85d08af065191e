#include "scene_editor/PropertyPane.h"

#include "platform/CFont.h"
#include "platform/CString.h"
#include "platform/CWinApp.h"
#include "scene_editor/TextHeight.h"
#include "scene_editor/core/PaneLayout.h"
#include "scene_editor/resource.h"

#include <algorithm>

BEGIN_MESSAGE_MAP(PropertyPane, CWnd)
    ON_WM_SIZE()
    ON_MESSAGE(WM_PROPERTY_LEFT, &PropertyPane::OnPropertyLeft)
END_MESSAGE_MAP()

namespace {

// In the order of their ids.
constexpr std::array<const char*, 9> kCaptions{
    "Name", "X", "Y", "Turn (\xC2\xB0)", "Scale", "Class", "Colour", "Triangles", "State"};
constexpr int kCaptionAt96 = 66;

}  // namespace

BOOL PropertyPane::create(CWnd& parent, UINT id, CFont& font, int dpi)
{
    const LPCTSTR window_class = AfxRegisterWndClass(0, ::LoadCursor(nullptr, IDC_ARROW),
                                                     reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1));
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
    if (!CreateEx(WS_EX_CONTROLPARENT, window_class, "", style, RECT{}, &parent, id))
        return FALSE;
    line_px_ =
        text_height(*this, font) + editor::scaled(4, dpi) + 2 * ::GetSystemMetrics(SM_CYEDGE);
    margin_px_ = editor::scaled(4, dpi);
    caption_px_ = editor::scaled(kCaptionAt96, dpi);

    const DWORD text = WS_CHILD | WS_VISIBLE | SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS |
                       SS_CENTERIMAGE | WS_CLIPSIBLINGS;
    for (std::size_t row = 0; row < captions_.size(); ++row) {
        const UINT field = IDC_PROPERTY_FIRST + static_cast<UINT>(row);
        if (!captions_[row].Create("", text, RECT{}, this))
            return FALSE;
        AfxSetWindowText(captions_[row], kCaptions[row]);
        captions_[row].SetFont(&font);
        const bool is_typed = row < edits_.size();
        CWnd& value = is_typed ? static_cast<CWnd&>(edits_[row]) : told_[row - edits_.size()];
        if (is_typed ? !edits_[row].create(*this, field)
                     : !told_[row - edits_.size()].Create("", text, RECT{}, this, field))
            return FALSE;
        value.SetFont(&font);
        if (is_typed)
            value.EnableWindow(FALSE);
    }
    return TRUE;
}

void PropertyPane::watch(GResponder* object)
{
    if (object_.get() == object) {
        show_texts();
        return;
    }
    // What was typed for the other one is not this one's.
    for (PropertyEdit& edit : edits_) {
        if (edit.GetSafeHwnd() != nullptr)
            edit.SetModify(FALSE);
    }
    object_ = object;
    listener_.listen_to(object);
    show_texts();
}

std::vector<HWND> PropertyPane::fields() const
{
    std::vector<HWND> fields;
    for (const PropertyEdit& edit : edits_) {
        if (edit.IsWindowEnabled())
            fields.push_back(edit.m_hWnd);
    }
    return fields;
}

void PropertyPane::OnSize(UINT kind, int width, int height)
{
    CWnd::OnSize(kind, width, height);
    if (told_.back().GetSafeHwnd() == nullptr)
        return;
    const int left = margin_px_ + caption_px_;
    const int room = std::max(0, width - left - margin_px_);
    int top = margin_px_;
    for (std::size_t row = 0; row < captions_.size(); ++row) {
        captions_[row].MoveWindow(margin_px_, top, caption_px_, line_px_);
        if (row < edits_.size())
            edits_[row].MoveWindow(left, top, room, line_px_);
        else
            told_[row - edits_.size()].MoveWindow(left, top, room, line_px_);
        top += line_px_ + (row < edits_.size() ? margin_px_ / 2 : 0);
    }
}

void PropertyPane::show_texts()
{
    if (m_hWnd == nullptr)
        return;
    const editor::PropertyTexts texts = editor::property_texts(object_.get());
    for (std::size_t i = 0; i < edits_.size(); ++i) {
        if (edits_[i].GetModify())
            continue;  // just being typed
        if (shown_.typed[i] != texts.typed[i])
            AfxSetWindowText(edits_[i], texts.typed[i].c_str());
        shown_.typed[i] = texts.typed[i];
        if ((edits_[i].IsWindowEnabled() != FALSE) != static_cast<bool>(object_)) {
            if (!object_ && ::GetFocus() == edits_[i].m_hWnd)
                ::SetFocus(::GetParent(m_hWnd));
            edits_[i].EnableWindow(object_ ? TRUE : FALSE);
        }
    }
    const std::array<std::string editor::PropertyTexts::*, kTold> told{
        &editor::PropertyTexts::class_name, &editor::PropertyTexts::color,
        &editor::PropertyTexts::triangles, &editor::PropertyTexts::state};
    for (std::size_t i = 0; i < kTold; ++i) {
        if (shown_.*told[i] != texts.*told[i])
            AfxSetWindowText(told_[i], (texts.*told[i]).c_str());
        shown_.*told[i] = texts.*told[i];
    }
}

LRESULT PropertyPane::OnPropertyLeft(WPARAM field, LPARAM how)
{
    const std::size_t row = static_cast<std::size_t>(field) - IDC_PROPERTY_FIRST;
    if (row >= edits_.size() || !edits_[row].GetModify())
        return 0;
    if (static_cast<PropertyEdit::Left>(how) != PropertyEdit::Left::ByEscape)
        take_typed(row, static_cast<PropertyEdit::Left>(how) == PropertyEdit::Left::ByEnter);
    edits_[row].SetModify(FALSE);
    shown_.typed[row].clear();
    AfxSetWindowText(edits_[row], "");
    show_texts();
    if (::GetFocus() == edits_[row].m_hWnd)
        edits_[row].SetSel(0, -1);
    return 0;
}

void PropertyPane::take_typed(std::size_t field, bool tells_refusal)
{
    if (!object_)
        return;
    CString text;
    edits_[field].GetWindowText(text);
    const std::optional<std::string> refusal =
        editor::set_property(*object_, static_cast<editor::Property>(field),
                             std::string_view(static_cast<LPCTSTR>(text)));
    if (refusal && tells_refusal)
        AfxMessageBox(refusal->c_str(), MB_OK | MB_ICONEXCLAMATION | MB_HELP, IDP_PROPERTY);
}
