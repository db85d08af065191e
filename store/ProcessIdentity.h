#pragma once

#include "platform/Export.h"

#include <string>

namespace zmr {

/// Who this process is, for a message to people who find a file in use: "ann@studio-4, process
/// 4711, since 2026-03-01 09:12:07 UTC", the time being that of the call. UTF-8, at most 400 bytes.
[[nodiscard]] ZMR_GV_API std::string process_identity();

}  // namespace zmr
