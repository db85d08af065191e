#pragma once

#include "graphics/PixelMap.h"
#include "graphics/PixelMapLocation.h"

/// What is done with whole maps. Stateless; any thread.
class ZMR_GV_API PixelMapTools {
public:
    /// A new map from a picture file, owned by the caller; null when the file is missing, no
    /// picture or damaged. PixelMap::load tells why.
    [[nodiscard]] static PixelMap* LoadFromFile(const char* file);
    /// Writes the map in the format of the name's extension: png, jpg, jpeg, bmp, dib, tga, targa.
    /// PNG, BMP and TGA keep alpha; JPEG is laid on white, at quality 90. With `overwrite` an
    /// existing file is replaced in one step, without it it is kept and the call fails. False on
    /// failure and for a null or empty map.
    static bool SaveToFile(const PixelMap* map, const char* file, bool overwrite);
    /// A new map of that size and the same format, owned by the caller; null for an empty map, a
    /// side below 1 or too many pixels. With `smooth` each pixel is the mean of what it covers, or
    /// interpolated where the map grows, colours weighed by alpha; else it is the nearest one.
    [[nodiscard]] static PixelMap* Resize(const PixelMap& map, long width, long height,
                                          bool smooth);
    /// Finds the sequence that a picture file belongs to: the files of its directory with the same
    /// name but for the number that ends it, without a gap around the given one. False, with
    /// `location` unchanged, when the file does not exist. `recursive` is kept for callers that
    /// pass it and has no effect. Cost: one reading of the directory.
    static bool GetSequence(const char* file, PixelMapLocation& location, bool recursive);
};
