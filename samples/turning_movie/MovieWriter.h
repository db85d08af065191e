#pragma once

#include <cstdint>
#include <span>
#include <string>

/// Writes an AVI file of uncompressed frames of 24 bits, as the published layout of such files has
/// them ("AVI RIFF File Reference", Microsoft Learn): the form "AVI " of the lists "hdrl" and
/// "movi" and the index "idx1".
class MovieWriter {
public:
    /// `width` and `height` are 1 or more.
    MovieWriter(int width, int height, std::uint32_t frames_a_second);

    /// Adds a frame of pixels 0xRRGGBB, the top row first.
    void add(std::span<const std::uint32_t> pixels);
    /// The bytes of the file with the frames so far, less than 4 GiB of them.
    [[nodiscard]] std::string bytes() const;

private:
    [[nodiscard]] std::string headers() const;

    std::uint32_t width_;
    std::uint32_t height_;
    std::uint32_t frames_a_second_;
    std::uint32_t row_bytes_;
    std::uint32_t frames_ = 0;
    std::string movie_;
    std::string index_;
};
