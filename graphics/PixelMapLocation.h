#pragma once

#include "foundation/GFile.h"

#include "platform/Export.h"

/// Where a picture or a numbered sequence of pictures lies. A plain value. For pictures
/// shot_0007.tga to shot_0012.tga in C:\shots: `directory` C:\shots, `prefix` "shot_", `suffix`
/// ".tga", `digits` 4, `first` 7, `last` 12. For a single picture without a number `digits`,
/// `first` and `last` are 0 and the prefix is the whole name.
struct ZMR_GV_API PixelMapLocation {
    GFile directory;   ///< Empty for the current one.
    GString prefix;    ///< What stands before the number.
    GString suffix;    ///< What stands behind it: the extension with its dot.
    int digits = 0;    ///< Numbers with fewer digits get leading zeros; 1 for numbers without any.
    long first = 0;    ///< The lowest number of the unbroken run.
    long last = 0;     ///< The highest.
    long current = 0;  ///< The number of the file that was asked for.

    /// The number of pictures: 1 without a number.
    [[nodiscard]] long count() const { return last - first + 1; }
    /// The file of picture `number`, whether or not it exists. Without digits: the single picture.
    [[nodiscard]] GFile file(long number) const;
    /// The name with "#" for each digit, for a message: "shot_####.tga".
    [[nodiscard]] GString pattern() const;
};
