#pragma once

#include "platform/PlatformTypes.h"

#include <algorithm>
#include <limits>

// The platform's files and archives count in 32 bits, the devices of streams in `long`.

namespace zmr {

constexpr long kLargestBlock = std::numeric_limits<int>::max();

/// Writes all `size` bytes to a CFile or CArchive and returns `size`; nothing for a size below 1.
template <class Target>
long write_blocks(Target& target, const void* data, long size)
{
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (long done = 0; done < size;) {
        const long part = std::min(size - done, kLargestBlock);
        target.Write(bytes + done, static_cast<UINT>(part));
        done += part;
    }
    return std::max(size, 0L);
}

/// Reads up to `size` bytes from a CFile or CArchive and returns their number, less at the end.
template <class Source>
[[nodiscard]] long read_blocks(Source& source, void* data, long size)
{
    auto* bytes = static_cast<unsigned char*>(data);
    long done = 0;
    while (done < size) {
        const long part = std::min(size - done, kLargestBlock);
        const long count = static_cast<long>(source.Read(bytes + done, static_cast<UINT>(part)));
        done += count;
        if (count < part)
            break;
    }
    return done;
}

}  // namespace zmr
