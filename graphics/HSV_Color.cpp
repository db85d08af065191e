#include "graphics/HSV_Color.h"

#include <algorithm>

HSV_Color::HSV_Color(const RGB_Color& color)
{
    const int red = color.red;
    const int green = color.green;
    const int blue = color.blue;
    const int highest = std::max({red, green, blue});
    const int range = highest - std::min({red, green, blue});
    value = static_cast<unsigned char>(highest);
    if (range == 0)
        return;
    saturation = static_cast<unsigned char>((range * 255 + highest / 2) / highest);

    // Counted in sixths of the circle from the strongest part, each sixth `range` long.
    int position = 0;
    if (highest == red)
        position = green - blue;
    else if (highest == green)
        position = 2 * range + blue - red;
    else
        position = 4 * range + red - green;
    if (position < 0)
        position += 6 * range;
    hue = static_cast<unsigned char>((position * 256 + 3 * range) / (6 * range) & 255);
}

HSV_Color::operator RGB_Color() const
{
    const int sixths = hue * 6;
    const int sector = sixths >> 8;
    const int fraction = sixths & 255;
    // The strongest part less `saturation` times `share` 256ths of itself, rounded.
    const auto part = [this](int share) {
        constexpr int kWhole = 255 * 256;
        return static_cast<unsigned char>((value * (kWhole - saturation * share) + kWhole / 2) /
                                          kWhole);
    };
    const unsigned char lowest = part(256);
    const unsigned char falling = part(fraction);
    const unsigned char rising = part(256 - fraction);
    switch (sector) {
        case 0:
            return {value, rising, lowest};
        case 1:
            return {falling, value, lowest};
        case 2:
            return {lowest, value, rising};
        case 3:
            return {lowest, falling, value};
        case 4:
            return {rising, lowest, value};
        default:
            return {value, lowest, falling};
    }
}
