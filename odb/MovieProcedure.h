#pragma once

#include <cstdint>
#include <vector>

namespace zmr {

/// Lets the multimedia layer open movies inside files of that extension, and keeps the extension's
/// code. False, with nothing done, when that is so already, and where there is no such layer. Any
/// thread.
bool install_movie_procedure(const char* extension);
/// Takes back all that was installed, the last first.
void remove_movie_procedures();
/// The codes installed, in their order.
[[nodiscard]] std::vector<std::uint32_t> installed_movie_codes();

}  // namespace zmr
