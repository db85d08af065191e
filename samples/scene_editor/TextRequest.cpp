#include "scene_editor/TextRequest.h"

#include "scene_editor/SceneEditor.h"
#include "scene_editor/core/PreviewTexts.h"
#include "scene_editor/resource.h"

#include <vector>

namespace {

void put_over_owner(HWND dialog)
{
    RECT own{};
    RECT owner{};
    ::GetWindowRect(dialog, &own);
    ::GetWindowRect(::GetWindow(dialog, GW_OWNER), &owner);
    const LONG x = (owner.left + owner.right - (own.right - own.left)) / 2;
    const LONG y = (owner.top + owner.bottom - (own.bottom - own.top)) / 2;
    ::SetWindowPos(dialog, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

std::string text_in(HWND dialog)
{
    const HWND field = ::GetDlgItem(dialog, IDC_REQUEST_TEXT);
    std::vector<char> text(static_cast<std::size_t>(::GetWindowTextLengthA(field)) * 4 + 1);
    ::GetWindowTextA(field, text.data(), static_cast<int>(text.size()));
    return editor::without_control_breaks(text.data());
}

INT_PTR CALLBACK answer(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_INITDIALOG) {
        const auto& request = *reinterpret_cast<const TextRequest*>(lparam);
        ::SetWindowLongPtr(dialog, DWLP_USER, lparam);
        ::SetWindowTextA(dialog, request.title);
        ::SetDlgItemTextA(dialog, IDC_REQUEST_PROMPT, request.prompt);
        ::SetDlgItemTextA(dialog, IDC_REQUEST_TEXT,
                          editor::with_control_breaks(request.text).c_str());
        put_over_owner(dialog);
        const HWND field = ::GetDlgItem(dialog, IDC_REQUEST_TEXT);
        ::SetFocus(field);
        ::SendMessage(field, EM_SETSEL, 0, -1);
        return FALSE;  // the focus is where it is to be
    }
    if (message != WM_COMMAND || (LOWORD(wparam) != IDOK && LOWORD(wparam) != IDCANCEL))
        return FALSE;
    if (LOWORD(wparam) == IDOK) {
        auto* const request = reinterpret_cast<TextRequest*>(::GetWindowLongPtr(dialog, DWLP_USER));
        request->text = text_in(dialog);
    }
    ::EndDialog(dialog, LOWORD(wparam));
    return TRUE;
}

}  // namespace

std::optional<std::string> TextRequest::ask(HWND owner)
{
    const editor::SystemLoop loop;
    const UINT form = has_lines ? IDD_TEXT_LINES : IDD_TEXT_LINE;
    const INT_PTR result = ::DialogBoxParamA(::GetModuleHandle(nullptr), MAKEINTRESOURCEA(form),
                                             owner, answer, reinterpret_cast<LPARAM>(this));
    if (result != IDOK)
        return std::nullopt;
    return text;
}
