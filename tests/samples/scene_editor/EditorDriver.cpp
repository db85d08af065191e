#include "EditorDriver.h"

#include "platform/HandlesGdi.h"
#include "scene_editor/resource.h"

#include <commctrl.h>

#include <array>

namespace {

constexpr DWORD kLimitMs = EditorDriver::kLimitMs;
constexpr DWORD kForegroundMs = 3'000;
constexpr DWORD kSettleMs = 2'000;
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

/// What of a thread's windows input goes to.
struct InputPlace {
    HWND front = nullptr;
    HWND focus = nullptr;
    HWND capture = nullptr;
    DWORD loops = 0;
    bool operator==(const InputPlace&) const = default;
};

InputPlace input_place(DWORD thread)
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    if (!::GetGUIThreadInfo(thread, &info))
        return {};
    return {::GetForegroundWindow(), info.hwndFocus, info.hwndCapture, info.flags};
}

/// How many popup menus are on the screen.
int open_popups()
{
    int count = 0;
    for (HWND popup = nullptr;
         (popup = ::FindWindowExA(nullptr, popup, "#32768", nullptr)) != nullptr;)
        count += ::IsWindowVisible(popup) ? 1 : 0;
    return count;
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

// The system below tells a program late that a window of its has come or gone. Until it has, keys
// that are held count as let go, a menu is taken away, and the mouse goes back to where it was.
void EditorDriver::settle()
{
    constexpr int kLooks = 4;
    const DWORD thread = ::GetWindowThreadProcessId(frame_, nullptr);
    InputPlace last;
    int looks = 0;
    wait_for(
        [&] {
            // An answer tells that it has taken what came before.
            const InputPlace place = is_alive() ? input_place(thread) : InputPlace{};
            looks = place == last ? looks + 1 : 0;
            last = place;
            return looks >= kLooks;
        },
        kSettleMs);
}

// Goes on when the mouse stays there: a button would be pressed where it went meanwhile.
void EditorDriver::move_mouse(LONG x, LONG y)
{
    constexpr int kLooks = 3;
    int looks = 0;
    wait_for(
        [&] {
            POINT here{};
            if (is_alive() && ::GetCursorPos(&here) && here.x == x && here.y == y)
                return ++looks >= kLooks;
            looks = 0;
            send_mouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, x, y);
            return false;
        },
        kSettleMs);
}

void EditorDriver::press(WORD code, const std::vector<WORD>& held)
{
    for (const WORD one : held)
        send_key(one, false);
    send_key(code, false);
    send_key(code, true);
    for (auto one = held.rbegin(); one != held.rend(); ++one)
        send_key(*one, true);
}

void EditorDriver::key(WORD code, const std::vector<WORD>& held)
{
    settle();
    press(code, held);
}

bool EditorDriver::choose(const std::string& letters, const std::function<bool()>& done)
{
    constexpr int kTries = 6;
    constexpr DWORD kTryMs = 3'000;
    for (int tries = 0; tries < kTries; ++tries) {
        if (!wait_for([this] { return takes_input(); }))
            return false;
        key(static_cast<WORD>(::VkKeyScan(letters.front()) & 0xFF), {VK_MENU});
        int popups = 1;
        bool is_open = true;
        for (const char letter : letters.substr(1)) {
            is_open = wait_for([popups] { return open_popups() == popups; }, kTryMs);
            if (!is_open)
                break;
            key(static_cast<WORD>(::VkKeyScan(letter) & 0xFF));
            ++popups;
        }
        if (is_open && wait_for(done, kTryMs))
            return true;
        leave_menus();
        if (done())
            return true;
    }
    return false;
}

// One Escape for each popup, and one for the bar.
void EditorDriver::leave_menus()
{
    const DWORD thread = ::GetWindowThreadProcessId(frame_, nullptr);
    const auto is_in_menu = [thread] { return (input_place(thread).loops & GUI_INMENUMODE) != 0; };
    for (int presses = 0; presses < 4 && is_in_menu(); ++presses)
        key(VK_ESCAPE);
}

bool EditorDriver::takes_input() const
{
    return ::GetForegroundWindow() == frame_ && ::IsWindowEnabled(frame_) != FALSE;
}

void EditorDriver::type(const std::string& text)
{
    settle();
    for (const char letter : text) {
        const SHORT code = ::VkKeyScan(letter);
        if ((HIBYTE(code) & 1) != 0)
            press(LOBYTE(code), {VK_SHIFT});
        else
            press(LOBYTE(code));
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

int EditorDriver::close()
{
    constexpr int kTries = 4;
    constexpr DWORD kTryMs = 5'000;
    wait_for([this] { return takes_input(); }, kTryMs);
    for (int tries = 0; tries < kTries; ++tries) {
        key(VK_F4, {VK_MENU});
        if (wait_for([this] { return !process_->runs(); }, kTryMs) || !takes_input())
            break;
    }
    return wait_for_end();
}

int EditorDriver::wait_for_end()
{
    if (!wait_for([this] { return !process_->runs(); }))
        return -1;
    return process_->wait().code;
}
