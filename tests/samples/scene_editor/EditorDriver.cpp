#include "EditorDriver.h"

#include "platform/HandlesGdi.h"
#include "scene_editor/resource.h"

#include <commctrl.h>

#include <array>

namespace {

constexpr DWORD kLimitMs = EditorDriver::kLimitMs;
constexpr DWORD kForegroundMs = 3'000;
constexpr DWORD kTurnMs = 10;
constexpr int kPreviewTitle = 2;
constexpr int kMessageText = 0xFFFF;

struct Search {
    std::function<bool(HWND)> fits;
    HWND found = nullptr;
};

BOOL CALLBACK ask_search(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<Search*>(parameter);
    if (search.fits(window))
        search.found = window;
    return search.found == nullptr;
}

HWND top_window(std::function<bool(HWND)> fits)
{
    Search search{std::move(fits)};
    ::EnumWindows(ask_search, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::string class_of(HWND window)
{
    std::array<char, 128> name{};
    ::GetClassName(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

// By a message, because of another process a window's text is only the one it was made with.
std::string text_of_window(HWND window)
{
    std::array<char, 2048> text{};
    DWORD_PTR length = 0;
    ::SendMessageTimeout(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                         SMTO_ABORTIFHUNG, kLimitMs, &length);
    return text.data();
}

void send_key(WORD code, bool is_up)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = code;
    input.ki.wScan = static_cast<WORD>(::MapVirtualKey(code, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = is_up ? KEYEVENTF_KEYUP : 0;
    ::SendInput(1, &input, sizeof input);
}

void send_mouse(DWORD flags, LONG x = 0, LONG y = 0)
{
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.dx = (x * 65536 + 32768) / ::GetSystemMetrics(SM_CXSCREEN);
    input.mi.dy = (y * 65536 + 32768) / ::GetSystemMetrics(SM_CYSCREEN);
    ::SendInput(1, &input, sizeof input);
}

// Goes on when the mouse is there: a button that came earlier would be pressed where it was.
void move_mouse(LONG x, LONG y)
{
    constexpr DWORD kMoveMs = 1'000;
    send_mouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, x, y);
    EditorDriver::wait_for(
        [x, y] {
            POINT here{};
            ::GetCursorPos(&here);
            return here.x == x && here.y == y;
        },
        kMoveMs);
}

}  // namespace

EditorDriver::EditorDriver(const std::vector<std::string>& words)
{
    ChildStart start;
    start.program = ZMR_SCENE_EDITOR;
    start.words = words;
    std::string reason;
    process_ = ChildProcess::Start(start, reason);
    if (process_ == nullptr)
        return;
    wait_for([this] {
        frame_ = top_window([](HWND window) {
            return ::IsWindowVisible(window) != FALSE &&
                   ::GetDlgItem(window, IDC_ENTRIES) != nullptr;
        });
        return frame_ != nullptr || !process_->runs();
    });
    const auto takes_keys = [this] {
        return ::GetForegroundWindow() == frame_ || !message().empty();
    };
    if (wait_for(takes_keys, kForegroundMs))
        return;
    // Another window kept the keyboard: a click on the caption brings it here.
    RECT area{};
    ::GetWindowRect(frame_, &area);
    move_mouse((area.left + area.right) / 2, area.top + ::GetSystemMetrics(SM_CYCAPTION) / 2);
    send_mouse(MOUSEEVENTF_LEFTDOWN);
    send_mouse(MOUSEEVENTF_LEFTUP);
    wait_for(takes_keys);
}

EditorDriver::~EditorDriver()
{
    if (process_ != nullptr && process_->runs())
        process_->kill();
}

std::string EditorDriver::title() const
{
    return text_of_window(frame_);
}

bool EditorDriver::is_alive() const
{
    DWORD_PTR ignored = 0;
    return ::SendMessageTimeout(frame_, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, kLimitMs, &ignored) != 0;
}

HWND EditorDriver::control(int id) const
{
    const HWND own = ::GetDlgItem(frame_, id);
    return own != nullptr ? own : ::GetDlgItem(::GetDlgItem(frame_, IDC_PROPERTIES), id);
}

std::string EditorDriver::text_of(int id) const
{
    return text_of_window(control(id));
}

int EditorDriver::rows() const
{
    return static_cast<int>(::SendMessage(control(IDC_ENTRIES), LVM_GETITEMCOUNT, 0, 0));
}

int EditorDriver::directories() const
{
    return static_cast<int>(::SendMessage(control(IDC_DIRECTORIES), TVM_GETCOUNT, 0, 0));
}

std::string EditorDriver::previewed() const
{
    return text_of_window(::GetDlgItem(control(IDC_PREVIEW), kPreviewTitle));
}

COLORREF EditorDriver::preview_color() const
{
    RECT area{};
    ::GetWindowRect(::GetDlgItem(control(IDC_PREVIEW), 1), &area);
    const HDC screen = ::GetDC(nullptr);
    const COLORREF color =
        ::GetPixel(screen, (area.left + area.right) / 2, (area.top + area.bottom) / 2);
    ::ReleaseDC(nullptr, screen);
    return color;
}

EditorDriver::Picture EditorDriver::picture_of(HWND window)
{
    RECT area{};
    ::GetClientRect(window, &area);
    POINT corner{};
    ::ClientToScreen(window, &corner);
    Picture picture;
    picture.width = static_cast<int>(area.right);
    picture.height = static_cast<int>(area.bottom);
    BITMAPINFO form{};
    form.bmiHeader.biSize = sizeof form.bmiHeader;
    form.bmiHeader.biWidth = picture.width;
    form.bmiHeader.biHeight = -picture.height;
    form.bmiHeader.biPlanes = 1;
    form.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const zmr::WindowDC screen(nullptr);
    const zmr::OwnedMemoryDC memory(::CreateCompatibleDC(screen.get()));
    const zmr::OwnedBitmap bitmap(
        ::CreateDIBSection(screen.get(), &form, DIB_RGB_COLORS, &bits, nullptr, 0));
    const zmr::Selection selected(memory.get(), bitmap.get());
    ::BitBlt(memory.get(), 0, 0, picture.width, picture.height, screen.get(), corner.x, corner.y,
             SRCCOPY);
    ::GdiFlush();
    const auto* const first = static_cast<const std::uint32_t*>(bits);
    picture.pixels.assign(first, first + picture.width * picture.height);
    for (std::uint32_t& pixel : picture.pixels)
        pixel &= 0xFFFFFF;
    return picture;
}

std::string EditorDriver::message() const
{
    const HWND box = dialog_with(kMessageText);
    return box != nullptr ? text_of_window(::GetDlgItem(box, kMessageText)) : std::string();
}

HWND EditorDriver::dialog_with(int control) const
{
    return top_window([this, control](HWND window) {
        return ::IsWindowVisible(window) != FALSE && class_of(window) == "#32770" &&
               ::GetWindow(window, GW_OWNER) == frame_ && ::GetDlgItem(window, control) != nullptr;
    });
}

bool EditorDriver::has_focus(int id) const
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return ::GetGUIThreadInfo(::GetWindowThreadProcessId(frame_, nullptr), &info) != FALSE &&
           info.hwndFocus == control(id);
}

bool EditorDriver::wait_for(const std::function<bool()>& condition, DWORD limit_ms)
{
    const DWORD began = ::GetTickCount();
    while (!condition()) {
        if (::GetTickCount() - began > limit_ms)
            return false;
        ::Sleep(kTurnMs);  // between two questions
    }
    return true;
}

void EditorDriver::key(WORD code, const std::vector<WORD>& held)
{
    for (const WORD one : held)
        send_key(one, false);
    send_key(code, false);
    send_key(code, true);
    for (auto one = held.rbegin(); one != held.rend(); ++one)
        send_key(*one, true);
}

void EditorDriver::type(const std::string& text)
{
    for (const char letter : text) {
        const SHORT code = ::VkKeyScan(letter);
        if ((HIBYTE(code) & 1) != 0)
            key(LOBYTE(code), {VK_SHIFT});
        else
            key(LOBYTE(code));
    }
}

void EditorDriver::click(HWND window, int x, int y)
{
    POINT point{x, y};
    ::ClientToScreen(window, &point);
    move_mouse(point.x, point.y);
    send_mouse(MOUSEEVENTF_LEFTDOWN);
    send_mouse(MOUSEEVENTF_LEFTUP);
}

void EditorDriver::drag(HWND window, int dx)
{
    RECT rect{};
    ::GetWindowRect(window, &rect);
    const LONG x = (rect.left + rect.right) / 2;
    const LONG y = (rect.top + rect.bottom) / 2;
    move_mouse(x, y);
    send_mouse(MOUSEEVENTF_LEFTDOWN);
    move_mouse(x + dx / 2, y);
    move_mouse(x + dx, y);
    send_mouse(MOUSEEVENTF_LEFTUP);
}

void EditorDriver::drag_from(HWND window, POINT from, int dx, int dy)
{
    ::ClientToScreen(window, &from);
    move_mouse(from.x, from.y);
    send_mouse(MOUSEEVENTF_LEFTDOWN);
    constexpr int kSteps = 10;
    for (int step = 1; step <= kSteps; ++step)
        move_mouse(from.x + dx * step / kSteps, from.y + dy * step / kSteps);
    send_mouse(MOUSEEVENTF_LEFTUP);
}

void EditorDriver::turn_wheel(HWND window, POINT at, int steps)
{
    ::ClientToScreen(window, &at);
    move_mouse(at.x, at.y);
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_WHEEL;
    input.mi.mouseData = static_cast<DWORD>(steps * WHEEL_DELTA);
    ::SendInput(1, &input, sizeof input);
}

int EditorDriver::wait_for_end()
{
    if (!wait_for([this] { return !process_->runs(); }))
        return -1;
    return process_->wait().code;
}
