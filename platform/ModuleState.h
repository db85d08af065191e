#pragma once

#include "platform/Windows.h"

class CWinApp;

namespace zmr {

/// What the whole process has one of. Written while one thread runs only.
struct ModuleState {
    [[nodiscard]] static ModuleState& current();

    CWinApp* application = nullptr;
    HINSTANCE resources = nullptr;  ///< Null: the program's.
};

/// The module that this code lies in: the library, or the program that took its objects in.
[[nodiscard]] HINSTANCE own_module();

}  // namespace zmr
