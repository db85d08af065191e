#include "turning_movie/MovieWriter.h"

namespace {

constexpr std::uint32_t kHasIndex = 0x10;
constexpr std::uint32_t kKeyFrame = 0x10;
constexpr std::uint32_t kBits = 24;
constexpr std::uint32_t kFormHeaderBytes = 40;

std::string number(std::uint32_t value, int bytes)
{
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> (8 * i));
    return text;
}

std::string numbers(std::initializer_list<std::uint32_t> values)
{
    std::string text;
    for (const std::uint32_t value : values)
        text += number(value, 4);
    return text;
}

std::string chunk(const std::string& id, const std::string& content)
{
    std::string text = id + number(static_cast<std::uint32_t>(content.size()), 4) + content;
    if (content.size() % 2 != 0)
        text += '\0';
    return text;
}

std::string list(const std::string& type, const std::string& content)
{
    return chunk("LIST", type + content);
}

}  // namespace

MovieWriter::MovieWriter(int width, int height, std::uint32_t frames_a_second)
    : width_(static_cast<std::uint32_t>(width)),
      height_(static_cast<std::uint32_t>(height)),
      frames_a_second_(frames_a_second),
      row_bytes_((width_ * kBits + 31) / 32 * 4)
{
}

void MovieWriter::add(std::span<const std::uint32_t> pixels)
{
    std::string frame;
    frame.reserve(std::size_t{row_bytes_} * height_);
    for (std::uint32_t row = height_; row-- > 0;) {  // the lowest first
        for (std::uint32_t x = 0; x < width_; ++x)
            frame += number(pixels[std::size_t{row} * width_ + x], 3);
        frame.resize(std::size_t{row_bytes_} * (height_ - row));
    }
    // Counted from the list's type.
    const auto offset = static_cast<std::uint32_t>(4 + movie_.size());
    index_ += "00db" + numbers({kKeyFrame, offset, static_cast<std::uint32_t>(frame.size())});
    movie_ += chunk("00db", frame);
    ++frames_;
}

std::string MovieWriter::headers() const
{
    const std::uint32_t frame_bytes = row_bytes_ * height_;
    const std::string head = chunk(
        "avih", numbers({1'000'000 / frames_a_second_, frame_bytes * frames_a_second_, 0, kHasIndex,
                         frames_, 0, 1, frame_bytes, width_, height_, 0, 0, 0, 0}));
    const std::string stream =
        chunk("strh",
              "vidsDIB " +
                  numbers({0, 0, 0, 1, frames_a_second_, 0, frames_, frame_bytes, 0xFFFFFFFF, 0}) +
                  number(0, 2) + number(0, 2) + number(width_, 2) + number(height_, 2));
    const std::string form =
        chunk("strf", numbers({kFormHeaderBytes, width_, height_}) + number(1, 2) +
                          number(kBits, 2) + numbers({0, frame_bytes, 0, 0, 0, 0}));
    return list("hdrl", head + list("strl", stream + form));
}

std::string MovieWriter::bytes() const
{
    return chunk("RIFF", "AVI " + headers() + list("movi", movie_) + chunk("idx1", index_));
}
