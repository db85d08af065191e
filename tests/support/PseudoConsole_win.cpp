// Pseudo consoles are younger than the systems that the product runs on.
#undef _WIN32_WINNT
#define _WIN32_WINNT 0x0A00
#define NTDDI_VERSION 0x0A000006

#include "tests/support/PseudoConsole_win.h"

#include <array>

bool PseudoConsole::open()
{
    HANDLE console_keys = nullptr;
    HANDLE keys = nullptr;
    HANDLE screen = nullptr;
    HANDLE console_screen = nullptr;
    if (!::CreatePipe(&console_keys, &keys, nullptr, 0))
        return false;
    // The console takes copies of its two ends.
    const zmr::OwnedKernelHandle its_keys(console_keys);
    keys_.reset(keys);
    if (!::CreatePipe(&screen, &console_screen, nullptr, 0))
        return false;
    const zmr::OwnedKernelHandle its_screen(console_screen);
    screen_.reset(screen);
    constexpr COORD kSize{120, 25};
    if (FAILED(::CreatePseudoConsole(kSize, console_keys, console_screen, 0, &console_)))
        return false;
    gatherer_ = std::thread([this] {
        std::array<char, 4096> bytes{};
        DWORD count = 0;
        while (::ReadFile(screen_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count,
                          nullptr) &&
               count > 0)
            text_.append({bytes.data(), count});
    });
    return true;
}

void PseudoConsole::close()
{
    if (console_ != nullptr)
        ::ClosePseudoConsole(console_);
    console_ = nullptr;
    if (gatherer_.joinable())
        gatherer_.join();
}
