#pragma once

#include "platform/Export.h"

#include <cstdint>

/// The CRC-32 of a block (reflected, polynomial 0xEDB88320), as archives and PNG files use it.
/// `former` is the checksum of what came before the block, 0 for nothing.
[[nodiscard]] ZMR_GV_API std::uint32_t g_mem_CRC32(const void* data, unsigned long size,
                                                   std::uint32_t former = 0);
