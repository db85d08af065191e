#pragma once

#include <cstdint>
#include <string>

/// An AVI file of uncompressed frames of 24 bits, bottom row first, written from the published
/// layout ("AVI RIFF File Reference", Microsoft Learn): the RIFF form "AVI " of the lists "hdrl"
/// and "movi" and the index "idx1".
struct UncompressedMovie {
    int width = 16;  ///< A multiple of 4, so that rows need no filling up.
    int height = 12;
    int frames = 25;

    /// The value of each of the three bytes of a pixel; row 0 is the lowest.
    [[nodiscard]] std::uint8_t value(int frame, int x, int row, int channel) const
    {
        return static_cast<std::uint8_t>(frame * 7 + x * 5 + row * 3 + channel * 11);
    }
    [[nodiscard]] std::string bytes() const;
};
