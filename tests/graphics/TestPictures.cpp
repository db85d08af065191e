#include "TestPictures.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>

namespace {

unsigned char byte_of(int value)
{
    return static_cast<unsigned char>(value & 255);
}

std::filesystem::path path_of(const std::string& name)
{
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

}  // namespace

void PrintTo(const TestPixel& pixel, std::ostream* out)
{
    *out << "red " << int{pixel.color.red} << " green " << int{pixel.color.green} << " blue "
         << int{pixel.color.blue} << " alpha " << int{pixel.alpha};
}

RGB_Color test_color(int x, int y)
{
    return {byte_of(x * 40), byte_of(y * 60), byte_of(x * 37 + y * 91)};
}

unsigned char test_alpha(int x, int y)
{
    constexpr unsigned char kAlphas[] = {255, 0, 128, 64, 200};
    return kAlphas[(x + 2 * y) % 5];
}

unsigned char test_grey(int x, int y)
{
    return byte_of(x * 23 + y * 31);
}

RGB_Color palette_entry(int index)
{
    return {byte_of(index * 50), byte_of(255 - index * 20), byte_of(index * 90)};
}

std::string data_file(const std::string& name)
{
    return std::string(ZMR_TEST_DATA) + "/" + name;
}

std::vector<unsigned char> data_bytes(const std::string& name)
{
    std::ifstream file(path_of(data_file(name)), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void write_file(const std::string& name, const std::vector<unsigned char>& bytes)
{
    std::ofstream file(path_of(name), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

TestPixel pixel_of(const PixelMap& map, int x, int y)
{
    return {map.get_pixel(x, y), map.get_alpha(x, y)};
}

PixelMap test_map(AbstractImage::MapFormat format)
{
    PixelMap map(kTestWidth, kTestHeight, format, nullptr);
    for (int y = 0; y < kTestHeight; ++y)
        for (int x = 0; x < kTestWidth; ++x) {
            map.set_pixel(x, y, test_color(x, y));
            map.set_alpha(x, y, test_alpha(x, y));
        }
    return map;
}

bool same_pixels(const PixelMap& a, const PixelMap& b)
{
    if (a.get_width() != b.get_width() || a.get_height() != b.get_height() ||
        a.get_format() != b.get_format())
        return false;
    return a.pixels().is_empty() ||
           std::memcmp(a.pixels().data(), b.pixels().data(), a.pixels().size_bytes()) == 0;
}
