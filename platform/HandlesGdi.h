#pragma once

#include "platform/Handles.h"

// Owners of what drawing needs.

namespace zmr {

struct CloseGdiObject {
    static void close(HGDIOBJ object) noexcept { ::DeleteObject(object); }
};
/// A drawing object. The system does not delete one that is selected: let a Selection that names it
/// end first.
template <class Handle>
using OwnedDrawing = Owned<Handle, CloseGdiObject>;
using OwnedGdiObject = OwnedDrawing<HGDIOBJ>;
using OwnedBitmap = OwnedDrawing<HBITMAP>;
using OwnedBrush = OwnedDrawing<HBRUSH>;
using OwnedFont = OwnedDrawing<HFONT>;
using OwnedPen = OwnedDrawing<HPEN>;
using OwnedRegion = OwnedDrawing<HRGN>;

struct CloseMemoryDC {
    static void close(HDC dc) noexcept { ::DeleteDC(dc); }
};
/// A device context that was made: CreateCompatibleDC, CreateDC.
using OwnedMemoryDC = Owned<HDC, CloseMemoryDC>;

/// The device context of a window, given back at the end. For the thread that made this object.
class WindowDC {
public:
    /// Which part of the window can be drawn on.
    enum Area { kClientArea, kWholeWindow };

    /// Null for `window` is the screen. Holds null when the system refuses.
    explicit WindowDC(HWND window, Area area = kClientArea)
        : window_(window), dc_(area == kClientArea ? ::GetDC(window) : ::GetWindowDC(window))
    {
    }
    ~WindowDC()
    {
        if (dc_ == nullptr)
            return;
        const DWORD kept = ::GetLastError();
        ::ReleaseDC(window_, dc_);
        ::SetLastError(kept);
    }
    WindowDC(WindowDC&& other) noexcept
        : window_(other.window_), dc_(std::exchange(other.dc_, nullptr))
    {
    }
    WindowDC(const WindowDC&) = delete;
    WindowDC& operator=(const WindowDC&) = delete;

    [[nodiscard]] HDC get() const { return dc_; }
    explicit operator bool() const { return dc_ != nullptr; }

private:
    HWND window_;
    HDC dc_;
};

/// One answer to WM_PAINT: begins the painting of a window, and at the end validates what was
/// invalid.
class Painting {
public:
    explicit Painting(HWND window) : window_(window), dc_(::BeginPaint(window, &record_)) {}
    ~Painting()
    {
        if (dc_ != nullptr)
            ::EndPaint(window_, &record_);
    }
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;

    [[nodiscard]] HDC get() const { return dc_; }
    explicit operator bool() const { return dc_ != nullptr; }
    /// What the system told at the begin.
    [[nodiscard]] const PAINTSTRUCT& record() const { return record_; }

private:
    HWND window_;
    PAINTSTRUCT record_{};
    HDC dc_;
};

/// Selects a pen, brush, font or bitmap into a device context and the former one at the end of
/// scope. Not for regions, which are copied by selecting.
class Selection {
public:
    /// Nothing is selected, and nothing put back, when `object` is null or the system refuses: a
    /// bitmap that is selected elsewhere.
    Selection(HDC dc, HGDIOBJ object)
        : dc_(dc), former_(object != nullptr ? ::SelectObject(dc, object) : nullptr)
    {
    }
    ~Selection()
    {
        if (former_ != nullptr)
            ::SelectObject(dc_, former_);
    }
    Selection(const Selection&) = delete;
    Selection& operator=(const Selection&) = delete;

    explicit operator bool() const { return former_ != nullptr; }

private:
    HDC dc_;
    HGDIOBJ former_;
};

/// Saves the state of a device context and restores it at the end of scope.
class SavedState {
public:
    explicit SavedState(HDC dc) : dc_(dc), level_(::SaveDC(dc)) {}
    ~SavedState()
    {
        if (level_ != 0)
            ::RestoreDC(dc_, level_);
    }
    SavedState(const SavedState&) = delete;
    SavedState& operator=(const SavedState&) = delete;

private:
    HDC dc_;
    int level_;
};

}  // namespace zmr
