#include "platform/Windows.h"

#include <cstdio>

// Keeps Wine's desktop open until its standard input ends. The first program that touches a window
// starts the desktop's own process, which keeps that program's output open: who reads it through a
// pipe, as ctest does, would wait for the end of the whole run.
int main()
{
    const HWND window =
        ::CreateWindowEx(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    if (window == nullptr)
        return 1;
    std::puts("open");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    ::DestroyWindow(window);
}
