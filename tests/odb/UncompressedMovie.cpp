#include "UncompressedMovie.h"

namespace {

std::string word(std::uint32_t value)
{
    std::string text;
    for (int shift = 0; shift < 32; shift += 8)
        text += static_cast<char>(value >> shift);
    return text;
}

std::string half(std::uint32_t value)
{
    return word(value).substr(0, 2);
}

std::string chunk(const std::string& id, const std::string& content)
{
    std::string text = id + word(static_cast<std::uint32_t>(content.size())) + content;
    if (content.size() % 2 != 0)
        text += '\0';
    return text;
}

std::string list(const std::string& type, const std::string& content)
{
    return chunk("LIST", type + content);
}

}  // namespace

std::string UncompressedMovie::bytes() const
{
    const auto w = static_cast<std::uint32_t>(width);
    const auto h = static_cast<std::uint32_t>(height);
    const auto count = static_cast<std::uint32_t>(frames);
    const std::uint32_t frame_bytes = w * h * 3;
    constexpr std::uint32_t kHasIndex = 0x10;
    constexpr std::uint32_t kKeyFrame = 0x10;

    const std::string head =
        chunk("avih", word(40'000) + word(frame_bytes * 25) + word(0) + word(kHasIndex) +
                          word(count) + word(0) + word(1) + word(frame_bytes) + word(w) + word(h) +
                          word(0) + word(0) + word(0) + word(0));
    const std::string stream_head =
        chunk("strh", "vidsDIB " + word(0) + half(0) + half(0) + word(0) + word(1) + word(25) +
                          word(0) + word(count) + word(frame_bytes) + word(0xFFFFFFFF) + word(0) +
                          half(0) + half(0) + half(w) + half(h));
    const std::string format =
        chunk("strf", word(40) + word(w) + word(h) + half(1) + half(24) + word(0) +
                          word(frame_bytes) + word(0) + word(0) + word(0) + word(0));

    std::string movie;
    std::string index;
    for (int frame = 0; frame < frames; ++frame) {
        std::string pixels;
        for (int row = 0; row < height; ++row)
            for (int x = 0; x < width; ++x)
                for (int channel = 0; channel < 3; ++channel)
                    pixels += static_cast<char>(value(frame, x, row, channel));
        // Counted from the list's type.
        const auto offset = static_cast<std::uint32_t>(4 + movie.size());
        index += "00db" + word(kKeyFrame) + word(offset) + word(frame_bytes);
        movie += chunk("00db", pixels);
    }
    return chunk("RIFF", "AVI " + list("hdrl", head + list("strl", stream_head + format)) +
                             list("movi", movie) + chunk("idx1", index));
}
