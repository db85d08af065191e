#include "scene_editor/core/MovieFrame.h"

#include <algorithm>
#include <cstdlib>

namespace editor {

namespace {

constexpr std::size_t kHeaderBytes = 40;
constexpr std::size_t kPaletteSize = 256;

std::uint32_t number_at(std::span<const unsigned char> bytes, std::size_t at)
{
    return bytes[at] | static_cast<std::uint32_t>(bytes[at + 1]) << 8 |
           static_cast<std::uint32_t>(bytes[at + 2]) << 16 |
           static_cast<std::uint32_t>(bytes[at + 3]) << 24;
}

std::size_t row_bytes(const FrameForm& form)
{
    return (static_cast<std::size_t>(form.width) * form.bits + 31) / 32 * 4;
}

std::int64_t rows_of(const FrameForm& form)
{
    return std::abs(static_cast<std::int64_t>(form.height));
}

// Five bits spread over eight.
std::uint32_t widened(std::uint32_t five)
{
    return (five << 3) | (five >> 2);
}

std::uint32_t pixel_at(const FrameForm& form, const unsigned char* row, std::size_t x)
{
    switch (form.bits) {
        case 8:
            return row[x] < form.palette.size() ? form.palette[row[x]] : 0;
        case 16: {
            const std::uint32_t pixel = row[2 * x] | static_cast<std::uint32_t>(row[2 * x + 1])
                                                         << 8;
            return widened(pixel >> 10 & 31) << 16 | widened(pixel >> 5 & 31) << 8 |
                   widened(pixel & 31);
        }
        default: {
            const unsigned char* const pixel = row + x * (form.bits / 8U);
            return pixel[0] | static_cast<std::uint32_t>(pixel[1]) << 8 |
                   static_cast<std::uint32_t>(pixel[2]) << 16;
        }
    }
}

}  // namespace

std::optional<FrameForm> read_frame_form(std::span<const unsigned char> header)
{
    if (header.size() < kHeaderBytes)
        return std::nullopt;
    const std::uint32_t own_bytes = number_at(header, 0);
    FrameForm form;
    form.width = static_cast<std::int32_t>(number_at(header, 4));
    form.height = static_cast<std::int32_t>(number_at(header, 8));
    form.bits = static_cast<std::uint16_t>(number_at(header, 12) >> 16);
    const std::uint32_t compression = number_at(header, 16);
    const bool is_known = form.bits == 8 || form.bits == 16 || form.bits == 24 || form.bits == 32;
    if (own_bytes < kHeaderBytes || own_bytes > header.size() || compression != 0 || !is_known ||
        form.width <= 0 || form.height == 0 || rows_of(form) > kMostPixels / form.width)
        return std::nullopt;
    if (form.bits == 8) {
        const std::uint32_t told = number_at(header, 32);
        const std::size_t wanted = told == 0 || told > kPaletteSize ? kPaletteSize : told;
        const std::size_t there = std::min(wanted, (header.size() - own_bytes) / 4);
        for (std::size_t i = 0; i < there; ++i)
            form.palette.push_back(number_at(header, own_bytes + 4 * i) & 0xFFFFFF);
    }
    return form;
}

std::size_t frame_bytes(const FrameForm& form)
{
    return row_bytes(form) * static_cast<std::size_t>(rows_of(form));
}

bool convert_frame(const FrameForm& form, std::span<const unsigned char> bytes,
                   FramePicture& picture)
{
    if (bytes.size() < frame_bytes(form))
        return false;
    picture.width = form.width;
    picture.height = static_cast<int>(rows_of(form));
    const auto width = static_cast<std::size_t>(picture.width);
    const auto height = static_cast<std::size_t>(picture.height);
    picture.pixels.resize(width * height);
    for (std::size_t y = 0; y < height; ++y) {
        const std::size_t stored = form.height > 0 ? height - 1 - y : y;
        const unsigned char* const row = bytes.data() + stored * row_bytes(form);
        for (std::size_t x = 0; x < width; ++x)
            picture.pixels[y * width + x] = pixel_at(form, row, x);
    }
    return true;
}

FittedArea fit_into(int width, int height, int area_width, int area_height)
{
    FittedArea fitted;
    if (width <= 0 || height <= 0 || area_width <= 0 || area_height <= 0)
        return fitted;
    const auto by_width = static_cast<std::int64_t>(area_width) * height;
    const auto by_height = static_cast<std::int64_t>(area_height) * width;
    if (by_width <= by_height) {
        fitted.width = area_width;
        fitted.height = std::max(1, static_cast<int>(by_width / width));
    } else {
        fitted.height = area_height;
        fitted.width = std::max(1, static_cast<int>(by_height / height));
    }
    fitted.left = (area_width - fitted.width) / 2;
    fitted.top = (area_height - fitted.height) / 2;
    return fitted;
}

}  // namespace editor
