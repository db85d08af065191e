#pragma once

#include "foundation/GFile.h"

/// Operations on the file system. Stateless; any thread.
class ZMR_GV_API FileSystem {
public:
    /// "..".
    [[nodiscard]] static const GString& GetParentDirectoryName();
    /// Makes a directory; an existing one is success. Its parent must exist.
    static bool CreateDirectoryA(GFile directory);
    /// Fills every `place_holder` of the last name with letters and digits so that no such file
    /// exists. False, with `file` unchanged, when there is no place-holder or no free name was
    /// found.
    static bool UniqueName(GFile& file, char place_holder);
};
