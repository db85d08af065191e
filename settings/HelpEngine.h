#pragma once

#include "foundation/GDynamicLinkLibrary.h"
#include "platform/Windows.h"

namespace zmr {

/// A help engine in a library of the system, which is loaded at the first call and stays. While it
/// is missing, each call looks for it again; a library that lacks the entry is not asked again.
/// User-interface thread.
class HelpEngine {
public:
    /// `library` must outlive the engine. The entry is known by its number among the exports.
    HelpEngine(const char* library, WORD entry) : name_(library), number_(entry) {}

    /// Hands the request to the engine; false when there is none, or when it shows nothing.
    [[nodiscard]] bool call(HWND window, const char* file, UINT command, DWORD_PTR data);

private:
    using Entry = HWND(WINAPI*)(HWND window, LPCSTR file, UINT command, DWORD_PTR data);

    [[nodiscard]] Entry entry();

    const char* name_;
    WORD number_;
    GDynamicLinkLibrary library_{nullptr, 0};
    Entry entry_ = nullptr;
};

}  // namespace zmr
