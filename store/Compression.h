#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zmr {

/// Deflates `bytes` into one zlib stream when that is worth it: from 1 KiB to 64 MiB, when the
/// first 2 KiB and then the whole save an eighth. False, with `deflated` empty, when it is not.
[[nodiscard]] bool deflate_if_worth_it(std::string_view bytes, std::string& deflated);

/// Inflates one zlib stream that must give exactly `length` bytes. False when it does not. Memory
/// grows with what comes out.
[[nodiscard]] bool inflate_whole(std::string_view deflated, std::uint64_t length,
                                 std::string& bytes);

}  // namespace zmr
