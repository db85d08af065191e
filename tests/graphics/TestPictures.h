#pragma once

#include "graphics/PixelMap.h"

#include <string>
#include <vector>

/// One pixel with its alpha.
struct TestPixel {
    RGB_Color color;
    unsigned char alpha = 255;

    friend bool operator==(const TestPixel&, const TestPixel&) = default;
};
void PrintTo(const TestPixel& pixel, std::ostream* out);

/// The formulas behind the pictures in data/, as make_pictures.py has them.
inline constexpr int kTestWidth = 7;
inline constexpr int kTestHeight = 5;
[[nodiscard]] RGB_Color test_color(int x, int y);
[[nodiscard]] unsigned char test_alpha(int x, int y);
[[nodiscard]] unsigned char test_grey(int x, int y);
[[nodiscard]] RGB_Color palette_entry(int index);

/// The full name of a picture in data/, and its bytes.
[[nodiscard]] std::string data_file(const std::string& name);
[[nodiscard]] std::vector<unsigned char> data_bytes(const std::string& name);
/// Writes bytes to a file.
void write_file(const std::string& name, const std::vector<unsigned char>& bytes);

[[nodiscard]] TestPixel pixel_of(const PixelMap& map, int x, int y);
/// The map of the formulas, in either format.
[[nodiscard]] PixelMap test_map(AbstractImage::MapFormat format);
/// True when size, format and all pixels are equal.
[[nodiscard]] bool same_pixels(const PixelMap& a, const PixelMap& b);
