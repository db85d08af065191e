#include "foundation/Checksum.h"

#include <zlib.h>

std::uint32_t g_mem_CRC32(const void* data, unsigned long size, std::uint32_t former)
{
    if (data == nullptr || size == 0)
        return former;
    return static_cast<std::uint32_t>(::crc32_z(former, static_cast<const Bytef*>(data), size));
}
