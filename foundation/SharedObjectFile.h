#pragma once

#include <string>

namespace zmr {

/// Whether the file has the head of a shared object and less than the head tells of, as after a
/// copy that was broken off. The system's loader believes the head, and would end the process.
/// False for a file of another kind and for one that can't be read: the loader says so itself.
[[nodiscard]] bool is_cut_shared_object(const std::string& path);

}  // namespace zmr
